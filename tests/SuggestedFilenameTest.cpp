#include "platform/linux/SuggestedFilename.h"

#include <gtest/gtest.h>

namespace morvelune {
namespace {

constexpr char url[] = "http://host.example/dir/last.png";

TEST(SuggestedFilename, OfContentDisposition) {
  struct Case {
    std::string_view header;
    const char* name;
  };
  const Case cases[] = {
      {"attachment; filename=a.png", "a.png"},
      {"inline;FileName =\t\"a b;c.png\" ; size=3", "a b;c.png"},  // quoted, odd blanks
      {R"(attachment; filename="a\"b\\c.png")", R"(a"b\c.png)"},
      {"attachment;; x=\"y; filename=no\"; filename=a.png", "a.png"},
      {"attachment; filename=a.png; filename=b.png", "a.png"},
      {"attachment; filename=\"100%25.png\"", "100%25.png"},  // only filename* is encoded
      // filename* goes before filename, in either order
      {"attachment; filename=a.png; filename*=UTF-8''%e2%82%ac.png", "€.png"},
      {"attachment; FILENAME*=utf-8'en'%C3%A9; filename=a.png", "é"},
      {"attachment; filename*=iso-8859-1''%E9.png", "é.png"},
      // a malformed filename* leaves filename
      {"attachment; filename*=UTF-8''%E9.png; filename=a.png", "a.png"},
      {"attachment; filename*=UTF-8''%4; filename=a.png", "a.png"},
      {"attachment; filename*=UTF-8''%-1; filename=a.png", "a.png"},
      {"attachment; filename*=KOI8-R''%C1; filename=a.png", "a.png"},
      {"attachment; filename*=UTF-8'b; filename=a.png", "a.png"},
      {"attachment; filename*=b; filename=a.png", "a.png"},
      {"attachment; filename*=UTF-8''; filename=a.png", "a.png"},
      // bytes that are no UTF-8 are ISO-8859-1
      {"attachment; filename=\"caf\xE9.png\"", "café.png"},
      {"attachment; filename=\"caf\xC3\xA9.png\"", "café.png"},
      // no way into another folder, another line, or the start of a string
      {"attachment; filename=\"../../etc/passwd\"", ".._.._etc_passwd"},
      {"attachment; filename*=UTF-8''a%00b%0D%0Ac%7F%C2%9B.png", "a_b__c__.png"},
      // not a name
      {"", "last.png"},
      {"attachment", "last.png"},
      {"filename=a.png", "last.png"},
      {"attachment; filename", "last.png"},
      {"attachment; filename=", "last.png"},
      {"attachment; filename=\"\"", "last.png"},
      {"attachment; filename=\"a.png", "last.png"},
      {"attachment; filename=\"a\\", "last.png"},
      {"attachment; filename=a b.png", "last.png"},
      {"attachment; filename=\"a.png\"b", "last.png"},
      {"attachment; filename=..", "last.png"},
  };
  for (const Case& c : cases) EXPECT_EQ(suggestedFilename(c.header, url), c.name) << c.header;
}

TEST(SuggestedFilename, OfTheURL) {
  struct Case {
    const char* url;
    const char* name;
  };
  const Case cases[] = {
      {"http://h.example/d/a%20b.png?q=/x#/y", "a b.png"},
      {"http:/h.example:80/a.png", "a.png"},  // one slash, as path joining leaves it
      {"http://h.example/d/", "d"},
      {"http://h.example/a%2Fb", "a_b"},
      {"http://h.example/%E9.png", "é.png"},
      {"http://h.example/100%.png", "100%.png"},
      {"http://h.example/%2E%2E", "h.example"},
      {"http://h.example//", "h.example"},
      {"http://h.example", "h.example"},
      {"http://[::1]:80/", "[::1]"},
      {"http://", "unknown"},
      {"", "unknown"},
  };
  for (const Case& c : cases) EXPECT_EQ(suggestedFilename(std::nullopt, c.url), c.name) << c.url;
}

}  // namespace
}  // namespace morvelune
