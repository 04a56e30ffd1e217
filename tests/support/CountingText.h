// A platform's text service that is watched.
#pragma once

#include "morvelune/platform/Platform.h"

namespace morvelune::testing {

// The native text, which counts how often it looks for something, and at how much.
class CountingText : public Text {
 public:
  NSRange rangeIgnoringCase(std::string_view pattern, std::string_view text) const override {
    ++searches;
    lookedAt += text.size();
    return native_->rangeIgnoringCase(pattern, text);
  }
  std::string caseFolded(std::string_view text) const override {
    ++searches;
    lookedAt += text.size();
    return native_->caseFolded(text);
  }
  bool matches(std::string_view text, std::string_view expression) const override {
    return native_->matches(text, expression);
  }
  double doubleValue(std::string_view text) const override { return native_->doubleValue(text); }
  std::string fixedNotation(double number) const override { return native_->fixedNotation(number); }
  std::string addingPercentEncodingForQuery(std::string_view text) const override {
    return native_->addingPercentEncodingForQuery(text);
  }
  std::string addingPercentEscapes(std::string_view text) const override {
    return native_->addingPercentEscapes(text);
  }
  std::optional<std::string> removingPercentEncoding(std::string_view text) const override {
    return native_->removingPercentEncoding(text);
  }

  mutable std::size_t searches = 0;
  mutable std::size_t lookedAt = 0;  // in bytes

 private:
  const std::shared_ptr<Text> native_ = Platform::native()->text;
};

}  // namespace morvelune::testing
