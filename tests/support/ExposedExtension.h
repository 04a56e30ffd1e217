// The service extension with its methods for subclasses open to tests.
#pragma once

#include "morvelune/MVLNotificationServiceExtension.h"

namespace morvelune::testing {

class ExposedExtension : public MVLNotificationServiceExtension {
 public:
  using MVLNotificationServiceExtension::downloadTaskForAttachment;
  using MVLNotificationServiceExtension::internalAttachments;
  using MVLNotificationServiceExtension::internalBestAttemptContent;
  using MVLNotificationServiceExtension::internalContentHandler;
  using MVLNotificationServiceExtension::internalOperationsCount;
  using MVLNotificationServiceExtension::knownExtensionsMap;
  using MVLNotificationServiceExtension::setInternalBestAttemptContent;
  using MVLNotificationServiceExtension::setInternalOperationsCount;
  using MVLNotificationServiceExtension::trackingTaskForNotification;
  using MVLNotificationServiceExtension::UTIForData;
  using MVLNotificationServiceExtension::UTIMap;
};

}  // namespace morvelune::testing
