import UserNotifications

/// Makes the system show the buttons of an "offer", and the content extension for it. An app calls
/// this whenever it starts.
func registerNotificationCategories() {
  // The identifiers are those of the payload: "bid" of a button, "category" in "aps".
  let buy = UNNotificationAction(identifier: "buy", title: "Buy", options: [.foreground])
  let remind = UNNotificationAction(identifier: "remind", title: "Remind me", options: [])
  let offer = UNNotificationCategory(
    identifier: "offer", actions: [buy, remind], intentIdentifiers: [], options: [])
  UNUserNotificationCenter.current().setNotificationCategories([offer])
}
