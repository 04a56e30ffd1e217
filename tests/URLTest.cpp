#include "morvelune/platform/URL.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace morvelune {
namespace {

using namespace std::string_literals;

TEST(URLTest, TakesEveryWellFormedReference) {
  for (const char* text : {"", ":", "//h", "cow", "http:", "https:/h/t/d", "http://h:bad/", "a[b]c",
                           "http://h/?q=%7cx%7C#f", "%41"}) {
    EXPECT_EQ(URL::parse(text).value().absoluteString(), text);
  }
}

TEST(URLTest, RefusesWhatAURLCannotHold) {
  for (const std::string& text :
       {"http://h/a b"s, "http://h/\n"s, "a\0b"s, "a\x7F"s, "http://h/é"s, "a\"b"s, "a<b"s, "a>b"s,
        "a\\b"s, "a^b"s, "a`b"s, "{a"s, "a|b|"s, "a}"s, "%"s, "a%4"s, "a%4g"s, "%%41"s, "a#b#c"s}) {
    EXPECT_FALSE(URL::parse(text)) << text;
  }
}

TEST(URLTest, TellsSchemeAndPath) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"HTTP://h/a%20b?q#f", "http", "/a b"},
      {"https:/h/t", "https", "/h/t"},
      {"file:///tmp/x", "file", "/tmp/x"},
      {"//h", "", ""},
      {"a/b:c", "", "a/b:c"},
      {"1a:b", "", "1a:b"},
      {"mailto:x", "mailto", "x"},
      {":x", "", ":x"}};
  for (const auto& [text, scheme, path] : cases) {
    const auto url = URL::parse(text).value();
    EXPECT_EQ(url.scheme(), scheme) << text;
    EXPECT_EQ(url.path(), path) << text;
  }
}

TEST(URLTest, FileURLsCarryAnyPath) {
  const std::string path = "/tmp/a b%41é#?;\x01\0|~"s;
  const URL url = URL::fileURL(path);
  EXPECT_TRUE(url.isFileURL());
  EXPECT_EQ(url.path(), path);
  EXPECT_TRUE(URL::parse(url.absoluteString())) << url.absoluteString();
}

}  // namespace
}  // namespace morvelune
