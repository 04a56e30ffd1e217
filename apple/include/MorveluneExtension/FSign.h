// Signature records: the bytes that tell a media type, and where in a file they stand.
#import <Foundation/Foundation.h>

#import <MorveluneExtension/MVLDefines.h>

NS_ASSUME_NONNULL_BEGIN

/// In a record, the bytes that must be present, as NSData: "data".
MVL_EXPORT NSString* const MVLUTIMapObjectDataKey;
/// In a record, how many bytes are compared, as NSNumber: "length".
MVL_EXPORT NSString* const MVLUTIMapObjectLengthKey;
/// In a record, the zero-based position of the bytes in the file, as NSNumber: "offset".
MVL_EXPORT NSString* const MVLUTIMapObjectOffsetKey;

/// A new record with a copy of `length` bytes. `bytes` is read during the call only and may be NULL
/// when `length` is 0. Any thread.
MVL_EXPORT NSDictionary<NSString*, id>* FSign(const void* _Nullable bytes, NSUInteger length,
                                              NSUInteger offset);

NS_ASSUME_NONNULL_END
