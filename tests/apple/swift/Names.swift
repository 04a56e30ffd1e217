import MorveluneExtension
import MorveluneExtension.Subclass
import UIKit
import UserNotifications

// The names that the headers choose for Swift, and what may be nil there. Off Apple's platforms Swift
// takes an NSString for no String, and imports no function like this one, which the examples call.
func NSLog(_ format: String, _ arguments: Any...) {}

func helpers(_ text: NSString, _ notification: UNNotification, _ response: UNNotificationResponse) {
  let userInfo = MVLPushHelpers.userInfo(fromNotification: notification)
  let _: Bool = MVLPushHelpers.isMorveluneNotification(response)
  let _: NSURL? = MVLPushHelpers.trackingURL(forAction: text, forNotification: nil)
  _ = MVLPushHelpers.customParams(fromUserInfo: userInfo)
  _ = MVLPushHelpers.actionParams(text, fromUserInfo: userInfo)?.count
  _ = MVLPushHelpers.actionCustomParams(nil, fromUserInfo: nil).count

  let name: NSString = MVLCommonHelpers.countryCode()
  MVLCommonHelpers.postOnMainThread(name: name)
  MVLCommonHelpers.postOnMainThread(name: name, userInfo: userInfo)
  MVLCommonHelpers.postOnMainThread(name: name, object: response, userInfo: nil)

  let _: NSString? = MVLURLHelpers.filledURL(text, parameters: nil, allParamsRequired: true)
  let _: NSString? = MVLURLHelpers.filledURL(text, parameters: nil)
  let _: NSString? = MVLURLHelpers.filledURL(text)

  let _: Bool = MVLNotificationContentExtension.shouldDelayDismiss(for: response)
  _ = MVLNotificationContentExtension.customParams(forNotification: nil)?.count
  _ = MVLNotificationContentExtension.actionCustomParams(nil, for: response)?.count
}

func categories(_ text: NSString) {
  let _: NSString = text.mvl_MD5String()
  let _: NSString = text.mvl_SHA1String()
  let _: NSString? = text.mvl_currencyString()
  let _: NSString = text.mvl_incremented(by: nil, addPositiveSign: true)
  let _: NSString = text.mvl_URLEncodeString()
  let _: NSString? = text.mvl_URLDecodeString()
}

class Steps: MVLNotificationServiceExtension {
  override func serviceExtensionTimeWillExpire() {
    super.serviceExtensionTimeWillExpire()
    let payload = MVLPushHelpers.userInfo(fromNotification: nil)
    let _: UNNotificationContent? = mvlBestAttemptContent
    let _: NSURLSessionDataTask? = trackingTask(forNotification: payload)
    _ = attachmentsTasks(forNotification: payload).count
    let _: NSURLSessionDownloadTask = downloadTask(forAttachment: payload)
    let _: NSURL = saveTempFile(NSURL(), identifier: kMVLNullValue)
    let _: NSString? = uti(for: nil)
    let _: NSString? = uti(for: nil, suggestedFilename: nil)
    internalContentHandler?(internalBestAttemptContent!)
  }
}
