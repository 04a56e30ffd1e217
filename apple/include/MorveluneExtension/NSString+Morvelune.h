// NSString(Morvelune): digests, currency codes, signed increments and URL coding.
#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

/// Callable from any thread.
@interface NSString (Morvelune)

/// MD5 (RFC 1321) of the UTF-8 form up to the first U+0000, as 32 lower-case hexadecimal digits.
- (NSString*)mvl_MD5String NS_SWIFT_NAME(mvl_MD5String());

/// SHA-1 (FIPS 180-4) of the whole UTF-8 form, as 40 lower-case hexadecimal digits.
- (NSString*)mvl_SHA1String NS_SWIFT_NAME(mvl_SHA1String());

/// The currency code (ISO 4217) that the first three characters are, in any case, upper-cased; nil
/// when they are none. "EUR 12,90" gives "EUR".
- (nullable NSString*)mvl_currencyString NS_SWIFT_NAME(mvl_currencyString());

/// Whether this is a signed increment, such as "+5" or "- 2,5": blanks aside, a sign, digits,
/// perhaps one character of any kind as a separator, and perhaps more digits.
- (BOOL)mvl_isNumberIncrementation;

/// The sum of the numbers that both strings begin with, blanks aside and with "," read as ".", in
/// fixed notation with six decimals and "."; a string that begins with no number counts as 0. A
/// positive sum gets a "+" when `addPositiveSign` is set. "" for an absent increment; "inf", "-inf"
/// or "nan" when the sum is no finite number.
- (NSString*)mvl_stringByIncrementingByStringNumber:(nullable NSString*)increment
                                    addPositiveSign:(BOOL)addPositiveSign
    NS_SWIFT_NAME(mvl_incremented(by:addPositiveSign:));

/// Percent-encoded, all but what a query may hold (RFC 3986), so that "&", "=", "+", "/" and "?"
/// stay.
- (NSString*)mvl_URLEncodeString NS_SWIFT_NAME(mvl_URLEncodeString());

/// With its percent escapes decoded as UTF-8; "+" stays "+". Nil when an escape is malformed or
/// they form no valid UTF-8.
- (nullable NSString*)mvl_URLDecodeString NS_SWIFT_NAME(mvl_URLDecodeString());

@end

NS_ASSUME_NONNULL_END
