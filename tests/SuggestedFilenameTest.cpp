#include "platform/linux/SuggestedFilename.h"

#include <gtest/gtest.h>

namespace morvelune {
namespace {

constexpr char url[] = "http://host.example/dir/last.png";

TEST(SuggestedFilename, OfContentDisposition) {
  const std::pair<std::string_view, const char*> cases[] = {
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
      // bytes that are no UTF-8 are ISO-8859-1
      {"attachment; filename=\"caf\xE9.png\"", "café.png"},
      {"attachment; filename=\"caf\xC3\xA9.png\"", "café.png"},
      // no way into another folder, another line, or the start of a string
      {"attachment; filename=\"../../etc/passwd\"", ".._.._etc_passwd"},
      {"attachment; filename*=UTF-8''a%00b%0D%0Ac%7F%C2%9B.png", "a_b__c__.png"}};
  for (const auto& [header, name] : cases)
    EXPECT_EQ(suggestedFilename(header, url), name) << header;
  const char* const malformed[] = {"UTF-8''%E9.png", "UTF-8''%4", "UTF-8''%-1", "KOI8-R''%C1",
                                   "UTF-8'b",        "b",         "UTF-8''"};
  for (const char* value : malformed) {
    EXPECT_EQ(
        suggestedFilename("attachment; filename*=" + std::string(value) + "; filename=a.png", url),
        "a.png")
        << value;
  }
  for (const char* header :
       {"", "attachment", "filename=a.png", "attachment; filename",
        "attachment; filename=", "attachment; filename=\"\"", "attachment; filename=\"a.png",
        "attachment; filename=\"a\\", "attachment; filename=a b.png",
        "attachment; filename=\"a.png\"b", "attachment; filename=.."}) {
    EXPECT_EQ(suggestedFilename(header, url), "last.png") << header;
  }
}

TEST(SuggestedFilename, OfTheURL) {
  const std::pair<const char*, const char*> cases[] = {
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
      {"", "unknown"}};
  for (const auto& [address, name] : cases) {
    EXPECT_EQ(suggestedFilename(std::nullopt, address), name) << address;
  }
}

}  // namespace
}  // namespace morvelune
