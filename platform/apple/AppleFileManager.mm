#include "platform/FilePath.h"
#include "platform/apple/AppleServices.h"
#import "platform/apple/Conversion.h"

namespace morvelune::apple {
namespace {

class AppleFileManager : public FileManager {
 public:
  [[nodiscard]] std::optional<Data> contents(const URL& file) const override {
    if (!filePath(file)) return std::nullopt;
    return optionalFromNative([NSData dataWithContentsOfURL:toNative(file)
                                                    options:NSDataReadingMappedIfSafe
                                                      error:nullptr]);
  }

  [[nodiscard]] std::optional<Error> moveItem(const URL& from, const URL& to) override {
    if (!filePath(from) || !filePath(to)) {
      return Error{NSCocoaErrorDomain, NSFileWriteInvalidFileNameError,
                   "The file name is invalid."};
    }
    NSError* error = nil;
    [[NSFileManager defaultManager] moveItemAtURL:toNative(from) toURL:toNative(to) error:&error];
    return fromNative(error);
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
