#pragma once

#include <stdint.h>

#include "../Export.h"

#define CC_MD5_DIGEST_LENGTH 16
#define CC_SHA1_DIGEST_LENGTH 20

typedef uint32_t CC_LONG;

STANDIN_EXPORT unsigned char* CC_MD5(const void* data, CC_LONG len, unsigned char* md);
STANDIN_EXPORT unsigned char* CC_SHA1(const void* data, CC_LONG len, unsigned char* md);
