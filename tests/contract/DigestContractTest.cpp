#include <gtest/gtest.h>

#include <span>

#include "platform/linux/LinuxServices.h"

namespace morvelune {
namespace {

using namespace std::string_literals;

class DigestContract : public testing::TestWithParam<std::shared_ptr<Digest> (*)()> {};

INSTANTIATE_TEST_SUITE_P(Linux, DigestContract, testing::Values(&makeLinuxDigest));

std::string hex(std::span<const std::byte> digest) {
  std::string text;
  for (const std::byte byte : digest) {
    for (const int shift : {4, 0}) text += "0123456789abcdef"[int(byte) >> shift & 15];
  }
  return text;
}

// The test vectors of RFC 1321 and FIPS 180-4, and bytes that are no text.
TEST_P(DigestContract, Digests) {
  const std::tuple<std::string, const char*, const char*> cases[] = {
      {"", "d41d8cd98f00b204e9800998ecf8427e", "da39a3ee5e6b4b0d3255bfef95601890afd80709"},
      {"abc", "900150983cd24fb0d6963f7d28e17f72", "a9993e364706816aba3e25717850c26c9cd0d89d"},
      {"a\0\xFF"s, "b400e11f5b771d40145d1dc70b3d7b8c", "afdda83d63fa1a141271f2b89f2d1a822d317c0c"},
      {std::string(1000000, 'a'), "7707d6ae4e027c70eea2a935c2296f21",
       "34aa973cd4c4daa4f61eeb2bdbad27316534016f"}};
  const auto digest = GetParam()();
  for (const auto& [bytes, md5, sha1] : cases) {
    EXPECT_EQ(hex(digest->md5(bytes)), md5);
    EXPECT_EQ(hex(digest->sha1(bytes)), sha1);
  }
}

}  // namespace
}  // namespace morvelune
