#include <gtest/gtest.h>

#include <string>

#include "support/ExposedExtension.h"
#include "support/InMemoryPlatform.h"
#include "support/Media.h"

namespace morvelune::testing {
namespace {

std::string logLine(const std::string& extension, const std::string& result) {
  return "Try to find UTI using file extension [" + extension + "]. Result: [" + result + "]";
}

TEST(TypeResolutionTest, ContentDecidesBeforeTheName) {
  struct Case {
    std::optional<std::string> bytes;
    std::optional<std::string> name;
    std::optional<std::string> type;
    std::optional<std::string> logged;
  };
  const std::string unknown = unknownBytes();
  const auto null = "(null)";
  const Case cases[] = {
      {pngBytes(), "picture.gif", "public.png", {}},
      {gifBytes().substr(0, 15), "a.gif", "com.compuserve.gif",
       logLine("gif", "com.compuserve.gif")},
      {gifBytes().substr(0, 15), {}, {}, {}},
      {{}, "clip.mp4", "public.mpeg-4", logLine("mp4", "public.mpeg-4")},
      {{}, {}, {}, {}},
      {unknown, "photo.JPG", {}, logLine("JPG", null)},
      {unknown, "download", {}, {}},
      {unknown, ".mp3", {}, {}},
      {unknown, "archive.tar.mp3", "public.mp3", logLine("mp3", "public.mp3")},
      {unknown, "x.3gp", {}, logLine("3gp", null)},
      {unknown, "x.png ", {}, {}},  // an extension holds no blank
      {unknown, "x.a\nb", {}, logLine("a\\nb", null)},
  };
  for (const auto& [bytes, name, type, logged] : cases) {
    const InMemoryPlatform memory;
    const auto data = bytes ? std::optional(Data::copyOf(*bytes)) : std::nullopt;
    EXPECT_EQ(ExposedExtension().UTIForData(data, name), type) << name.value_or("no name");
    const std::vector<std::string> lines =
        logged ? std::vector{*logged} : std::vector<std::string>{};
    EXPECT_EQ(memory.log(), lines);
  }
}

// What a file is by its name it can also be by its content, and the other way round.
TEST(TypeResolutionTest, BothMapsKnowTheSameTypes) {
  const Dictionary extensions = ExposedExtension().knownExtensionsMap();
  EXPECT_EQ(extensions.size(), 18U);
  std::vector<Dictionary::Entry> types;
  for (const auto& [extension, type] : extensions) types.push_back({*type.string(), nullptr});
  const Dictionary byName(types);
  const Dictionary byContent = ExposedExtension().UTIMap();
  EXPECT_EQ(byName.size(), byContent.size());
  for (const auto& [type, records] : byContent) EXPECT_TRUE(byName.contains(type)) << type;
  EXPECT_EQ(extensions.string("m75"), "public.mpeg");
  EXPECT_EQ(extensions.string("vfw"), "public.avi");
  EXPECT_EQ(extensions.string("m4a"), "public.mpeg-4-audio");
}

}  // namespace
}  // namespace morvelune::testing
