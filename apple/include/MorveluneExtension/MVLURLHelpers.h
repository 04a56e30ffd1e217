// MVLURLHelpers: fills the tags of URL templates.
//
//   [MVLURLHelpers filledURL:@"https://t.example/?d=|idfv|&u=|uid|" parameters:@{@"uid" : @"7"}];
//
// A tag is a parameter's name between delimiters, |name|, %7cname%7c or %7Cname%7C, found without
// regard to case.
#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

/// Stateless; callable from any thread.
@interface MVLURLHelpers : NSObject

/// The template with the first occurrence of each parameter's tag replaced by the parameter's
/// value, inserted as it stands. `parameters` are laid over the common ones and win. A number is
/// inserted as its shortest decimal text that reads back as the same double or integer (7, 2.5,
/// 1e+300), a boolean as 1 or 0; a parameter of any other type counts as missing. The value
/// kMVLNullValue blanks its tag, or, with `allParamsRequired`, makes the whole result nil if the
/// tag occurs. Tags of no parameter stay as they are. Nil for an absent template.
///
/// Keys are visited in no promised order; a value that holds another key's tag may or may not be
/// filled in turn.
+ (nullable NSString*)filledURL:(nullable NSString*)url
                     parameters:(nullable NSDictionary<NSString*, id>*)parameters
              allParamsRequired:(BOOL)allParamsRequired;
/// The same with `allParamsRequired` off.
+ (nullable NSString*)filledURL:(nullable NSString*)url
                     parameters:(nullable NSDictionary<NSString*, id>*)parameters;
/// The same with the common parameters only.
+ (nullable NSString*)filledURL:(nullable NSString*)url;

/// Where the tag of that name stands first, delimiters included. The plain form is looked for
/// first, wherever an encoded one stands. The location is NSNotFound when there is none.
+ (NSRange)rangeOfTag:(NSString*)tag inString:(NSString*)string;

/// What every template may use, read afresh on each call. Seven strings, always all there: "idfv",
/// "country" and "lang", each "" when unknown; "uid" and "idMember", always ""; "s", the main
/// screen's width and height in whole points, or "0,0"; and "o", "portrait" or "landscape", the
/// latter also when unknown.
+ (NSDictionary<NSString*, NSString*>*)commonURLParameters;

@end

NS_ASSUME_NONNULL_END
