#include <CommonCrypto/CommonDigest.h>

#include "platform/apple/AppleServices.h"

namespace morvelune::apple {
namespace {

class AppleDigest : public Digest {
 public:
  [[nodiscard]] std::array<std::byte, 16> md5(std::string_view bytes) const override {
    std::array<std::byte, CC_MD5_DIGEST_LENGTH> digest{};
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"  // MD5 keeps no secret here
    CC_MD5(bytes.data(), static_cast<CC_LONG>(bytes.size()),
           reinterpret_cast<unsigned char*>(digest.data()));
#pragma clang diagnostic pop
    return digest;
  }

  [[nodiscard]] std::array<std::byte, 20> sha1(std::string_view bytes) const override {
    std::array<std::byte, CC_SHA1_DIGEST_LENGTH> digest{};
    CC_SHA1(bytes.data(), static_cast<CC_LONG>(bytes.size()),
            reinterpret_cast<unsigned char*>(digest.data()));
    return digest;
  }
};

}  // namespace

std::shared_ptr<Digest> makeDigest() {
  return std::make_shared<AppleDigest>();
}

}  // namespace morvelune::apple
