#import <MorveluneExtension/UIScreen+Morvelune.h>

#include "morvelune/UIScreenMorvelune.h"
#include "platform/apple/AppleServices.h"

@implementation UIScreen (Morvelune)

- (NSInteger)mvl_currentOrientation {
  return morvelune::mvl_currentOrientation(morvelune::apple::makeScreen(self));
}

@end
