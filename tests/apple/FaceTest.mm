// What the table of conformance cases cannot say of the Objective-C face: identity, ownership,
// threads, and the platform's own objects.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "Delivered.h"
#include "NativeJSON.h"
#include "Standins.h"
#include "morvelune/MorveluneExtension.h"
#include "support/LoopbackOrigin.h"
#include "support/Media.h"
#include "support/TemporaryDirectory.h"

#import <GNUstepBase/GNUstep.h>
#import <MorveluneExtension/MVLNotificationServiceExtensionSubclass.h>

using namespace morvelune::testing;

using morvelune::apple::autoreleased;

static std::atomic<int> livingObjects = 0;
static std::atomic<int> livingExtensions = 0;

// An object that no library knows, and that is counted.
@interface Counted : NSObject
@end

@implementation Counted
- (instancetype)init {
  if ((self = [super init])) ++livingObjects;
  return self;
}
- (void)dealloc {
  --livingObjects;
  DEALLOC
}
@end

static morvelune::Origin lastPosted;

// Notes what the default centre posts.
@interface Listener : NSObject
@end

@implementation Listener
+ (void)received:(NSNotification*)notification {
  lastPosted = morvelune::apple::retained(notification);
}
@end

// An app's own extension, which keeps its tasks.
@interface CountedExtension : MVLNotificationServiceExtension {
 @public
  NSArray<NSURLSessionTask*>* tasks;
}
@end

@implementation CountedExtension
- (instancetype)init {
  if ((self = [super init])) ++livingExtensions;
  return self;
}
- (void)dealloc {
  --livingExtensions;
  DESTROY(tasks);
  DEALLOC
}
@end

namespace {

id counted() {
  return autoreleased([[Counted alloc] init]);
}

class AppleFaceTest : public ::testing::Test {
 protected:
  // A payload of the system that is tracked and has an attachment at each address.
  NSDictionary* payload(const std::vector<std::string>& addresses) {
    NSMutableArray* attachments = [NSMutableArray array];
    for (const std::string& each : addresses) {
      NSString* identifier = native("id" + std::to_string(attachments.count));
      [attachments addObject:@{@"att-url" : native(each), @"att-id" : identifier}];
    }
    return @{
      @"k2tid" : @"1",
      @"mvl-tk" : @{@"url" : native(origin.url("/track")), @"display" : @"d"},
      @"mvl-atts" : attachments,
      @"date" : date,
      @"object" : counted()
    };
  }
  void receive(NSDictionary* userInfo) {
    [extension didReceiveNotificationRequest:requestOf(userInfo)
                          withContentHandler:delivered.handler()];
  }
  // The only owner lets go of it once it has received.
  void receiveAndRelease(const std::vector<std::string>& addresses) {
    @autoreleasepool {
      receive(payload(addresses));
      DESTROY(extension);
    }
  }
  // Makes one more request, and waits for its answer.
  void request() {
    std::atomic<bool> answered = false;
    const auto task = morvelune::Platform::native()->urlSession->dataTask(
        morvelune::URL::parse(origin.url("/")), [&](auto...) { answered = true; });
    task->resume();
    EXPECT_TRUE(eventually([&] { return answered.load(); }));
  }
  void TearDown() override { DESTROY(extension); }

