#include <CommonCrypto/CommonDigest.h>
#include <openssl/evp.h>

unsigned char* CC_MD5(const void* data, CC_LONG len, unsigned char* md) {
  return EVP_Digest(data, len, md, nullptr, EVP_md5(), nullptr) == 1 ? md : nullptr;
}

unsigned char* CC_SHA1(const void* data, CC_LONG len, unsigned char* md) {
  return EVP_Digest(data, len, md, nullptr, EVP_sha1(), nullptr) == 1 ? md : nullptr;
}
