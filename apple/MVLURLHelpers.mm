#import <MorveluneExtension/MVLURLHelpers.h>

#include "morvelune/MVLURLHelpers.h"
#import "platform/apple/Conversion.h"

using namespace morvelune::apple;

@implementation MVLURLHelpers

+ (NSString*)filledURL:(NSString*)url
            parameters:(NSDictionary*)parameters
     allParamsRequired:(BOOL)allParamsRequired {
  return toNative(morvelune::MVLURLHelpers::filledURL(
      optionalFromNative(url), optionalFromNative(parameters), allParamsRequired));
}

+ (NSString*)filledURL:(NSString*)url parameters:(NSDictionary*)parameters {
  return [self filledURL:url parameters:parameters allParamsRequired:NO];
}

+ (NSString*)filledURL:(NSString*)url {
  return [self filledURL:url parameters:nil allParamsRequired:NO];
}

+ (NSRange)rangeOfTag:(NSString*)tag inString:(NSString*)string {
  const std::string text = fromNative(string);
  return toNative(morvelune::MVLURLHelpers::rangeOfTag(fromNative(tag), text), text);
}

+ (NSDictionary*)commonURLParameters {
  return toNative(morvelune::MVLURLHelpers::commonURLParameters());
}

@end
