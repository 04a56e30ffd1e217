#include "platform/apple/AppleServices.h"
#import "platform/apple/Conversion.h"

namespace morvelune::apple {
namespace {

// Whether a file can have this address. The platform would cut a path at its zero byte.
bool namesAFile(const URL& url) {
  return url.isFileURL() && url.path().find('\0') == std::string::npos;
}

class AppleFileManager : public FileManager {
 public:
  [[nodiscard]] std::optional<Data> contents(const URL& file) const override {
    if (!namesAFile(file)) return std::nullopt;
    return optionalFromNative([NSData dataWithContentsOfURL:toNative(file)
                                                    options:NSDataReadingMappedIfSafe
                                                      error:nullptr]);
  }

  [[nodiscard]] std::optional<Error> moveItem(const URL& from, const URL& to) override {
    if (!namesAFile(from) || !namesAFile(to)) {
      return Error{NSCocoaErrorDomain, NSFileWriteInvalidFileNameError,
                   "The file name is invalid."};
    }
    NSError* error = nil;
    const BOOL moved = [[NSFileManager defaultManager] moveItemAtURL:toNative(from)
                                                               toURL:toNative(to)
                                                               error:&error];
    if (moved) return std::nullopt;
    // A failure that the platform does not explain is one all the same.
    return fromNative(error).value_or(Error{NSCocoaErrorDomain, NSFileWriteUnknownError, ""});
  }

  [[nodiscard]] std::string globallyUniqueString() override {
    return fromNative([[NSProcessInfo processInfo] globallyUniqueString]);
  }
};

}  // namespace

std::shared_ptr<FileManager> makeFileManager() {
  return std::make_shared<AppleFileManager>();
}

}  // namespace morvelune::apple
