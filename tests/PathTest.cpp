#include "morvelune/platform/Path.h"

#include <gtest/gtest.h>

#include <tuple>

namespace morvelune {
namespace {

TEST(PathTest, AppendsAComponentByFilePathRules) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"/tmp", "a.tiff", "/tmp/a.tiff"},
      {"/tmp/", "a.tiff", "/tmp/a.tiff"},
      {"/", "a.tiff", "/a.tiff"},
      {"", "d1", "d1"},
      {"", "", ""},
      {"base/t", "", "base/t"},
      {"base/t", "/d1", "base/t/d1"},
      {"base/t", "d1/", "base/t/d1"},
      {"", "a//b/", "a/b"},
      {"//", "//", "/"},
      {"https://h/t", "d", "https:/h/t/d"},
      {"https://h/t//", "s", "https:/h/t/s"}};
  for (const auto& [receiver, component, path] : cases) {
    EXPECT_EQ(stringByAppendingPathComponent(receiver, component), path) << receiver;
  }
}

TEST(PathTest, TakesTheExtensionOfTheLastComponent) {
  const std::pair<const char*, const char*> cases[] = {{"archive.tar.mp3", "mp3"},
                                                       {"photo.JPG", "JPG"},
                                                       {"download", ""},
                                                       {"", ""},
                                                       {".mp3", ""},
                                                       {"a.", ""},
                                                       {"a.b/c", ""},
                                                       {"a.png/", "png"},
                                                       {"dir/.hidden.png", "png"},
                                                       {"a.p ng", ""},
                                                       {"///", ""},
                                                       {"..", ""}};
  for (const auto& [path, extension] : cases) EXPECT_EQ(pathExtension(path), extension) << path;
}

}  // namespace
}  // namespace morvelune