  LoopbackOrigin origin;
  Delivered delivered;
  NSDate* const date = [NSDate date];
  CountedExtension* extension = [[CountedExtension alloc] init];
};

TEST_F(AppleFaceTest, AForeignPushGetsTheRequestsOwnContent) {
  UNNotificationRequest* request = requestOf(@{@"other" : @1});
  [extension didReceiveNotificationRequest:request withContentHandler:delivered.handler()];
  EXPECT_EQ(delivered.wait(1), request.content);
  EXPECT_EQ(extension.mvlBestAttemptContent, nil);
  [extension serviceExtensionTimeWillExpire];
  EXPECT_EQ(delivered.calls(), 1U) << "no handler of a request of this system is there";
}

TEST_F(AppleFaceTest, TheHandlerGetsTheRealContentWithAllItsProperties) {
  NSDictionary* userInfo = payload({origin.serve("/a.png", {.body = pngBytes()})});
  receive(userInfo);
  UNNotificationContent* content = delivered.wait(1);
  EXPECT_EQ(content, extension.internalBestAttemptContent);
  EXPECT_TRUE([content isKindOfClass:[UNMutableNotificationContent class]]);
  EXPECT_TRUE([content.threadIdentifier isEqual:@"shop"]);
  EXPECT_EQ(content.userInfo.count, userInfo.count + 1);
  EXPECT_TRUE([[content.userInfo objectForKey:MVLPayloadTrackingSentKey] isEqual:@(YES)]);
  for (NSString* key in userInfo) {
    EXPECT_EQ([content.userInfo objectForKey:key], [userInfo objectForKey:key]);
  }
  ASSERT_EQ(content.attachments.count, 1U);
  EXPECT_TRUE([content.attachments isEqual:extension.mvlBestAttemptContent.attachments]);
  EXPECT_TRUE([content.attachments.firstObject.type isEqual:@"public.png"]);
  EXPECT_EQ(content.attachments.firstObject, extension.internalAttachments.firstObject);
  extension.internalAttachments = @[];
  EXPECT_EQ(extension.mvlBestAttemptContent.attachments.count, 0U);
}

TEST_F(AppleFaceTest, ExpiryFromAnotherThreadDeliversWhatThereIs) {
  receive(payload({origin.serve("/late.gif", {.body = gifBytes(), .requests = 4}),
                   origin.serve("/a.png", {.body = pngBytes()})}));
  EXPECT_TRUE(eventually([&] { return extension.mvlBestAttemptContent.attachments.count == 1; }));
  std::thread([&] {
    GSRegisterCurrentThread();
    [extension serviceExtensionTimeWillExpire];
    GSUnregisterCurrentThread();
  }).join();
  ASSERT_EQ(delivered.calls(), 1U);
  request();
  NSArray* attachments = delivered.wait(2).attachments;
  EXPECT_TRUE([[attachments valueForKey:@"identifier"] isEqual:(@[ @"id0", @"id1" ])]);
}

TEST_F(AppleFaceTest, ADownloadKeepsTheExtensionAlive) {
  receiveAndRelease({origin.serve("/late.png", {.body = pngBytes(), .requests = 3})});
  EXPECT_EQ(livingExtensions, 1);
  request();
  EXPECT_NE(delivered.wait(1), nil);
  EXPECT_TRUE(eventually([&] { return livingExtensions == 0; }));
}

TEST_F(AppleFaceTest, ACompletedTaskDoesNotEvenIfItIsKept) {
  @autoreleasepool {
    NSDictionary* userInfo = payload({origin.serve("/a.png", {.body = pngBytes()})});
    ASSIGN(extension->tasks, [extension attachmentsTasksForNotification:userInfo]);
    [extension->tasks.firstObject resume];
    EXPECT_TRUE(eventually([&] { return extension.internalOperationsCount == 0; }));
    DESTROY(extension);
  }
  EXPECT_TRUE(eventually([] { return livingExtensions == 0; }));
}

TEST_F(AppleFaceTest, TrackingDoesNot) {
  origin.serve("/track/d", {.requests = 2});
  receiveAndRelease({});
  EXPECT_EQ(livingExtensions, 0);
  EXPECT_TRUE(eventually([&] { return origin.requests().size() == 1; }));
  request();
  request();  // its answer comes after that to the tracking
  EXPECT_EQ(delivered.calls(), 0U);
}

TEST_F(AppleFaceTest, EverythingIsReleasedWithTheExtension) {
  const auto held = std::make_shared<int>();
  const auto calls = std::make_shared<std::atomic<int>>(0);
  @autoreleasepool {
    [extension didReceiveNotificationRequest:requestOf(payload({origin.url("/missing")}))
                          withContentHandler:^(UNNotificationContent* content) {
                            if (held != nullptr && content != nil) ++*calls;
                          }];
    EXPECT_TRUE(eventually([&] { return *calls == 1; }));
    EXPECT_NE(extension.internalContentHandler, nil);
  }
  EXPECT_GT(livingObjects, 0) << "the payload is the best attempt content's";
  EXPECT_GT(held.use_count(), 1);
  @autoreleasepool {
    DESTROY(extension);
  }
  EXPECT_TRUE(eventually([&] { return held.use_count() == 1 && livingObjects == 0; }));
}

TEST_F(AppleFaceTest, ValuesPassThroughUntouched) {
  id deep = counted();
  for (int i = 0; i < 5000; ++i) deep = @[ deep ];
  NSMutableArray* circle = [NSMutableArray array];
  for (int i = 0; i < 20000; ++i) [circle addObject:@[ circle ]];
  NSMutableString* edited = [NSMutableString stringWithString:@"old"];
  NSDictionary* userInfo = @{
    @"date" : date,
    @"null" : [NSNull null],
    @"data" : [NSData dataWithBytes:"a" length:1],
    @"yes" : @(YES),
    @"big" : @18446744073709551615ULL,
    @"decimal" : [NSDecimalNumber decimalNumberWithString:@"0.1"],
    @"unpaired" : [NSString stringWithFormat:@"%C", static_cast<unichar>(0xD83D)],
    @"edited" : edited,
    @"deep" : deep,
    @"circle" : circle,
    @"object" : counted(),
    @"k2tid" : @1
  };
  NSDictionary* custom = [MVLPushHelpers customParamsFromUserInfo:userInfo];
  EXPECT_EQ(custom.count, userInfo.count - 1);
  EXPECT_FALSE([custom isKindOfClass:[NSMutableDictionary class]]);
  for (NSString* key in custom) {
    EXPECT_EQ([custom objectForKey:key], [userInfo objectForKey:key]) << [key UTF8String];
  }
  EXPECT_EQ([MVLPushHelpers userInfoFromNotification:circle].count, 0U);
  EXPECT_TRUE([MVLPushHelpers isMorveluneNotification:userInfo]);
  [circle removeAllObjects];
}

TEST_F(AppleFaceTest, KeysThatAreNoStringsAreNotSeen) {
  NSDictionary* mixed = @{@1 : @"number", @"k2tid" : @"1", @"x" : @"y"};
  EXPECT_EQ([MVLPushHelpers userInfoFromNotification:mixed], mixed);
  EXPECT_TRUE([[MVLPushHelpers customParamsFromUserInfo:mixed] isEqual:@{@"x" : @"y"}]);
}

TEST_F(AppleFaceTest, AnAddressOfAFileKeepsItsQuery) {
  NSDictionary* tracking = @{@"url" : @"file:///a?x=1", @"display" : @"d"};
  NSURL* url = [MVLPushHelpers trackingURLForAction:@"display"
                                    forNotification:@{@"mvl-tk" : tracking}];
  EXPECT_TRUE([url.query isEqual:@"x=1/d"]);
}

TEST_F(AppleFaceTest, NumbersOfEveryTypeAreInsertedByTheirValue) {
  const std::pair<NSNumber*, NSString*> cases[] = {
      {[NSNumber numberWithFloat:0.1F], @"0.10000000149011612"},  // the double that it equals
      {[NSDecimalNumber decimalNumberWithString:@"0.1"], @"0.1"},
      {[NSNumber numberWithShort:-2], @"-2"},
      {[NSNumber numberWithUnsignedLongLong:18446744073709551615ULL], @"18446744073709551615"}};
  for (const auto& [number, text] : cases) {
    EXPECT_TRUE([[MVLURLHelpers filledURL:@"|n|" parameters:@{@"n" : number}] isEqual:text])
        << text.UTF8String;
  }
}

TEST_F(AppleFaceTest, RangesCountUTF16Units) {
  const ::NSRange range = [MVLURLHelpers rangeOfTag:@"É" inString:@"\uFEFF😀é|é|"];
  EXPECT_EQ(range.location, 4U);
  EXPECT_EQ(range.length, 3U);
}

TEST_F(AppleFaceTest, TheStepsSpeakObjectiveC) {
  NSDictionary* userInfo = payload({origin.url("/a"), origin.url("/b")});
  EXPECT_EQ([extension trackingTaskForNotification:@{}], nil);
  NSURLSessionDataTask* tracking = [extension trackingTaskForNotification:userInfo];
  EXPECT_TRUE([tracking isKindOfClass:[NSURLSessionDataTask class]]);
  NSArray* downloads = [extension attachmentsTasksForNotification:userInfo];
  EXPECT_EQ(downloads.count, 2U);
  EXPECT_TRUE([downloads.lastObject isKindOfClass:[NSURLSessionDownloadTask class]]);
  EXPECT_EQ(extension.internalOperationsCount, 3U);
  extension.internalBestAttemptContent = autoreleased([requestOf(userInfo).content mutableCopy]);
  extension.internalContentHandler = delivered.handler();
  extension.internalOperationsCount = 1;
  [tracking resume];  // by its owner, past the library
  EXPECT_NE(delivered.wait(1), nil);
  EXPECT_EQ(delivered.wait(1), extension.internalBestAttemptContent);
  UNNotificationContent* copy = extension.mvlBestAttemptContent;
  EXPECT_FALSE([copy isKindOfClass:[UNMutableNotificationContent class]]);
  const auto calls = std::make_shared<int>(0);
  @autoreleasepool {
    extension.internalContentHandler = ^(UNNotificationContent*) {
      ++*calls;
    };
  }
  const auto handler = extension.internalContentHandler;
  extension.internalContentHandler = nil;
  handler(copy);  // it is the caller's as long as its pool
  EXPECT_EQ(*calls, 1);
  EXPECT_TRUE(origin.requests().at(0).target == "/track/d");
}

TEST_F(AppleFaceTest, StagesFilesUnderTheirOwnNames) {
  const TemporaryDirectory folder;
  NSURL* file = [NSURL fileURLWithPath:native(folder.write("a b%é.tmp", pngBytes()))];
  NSURL* staged = [extension saveTempFile:file attachmentWithIdentifier:@"id"];
  NSString* prefix = [file.path stringByAppendingString:@"-id-"];
  EXPECT_TRUE([staged.path hasPrefix:prefix] && staged.path.length > prefix.length);
  ASSERT_EQ(folder.names().size(), 1U);
  EXPECT_EQ(folder.path() + "/" + folder.names().at(0), staged.path.UTF8String);
}

TEST_F(AppleFaceTest, EveryExtensionHasTheSameMaps) {
  EXPECT_EQ([extension UTIMap],
            [autoreleased([[MVLNotificationServiceExtension alloc] init]) UTIMap]);
  EXPECT_EQ([extension knownExtensionsMap], [extension knownExtensionsMap]);
}

TEST_F(AppleFaceTest, BothFacesExportTheSameStrings) {
#define BOTH(name) std::pair<NSString*, const char*>(::name, morvelune::name)
  const auto pairs = {BOTH(MVLUNCenterTrackingActionReceived),
                      BOTH(kMVLNullValue),
                      BOTH(MVLUNCenterTrackingActionDismissed),
                      BOTH(kMVLCloseKey),
                      BOTH(MVLPayloadAttachmentsKey),
                      BOTH(MVLAttachmentURLKey),
                      BOTH(MVLAttachmentIDKey),
                      BOTH(MVLPayloadTrackingSentKey),
                      BOTH(kMVLUDIKey),
                      BOTH(MVLUTIMapObjectDataKey),
                      BOTH(MVLUTIMapObjectLengthKey),
                      BOTH(MVLUTIMapObjectOffsetKey)};
  for (const auto& [ours, theirs] : pairs) EXPECT_STREQ(ours.UTF8String, theirs);
}

TEST(ApplePostTest, ObserversGetTheSameObjectsFromTheMainQueue) {
  const auto last = []() -> NSNotification* { return morvelune::apple::objectOf(lastPosted); };
  NSNotificationCenter* center = [NSNotificationCenter defaultCenter];
  [center addObserver:[Listener class] selector:@selector(received:) name:@"tapped" object:nil];
  NSDictionary* userInfo = @{@"bid" : @"b1"};
  id sender = counted();
  @autoreleasepool {
    [::MVLCommonHelpers postNotificationOnMainThread:@"tapped" object:sender userInfo:userInfo];
  }
  EXPECT_EQ(last(), nil) << "never before the call has returned";
  EXPECT_EQ(StandinDrainMainQueue(), 1U);
  EXPECT_EQ(last().object, sender);
  EXPECT_EQ(last().userInfo, userInfo);
  [::MVLCommonHelpers postNotificationOnMainThread:@"tapped" userInfo:@{}];
  EXPECT_EQ(StandinDrainMainQueue(), 1U);
  EXPECT_TRUE(last().object == nil && [last().userInfo isEqual:@{}]);
  [::MVLCommonHelpers postNotificationOnMainThread:@"tapped"];
  [::MVLCommonHelpers postNotificationOnMainThread:nil];
  EXPECT_EQ(StandinDrainMainQueue(), 1U);
  EXPECT_TRUE(last().object == nil && last().userInfo == nil);
  [center removeObserver:[Listener class]];
  lastPosted = nullptr;
}

TEST(AppleDeviceTest, ReadsAScreenThatIsTurned) {
  UIScreen* screen = [UIScreen screenOfSize:{375, 812} fixedOrigin:{0, 375}];
  EXPECT_EQ([screen mvl_currentOrientation], 3);
}

TEST(AppleDeviceTest, ComparesEveryPartOfTheVersion) {
  const auto device = morvelune::Platform::native()->device;
  EXPECT_TRUE(device->isOperatingSystemAtLeastVersion({17, 4, 1}));
  EXPECT_FALSE(device->isOperatingSystemAtLeastVersion({17, 4, 2}));
  EXPECT_FALSE(device->isOperatingSystemAtLeastVersion({17, 5, 0}));
  EXPECT_FALSE(device->isOperatingSystemAtLeastVersion({18, 0, 0}));
}

TEST(AppleSystemLogTest, ALineIsOneLineWhateverItHolds) {
  ::testing::internal::CaptureStderr();
  morvelune::Platform::native()->systemLog->log("a %@ 100%%", {"%s\n%@"});
  EXPECT_NE(::testing::internal::GetCapturedStderr().find("a %s\\n%@ 100%%\n"), std::string::npos);
}

}  // namespace
