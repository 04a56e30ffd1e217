#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "morvelune/MorveluneExtension.h"
#include "support/ExposedExtension.h"
#include "support/Media.h"

namespace morvelune::testing {
namespace {

using namespace std::string_literals;

std::optional<std::string> typeOf(const std::string& bytes) {
  return ExposedExtension().UTIForData(Data::copyOf(bytes));
}

// Brings the first bytes of a file to the length at which it is examined.
std::optional<std::string> typeOfStart(std::string bytes) {
  bytes.resize(16, '.');
  return typeOf(bytes);
}

TEST(SignatureTest, EveryRowIsRecognised) {
  const std::pair<std::string, const char*> rows[] = {
      {"FORM\0\0\x10\0AIFF"s, "public.aiff-audio"},
      {"FORM\0\xFF\xFF\xFF????"s, "public.aiff-audio"},  // whatever the form
      {"RIFF....WAVE", "com.microsoft.waveform-audio"},
      {"????....WAVE", "com.microsoft.waveform-audio"},  // whatever the container
      {"ID3", "public.mp3"},
      {"\0\0\0 ftypM4A "s, "public.mpeg-4-audio"},
      {"\xFF\xD8\xFF\0"s, "public.jpeg"},
      {"GIF8", "com.compuserve.gif"},
      {"\x89PNG\r\n\x1A\n", "public.png"},
      {"\0\0\1\xBA"s, "public.mpeg"},
      {"\0\0\1\xB3"s, "public.mpeg"},
      {"....ftypisom", "public.mpeg-4"},
      {"....ftypMSNV", "public.mpeg-4"},
      {"....ftypmp42", "public.mpeg-4"},
      {"....ftypmp41", "public.mpeg-4"},
      {"....ftyp3gp5", "public.mpeg-4"},
      {"RIFF....AVI ", "public.avi"},
      // The earlier row wins where two match.
      {"ID3.....WAVE", "com.microsoft.waveform-audio"},
      {"\0\0\1\xBA"
       "ftypisom"s,
       "public.mpeg"},
      {"FORM\0...AVI "s, "public.aiff-audio"},
  };
  for (const auto& [bytes, type] : rows) EXPECT_EQ(typeOfStart(bytes), type) << bytes;
}

TEST(SignatureTest, NearMissesAreNot) {
  const std::string misses[] = {
      "FORM\1\0\0\0AIFF"s,          // 16 MiB and more
      "\xFF\xD8\xFE"s,              // no JPEG marker
      "\xFF\xFB\x90\x64"s,          // a bare MPEG audio frame
      "....ftypqt  "s,              // a brand that is not in the table
      "....ftypM4V "s,              //
      ".ftypisom"s,                 // at another offset
      "gif89a"s,           "id3"s,  // another case
      "\x89PNG\n\x1A\n"s,           // mangled line end
      "RIFF....WAVX"s,
  };
  for (const auto& bytes : misses) EXPECT_EQ(typeOfStart(bytes), std::nullopt) << bytes;
}

TEST(SignatureTest, AFileIsExaminedFromSixteenBytesOn) {
  EXPECT_EQ(typeOf(pngBytes().substr(0, 15)), std::nullopt);
  EXPECT_EQ(typeOf(pngBytes().substr(0, 16)), "public.png");
  EXPECT_EQ(ExposedExtension().UTIForData(std::nullopt), std::nullopt);
}

TEST(SignatureTest, FSignBuildsARecord) {
  char bytes[] = {'a', '\0', 'b'};
  const Dictionary record = FSign(bytes, 3, 4);
  bytes[0] = 'x';  // the record holds a copy
  EXPECT_EQ(record, (Dictionary{{"data", Data::copyOf("a\0b"s)}, {"length", 3}, {"offset", 4}}));
  EXPECT_EQ(FSign(nullptr, 0, 9), (Dictionary{{"data", Data()}, {"length", 0}, {"offset", 9}}));
}

TEST(SignatureTest, TheMapHoldsTheWholeTable) {
  const Dictionary map = ExposedExtension().UTIMap();
  std::size_t count = 0;
  for (const auto& [type, records] : map) count += records.array()->size();
  EXPECT_EQ(map.size(), 10U);
  EXPECT_EQ(count, 15U);
  EXPECT_EQ(map.array("public.mpeg")->dictionary(1), FSign("\0\0\1\xB3", 4, 0));
  EXPECT_EQ(map.array("public.mpeg-4")->dictionary(4), FSign("ftyp3gp5", 8, 4));
  EXPECT_EQ(map.array("public.aiff-audio")->dictionary(0), FSign("FORM", 5, 0));
}

TEST(SignatureTest, BothMapsAreOneObjectForAllThreads) {
  Dictionary maps[2];
  Dictionary extensions[2];
  const auto read = [&](int i) {
    maps[i] = ExposedExtension().UTIMap();
    extensions[i] = ExposedExtension().knownExtensionsMap();
  };
  std::thread other(read, 0);
  read(1);
  other.join();
  EXPECT_TRUE(maps[0].isSameObject(maps[1]));
  EXPECT_TRUE(extensions[0].isSameObject(extensions[1]));
}

TEST(VersionTest, TheSymbolsHoldTheirFixedValues) {
  EXPECT_STREQ(reinterpret_cast<const char*>(MorveluneExtensionVersionString),
               "@(#)PROGRAM:MorveluneExtension  PROJECT:Morvelune-1\n");
  EXPECT_EQ(MorveluneExtensionVersionNumber, 1.0);
}

}  // namespace
}  // namespace morvelune::testing
