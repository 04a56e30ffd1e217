// NSString(Morvelune): digests, currency codes, signed increments and URL coding.
#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

/// Callable from any thread.
@interface NSString (Morvelune)

/// MD5 (RFC 1321) of the UTF-8 form up to the first U+0000, as 32 lower-case hexadecimal digits.
- (NSString*)mvl_MD5String;

/// SHA-1 (FIPS 180-4) of the whole UTF-8 form, as 40 lower-case hexadecimal digits.
- (NSString*)mvl_SHA1String;

/// The first three characters in upper case when they are a currency code, whatever follows them;
/// nil when they are none.
- (nullable NSString*)mvl_currencyString;

/// Whether this is a signed number such as "+5" or "- 2,5". Blanks are skipped, and any one
/// character may separate the decimals.
- (BOOL)mvl_isNumberIncrementation;

/// The sum of this number and `increment`, in fixed notation with six decimals. Blanks are skipped
/// and "," is read as "."; what is no number reads as 0. A sum above zero gets a "+" with
/// `addPositiveSign`. "" for an absent increment.
- (NSString*)mvl_stringByIncrementingByStringNumber:(nullable NSString*)increment
                                    addPositiveSign:(BOOL)addPositiveSign;

/// Percent-encoded for a query. "&", "=", "+", "/", "?" and the like, which a query may hold, stay.
- (NSString*)mvl_URLEncodeString;

/// Percent-decoded; "+" stays "+". Nil for a bad escape and for bytes that are no UTF-8.
- (nullable NSString*)mvl_URLDecodeString;

@end

NS_ASSUME_NONNULL_END
