// URL: a well-formed URL reference of RFC 2396, kept exactly as it was written.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace morvelune {

class URL {
 public:
  // Parses `text` as the platform's parser of RFC 2396 does. Empty when it holds a control
  // character, a blank, one of "<>\^`{|}, a character outside ASCII, a '%' that two hexadecimal
  // digits do not follow, or a second '#'. References without a scheme, the empty one included,
  // are well formed, and "[" and "]" may stand anywhere.
  [[nodiscard]] static std::optional<URL> parse(std::string_view text);

  // The file URL of an absolute path; bytes that a URL cannot hold are percent-encoded.
  [[nodiscard]] static URL fileURL(std::string_view path);

  // The text as it was given.
  [[nodiscard]] const std::string& absoluteString() const { return text_; }
  // The scheme in lower case without its ':'; empty when there is none.
  [[nodiscard]] std::string scheme() const;
  [[nodiscard]] bool isFileURL() const { return scheme() == "file"; }
  // The path with its percent escapes decoded; may be empty. The query and fragment are no part
  // of it, nor is the host that "//" introduces.
  [[nodiscard]] std::string path() const;

  friend bool operator==(const URL&, const URL&) = default;

 private:
  explicit URL(std::string text) : text_(std::move(text)) {}

  std::string text_;
};

}  // namespace morvelune
