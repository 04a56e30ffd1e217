import MorveluneExtension
import UserNotifications

/// The principal class of the notification service extension.
class NotificationService: MVLNotificationServiceExtension {
  // An app that changes nothing leaves this method out.
  override func didReceive(
    _ request: UNNotificationRequest,
    withContentHandler contentHandler: @escaping (UNNotificationContent) -> Void
  ) {
    super.didReceive(request) { content in
      // What was handed back untouched is no mutable content.
      if let own = content as? UNMutableNotificationContent {
        // The app's own changes. They may be made twice: when time expires, and when the last
        // download has finished after that.
        own.threadIdentifier = own.categoryIdentifier
      }
      contentHandler(content)
    }
  }

  // The handler above is called with what there is. An app whose own work takes time ends it here.
  override func serviceExtensionTimeWillExpire() {
    super.serviceExtensionTimeWillExpire()
  }
}
