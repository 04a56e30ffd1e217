import MorveluneExtension
import UIKit
import UserNotifications
import UserNotificationsUI

/// The principal class of the notification content extension.
class NotificationViewController: UIViewController, UNNotificationContentExtension {
  private let label = UILabel()

  // An app has a view of its own design.
  override func loadView() {
    label.numberOfLines = 0
    view = label
  }

  func didReceive(_ notification: UNNotification) {
    let params = MVLNotificationContentExtension.customParams(forNotification: notification)
    // There are no parameters for a notification of another sender.
    label.text = params.map { "\($0)" } ?? "none"
  }

  func didReceive(
    _ response: UNNotificationResponse,
    completionHandler completion:
      @escaping (UNNotificationContentExtensionResponseOption) -> Void
  ) {
    let params = MVLNotificationContentExtension.actionCustomParams(
      response.actionIdentifier, for: response)
    NSLog("parameters of the button: %@", params.map { "\($0)" } ?? "none")
    // A notification that stays is for the app to dismiss.
    let stays = MVLNotificationContentExtension.shouldDelayDismiss(for: response)
    completion(stays ? .doNotDismiss : .dismissAndForwardAction)
  }
}
