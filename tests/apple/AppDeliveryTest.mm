// One push, seen by an app on its device and by the tool that shows what a device would deliver.
#include <gtest/gtest.h>

#include "Delivered.h"
#include "NativeJSON.h"
#include "Standins.h"
#include "support/LoopbackOrigin.h"
#include "support/Media.h"
#include "support/Program.h"

namespace {

using namespace morvelune::testing;

using morvelune::apple::autoreleased;
using nlohmann::json;

constexpr char vendor[] = "5D0B6B52-6C6B-4E0B-9A5E-2F6D0C1A7B3E";

// A content as the tool reports it, without what differs from run to run: where the files lie.
json appsView(UNNotificationContent* content) {
  json attachments = json::array();
  for (UNNotificationAttachment* each in content.attachments) {
    attachments.push_back({{"identifier", each.identifier.UTF8String},
                           {"type", each.type.UTF8String},
                           {"bytes", [[NSData dataWithContentsOfURL:each.URL] length]}});
  }
  return {{"title", content.title.UTF8String},
          {"subtitle", content.subtitle.UTF8String},
          {"body", content.body.UTF8String},
          {"userInfo", jsonOf(content.userInfo)},
          {"attachments", attachments}};
}

json toolsView(json content) {
  for (auto& each : content["attachments"]) each.erase("path");
  return content;
}

TEST(AppDeliveryTest, AnAppFindsWhatTheToolShows) {
  LoopbackOrigin origin;
  const std::string png = origin.serve("/photo.png", {.body = pngBytes()});
  const std::string gif = origin.serve("/dance", {.body = gifBytes() + std::string(5000, 'x')});
  const std::string mp4 = origin.serve("/clip.MP4", {.body = mp4Bytes()});
  const json payload{{"aps", {{"alert", {{"title", "Été 😀"}}}, {"mutable-content", 1}}},
                     {"k2tid", "7"},
                     {"level", 2.5},
                     {"flags", {true, nullptr, 18446744073709551615ULL}},
                     {"mvl-tk", {{"url", origin.url("/t|idfv|/|s|")}, {"display", "d?o=|o|"}}},
                     {"mvl-atts",
                      {{{"att-url", png}, {"att-id", "c"}},
                       {{"att-url", gif}, {"att-id", "B"}},
                       {{"att-url", mp4}}}}};

  const Ended tool = Program().run({"deliver", "--json", "--idfv", vendor, "--screen", "375x812",
                                    "--orientation", "portrait", "-"},
                                   payload.dump());
  ASSERT_EQ(tool.status, 0) << tool.err;

  StandinSetIdentifierForVendor(native(vendor));
  StandinSetMainScreen([UIScreen screenOfSize:{375, 812} fixedOrigin:{}]);
  Delivered delivered;
  MVLNotificationServiceExtension* extension =
      autoreleased([[MVLNotificationServiceExtension alloc] init]);
  [extension didReceiveNotificationRequest:requestOf(object(payload))
                        withContentHandler:delivered.handler()];
  UNNotificationContent* shown = delivered.wait(1);
  ASSERT_NE(shown, nil);
  EXPECT_EQ(shown.attachments.count, 3U);

  const json deliveries = tool.report()["deliveries"];
  ASSERT_EQ(deliveries.size(), 1U);
  EXPECT_EQ(appsView(shown), toolsView(deliveries[0]["content"]));

  // And the servers saw the same requests from both.
  std::multiset<std::string> targets;
  for (const auto& request : origin.requests()) targets.insert(request.target);
  EXPECT_EQ(targets.size(), 8U);
  for (const std::string& target : targets) EXPECT_EQ(targets.count(target), 2U) << target;
}

}  // namespace
