#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSPoint CGPoint;
typedef NSSize CGSize;
typedef NSRect CGRect;

@interface UIDevice : NSObject
+ (UIDevice*)currentDevice;
@property(nonatomic, readonly, nullable) NSUUID* identifierForVendor;
@end

@protocol UICoordinateSpace <NSObject>
- (CGPoint)convertPoint:(CGPoint)point fromCoordinateSpace:(id<UICoordinateSpace>)coordinateSpace;
@end

@interface UIScreen : NSObject {
  CGRect _bounds;
  CGPoint _fixedOrigin;
}
+ (UIScreen*)mainScreen;
@property(nonatomic, readonly) CGRect bounds;
@property(nonatomic, readonly) id<UICoordinateSpace> coordinateSpace, fixedCoordinateSpace;
@end

// Nothing but the compiler asks for these.
@interface UIView : NSObject
- (instancetype)init;
@end

@interface UILabel : UIView
@property(nonatomic, copy, nullable) id text;  // not NSString, which Swift takes for no String here
@property(nonatomic) NSInteger numberOfLines;
@end

@interface UIViewController : NSObject
@property(nonatomic, strong) UIView* view;
- (void)loadView;
@end

NS_ASSUME_NONNULL_END
