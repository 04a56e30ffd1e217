#include "contract/Subject.h"
#include "support/TestData.h"

namespace morvelune::testing {
namespace {

class DigestContract : public ::testing::TestWithParam<Subject> {};

INSTANTIATE_CONTRACT(DigestContract, digest);

// Bytes that are no text; the table of the faces has the rest.
TEST_P(DigestContract, DigestsAnyBytes) {
  const auto digest = GetParam().digest();
  const std::string_view bytes("a\0\xFF", 3);
  EXPECT_EQ(dataOfBytes(digest->md5(bytes))["$data"], "B400E11F5B771D40145D1DC70B3D7B8C");
  EXPECT_EQ(dataOfBytes(digest->sha1(bytes))["$data"], "AFDDA83D63FA1A141271F2B89F2D1A822D317C0C");
}

}  // namespace
}  // namespace morvelune::testing
