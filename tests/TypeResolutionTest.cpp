#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "support/ExposedExtension.h"
#include "support/InMemoryPlatform.h"
#include "support/Media.h"

namespace morvelune::testing {
namespace {

TEST(TypeResolutionTest, ContentDecidesBeforeTheName) {
  using Text = std::optional<std::string>;
  const std::string unknown = unknownBytes();
  const std::string tooShort = gifBytes().substr(0, 15);
  // The bytes, the name, the type and the extension that is logged.
  const std::tuple<Text, Text, Text, Text> cases[] = {
      {pngBytes(), "picture.gif", "public.png", {}},
      {tooShort, "a.gif", "com.compuserve.gif", "gif"},
      {tooShort, {}, {}, {}},
      {{}, "clip.mp4", "public.mpeg-4", "mp4"},
      {{}, {}, {}, {}},
      {unknown, "photo.JPG", {}, "JPG"},
      {unknown, "download", {}, {}},
      {unknown, ".mp3", {}, {}},
      {unknown, "archive.tar.mp3", "public.mp3", "mp3"},
      {unknown, "x.png ", {}, {}},  // an extension holds no blank
      {unknown, "x.a\nb", {}, "a\\nb"},
  };
  for (const auto& [bytes, name, type, extension] : cases) {
    const InMemoryPlatform memory;
    const auto data = bytes ? std::optional(Data::copyOf(*bytes)) : std::nullopt;
    EXPECT_EQ(ExposedExtension().UTIForData(data, name), type) << name.value_or("no name");
    std::vector<std::string> lines;
    if (extension) {
      lines.push_back("Try to find UTI using file extension [" + *extension + "]. Result: [" +
                      type.value_or("(null)") + "]");
    }
    EXPECT_EQ(memory.log(), lines);
  }
}

// What a file is by its name it can also be by its content, and the other way round.
TEST(TypeResolutionTest, BothMapsKnowTheSameTypes) {
  const Dictionary extensions = ExposedExtension().knownExtensionsMap();
  EXPECT_EQ(extensions.size(), 18U);
  Dictionary byName;
  for (const auto& [extension, type] : extensions) byName = byName.with(*type.string(), nullptr);
  const Dictionary byContent = ExposedExtension().UTIMap();
  EXPECT_EQ(byName.size(), byContent.size());
  for (const auto& [type, records] : byContent) EXPECT_TRUE(byName.contains(type)) << type;
  EXPECT_EQ(extensions.string("m75"), "public.mpeg");
  EXPECT_EQ(extensions.string("vfw"), "public.avi");
  EXPECT_EQ(extensions.string("m4a"), "public.mpeg-4-audio");
}

}  // namespace
}  // namespace morvelune::testing
