import UserNotifications
import XCTest

/// How an app tests its own extension without a push: a request goes in, a content comes out. The
/// test target has NotificationService.swift among its sources, and links MorveluneExtension.
final class NotificationServiceTests: XCTestCase {
  private func content(deliveredFor payload: [AnyHashable: Any]) -> UNNotificationContent? {
    let content = UNMutableNotificationContent()
    content.categoryIdentifier = "offer"
    content.userInfo = payload
    let request = UNNotificationRequest(identifier: "test", content: content, trigger: nil)
    let delivery = expectation(description: "a content")
    var delivered: UNNotificationContent?
    let service = NotificationService()
    service.didReceive(request) { result in
      delivered = result
      delivery.fulfill()
    }
    wait(for: [delivery], timeout: 5)
    return delivered
  }

  func testGroupsByCategory() {
    // An address that nobody serves fails at once, so that the test needs no network.
    let photo = ["att-id": "photo", "att-url": "unserved:"]
    let delivered = content(deliveredFor: ["k2tid": "4711", "mvl-atts": [photo]])
    XCTAssertEqual(delivered?.threadIdentifier, "offer")
  }

  func testLeavesPushesOfOtherSendersAlone() {
    let delivered = content(deliveredFor: ["other": 1])
    XCTAssertEqual(delivered?.threadIdentifier, "")
  }
}
