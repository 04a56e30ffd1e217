#import "Standins.h"

static NSUUID* identifierForVendor = nil;
static UIScreen* mainScreen = nil;

void StandinSetIdentifierForVendor(NSUUID* identifier) {
  [identifierForVendor autorelease];
  identifierForVendor = [identifier retain];
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

- (instancetype)initWithBounds:(CGRect)bounds fixedOrigin:(CGPoint)fixedOrigin {
  self = [super init];
  if (self != nil) {
    _bounds = bounds;
    _fixedOrigin = fixedOrigin;
  }
  return self;
}

- (id<UICoordinateSpace>)coordinateSpace {
  return self;
}

- (id<UICoordinateSpace>)fixedCoordinateSpace {
  return [[[UIScreen alloc] initWithBounds:_bounds fixedOrigin:NSZeroPoint] autorelease];
}

- (CGPoint)convertPoint:(CGPoint)point fromCoordinateSpace:(id<UICoordinateSpace>)other {
  const CGPoint from = static_cast<UIScreen*>(other)->_fixedOrigin;
  return NSMakePoint(point.x + _fixedOrigin.x - from.x, point.y + _fixedOrigin.y - from.y);
}

@end

@implementation UIViewController
@end
