// URL: an address, kept as the text that its parser gave.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "morvelune/platform/Export.h"

namespace morvelune {

class MORVELUNE_API URL {
 public:
  // What the platform's parser makes of `text`; empty when it refuses it. Each platform's folder
  // defines this. On Linux and without a platform it is parseRFC2396(). On iOS it is NSURL's
  // parser, which refuses characters that a URL cannot hold, or percent-encodes them in an app that
  // is linked for iOS 17 or later. Any thread.
  [[nodiscard]] static std::optional<URL> parse(std::string_view text);

  // `text` itself when it is a URL reference of RFC 2396. Empty when it holds a control character,
  // a blank, one of "<>\^`{|}, a character outside ASCII, a '%' that two hexadecimal digits do not
  // follow, or a second '#'. References without a scheme, the empty one included, are well formed,
  // and "[" and "]" may stand anywhere.
  [[nodiscard]] static std::optional<URL> parseRFC2396(std::string_view text);

  // The URL of a text that the platform's parser has accepted. Nothing is checked.
  [[nodiscard]] static URL unchecked(std::string text) { return URL(std::move(text)); }

  // The file URL of an absolute path; bytes that a URL cannot hold are percent-encoded.
  [[nodiscard]] static URL fileURL(std::string_view path);

  // The whole text.
  [[nodiscard]] const std::string& absoluteString() const { return text_; }
  // The scheme in lower case without its ':'; empty when there is none.
  [[nodiscard]] std::string scheme() const;
  [[nodiscard]] bool isFileURL() const { return scheme() == "file"; }
  // Whether the scheme is one of those that a session fetches, http and https.
  [[nodiscard]] bool isHTTP() const { return scheme() == "http" || scheme() == "https"; }
  // The path with its percent escapes decoded, or as it stands when one is bad; may be empty. The
  // query and fragment are no part of it, nor is the host that "//" introduces.
  [[nodiscard]] std::string path() const;

  friend bool operator==(const URL&, const URL&) = default;

 private:
  explicit URL(std::string text) : text_(std::move(text)) {}

  std::string text_;
};

}  // namespace morvelune
