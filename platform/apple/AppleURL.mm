#include "morvelune/platform/URL.h"

#import "platform/apple/Conversion.h"

namespace morvelune {

std::optional<URL> URL::parse(std::string_view text) {
  @autoreleasepool {
    NSURL* url = [NSURL URLWithString:apple::toNative(text)];
    if (url == nil) return std::nullopt;
    // Not apple::fromNative(url), which leaves out the query of a file URL.
    return unchecked(apple::fromNative(url.absoluteString));
  }
}

}  // namespace morvelune
