#import <Foundation/Foundation.h>

/// Makes the system show the buttons of an "offer", and the content extension for it. An app calls
/// this whenever it starts.
void RegisterNotificationCategories(void);
