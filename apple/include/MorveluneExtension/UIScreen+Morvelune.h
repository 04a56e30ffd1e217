// UIScreen(Morvelune): how a screen is held.
#import <UIKit/UIKit.h>

NS_ASSUME_NONNULL_BEGIN

@interface UIScreen (Morvelune)

/// The platform's interface orientation: 1 portrait, 2 portrait upside down, 3 landscape right,
/// 4 landscape left.
- (NSInteger)mvl_currentOrientation;

@end

NS_ASSUME_NONNULL_END
