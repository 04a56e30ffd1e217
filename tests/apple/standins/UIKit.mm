#import "Standins.h"

static NSUUID* identifierForVendor = nil;
static UIScreen* mainScreen = nil;

void StandinSetIdentifierForVendor(NSString* identifier) {
  [identifierForVendor release];
  identifierForVendor = identifier ? [[NSUUID alloc] initWithUUIDString:identifier] : nil;
}

void StandinSetMainScreen(UIScreen* screen) {
  [mainScreen autorelease];
  mainScreen = [screen retain];
}

@implementation UIDevice

+ (UIDevice*)currentDevice {
  static UIDevice* const device = [[UIDevice alloc] init];
  return device;
}

- (NSUUID*)identifierForVendor {
  return identifierForVendor;
}

@end

// A screen is its own current space, which is moved, but not turned, against the fixed one.
@interface UIScreen () <UICoordinateSpace>
@end

@implementation UIScreen

@synthesize bounds = _bounds;

+ (UIScreen*)mainScreen {
  return mainScreen;
}

+ (UIScreen*)screenOfSize:(CGSize)size fixedOrigin:(CGPoint)fixedOrigin {
  UIScreen* const screen = [[[UIScreen alloc] init] autorelease];
  screen->_bounds.size = size;
  screen->_fixedOrigin = fixedOrigin;
  return screen;
}

- (id<UICoordinateSpace>)coordinateSpace {
  return self;
}

- (id<UICoordinateSpace>)fixedCoordinateSpace {
  return [UIScreen screenOfSize:_bounds.size fixedOrigin:{}];
}

- (CGPoint)convertPoint:(CGPoint)point fromCoordinateSpace:(id<UICoordinateSpace>)other {
  const CGPoint from = static_cast<UIScreen*>(other)->_fixedOrigin;
  return NSMakePoint(point.x + _fixedOrigin.x - from.x, point.y + _fixedOrigin.y - from.y);
}

@end
