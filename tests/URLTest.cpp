#include "morvelune/platform/URL.h"

#include <gtest/gtest.h>

namespace morvelune {
namespace {

TEST(URLTest, HasASchemeAndAPath) {
  const struct {
    const char* text;
    const char* scheme;
    const char* path;
  } cases[] = {
      {"", "", ""},
      {"FILE://host/a%20b?x=1#f", "file", "/a b"},
      {"http://h", "http", ""},
      {"a:b", "a", "b"},
      {"z09+-.:b", "z09+-.", "b"},
      {":b", "", ":b"},
      {"9a:b", "", "9a:b"},
      {"a_c:b", "", "a_c:b"},
      {"a/b:c", "", "a/b:c"},
      {"//h/p", "", "/p"},
      {"a?b:c", "", "a"},
      {"a-long-reference-without-any-delimiter", "", "a-long-reference-without-any-delimiter"},
      {"%30%39%aF%Fa%eB%Be%Cd%dC", "", "09\xAF\xFA\xEB\xBE\xCD\xDC"},
  };
  for (const auto& [text, scheme, path] : cases) {
    const auto url = URL::parse(text);
    ASSERT_TRUE(url) << text;
    EXPECT_EQ(url->scheme(), scheme) << text;
    EXPECT_EQ(url->path(), path) << text;
  }
}

TEST(URLTest, AnEscapeEndsWithTheText) {
  EXPECT_FALSE(URL::parse(std::string_view("%41").substr(0, 2)));
}

TEST(URLTest, AFilesAddressHoldsAnyByteOfItsPath) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  const URL file = URL::fileURL("/" + all);
  EXPECT_TRUE(file.isFileURL());
  EXPECT_EQ(file.path(), "/" + all);
  EXPECT_EQ(URL::fileURL(all.substr(32, 96)).absoluteString(),
            "file://%20!%22%23$%25&'()*+,-./0123456789:%3B%3C=%3E%3F@ABCDEFGHIJKLMNOPQRSTUVWXYZ"
            "%5B%5C%5D%5E_%60abcdefghijklmnopqrstuvwxyz%7B%7C%7D~%7F");
}

}  // namespace
}  // namespace morvelune
