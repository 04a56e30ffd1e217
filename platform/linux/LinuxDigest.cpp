#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <new>

#include "platform/linux/LinuxServices.h"

namespace morvelune {
namespace {

class LinuxDigest : public Digest {
 public:
  LinuxDigest() {
    if (!library_) throw std::bad_alloc();
  }

  [[nodiscard]] std::array<std::byte, 16> md5(std::string_view bytes) const override {
    return digest<16>("MD5", bytes);
  }
  [[nodiscard]] std::array<std::byte, 20> sha1(std::string_view bytes) const override {
    return digest<20>("SHA1", bytes);
  }

 private:
  struct Free {
    void operator()(OSSL_LIB_CTX* library) const { OSSL_LIB_CTX_free(library); }
  };

  // The built-in provider has both algorithms, so that only memory can be short.
  template <std::size_t size>
  [[nodiscard]] std::array<std::byte, size> digest(const char* name, std::string_view bytes) const {
    std::array<std::byte, size> result{};
    auto* out = reinterpret_cast<unsigned char*>(result.data());
    if (EVP_Q_digest(library_.get(), name, nullptr, bytes.data(), bytes.size(), out, nullptr) !=
        1) {
      throw std::bad_alloc();
    }
    return result;
  }

  // A context of its own does not read the system's configuration, which may forbid MD5.
  const std::unique_ptr<OSSL_LIB_CTX, Free> library_{OSSL_LIB_CTX_new()};
};

}  // namespace

std::shared_ptr<Digest> makeLinuxDigest() {
  return std::make_shared<LinuxDigest>();
}

}  // namespace morvelune
