// swift-tools-version:5.9
import PackageDescription

let package = Package(
  name: "MorveluneExtension",
  platforms: [.iOS(.v13)],
  products: [
    .library(name: "MorveluneExtension", targets: ["MorveluneExtension"])
  ],
  targets: [
    .target(
      name: "MorveluneExtension",
      path: ".",
      // What no source of the library needs; the package manager would report it as unhandled.
      exclude: [
        "CMakeLists.txt",
        "CMakePresets.json",
        "MorveluneExtension.podspec",
        "README.md",
        "bench",
        "cmake",
        "docs",
        "examples",
        "platform/linux",
        "scripts",
        "tests",
        "tools",
      ],
      // The same files as in CMakeLists.txt and the podspec; a test compares the lists.
      sources: [
        "detection/FSign.cpp",
        "detection/MediaTypes.cpp",
        "extension/AttachmentTasks.cpp",
        "extension/MVLNotificationServiceExtension.cpp",
        "extension/TrackingTask.cpp",
        "payload/MVLNotificationContentExtension.cpp",
        "payload/MVLPushHelpers.cpp",
        "payload/TrackingDescriptor.cpp",
        "payload/UNNotificationToDictionary.cpp",
        "payload/Version.cpp",
        "util/CommonParameters.cpp",
        "util/MVLCommonHelpers.cpp",
        "util/MVLURLHelpers.cpp",
        "util/NSStringMorvelune.cpp",
        "util/TemplateFiller.cpp",
        "util/UIScreenMorvelune.cpp",
        "util/WhiteSpace.cpp",
        "platform/Path.cpp",
        "platform/PercentCoding.cpp",
        "platform/Platform.cpp",
        "platform/Printable.cpp",
        "platform/SystemLog.cpp",
        "platform/UNNotificationContent.cpp",
        "platform/URL.cpp",
        "platform/Value.cpp",
        "platform/apple/AppleDevice.mm",
        "platform/apple/AppleDigest.mm",
        "platform/apple/AppleFileManager.mm",
        "platform/apple/AppleLocale.mm",
        "platform/apple/AppleMainQueue.mm",
        "platform/apple/AppleNotificationAttachments.mm",
        "platform/apple/AppleNotificationCenter.mm",
        "platform/apple/ApplePlatform.mm",
        "platform/apple/AppleSystemLog.mm",
        "platform/apple/AppleText.mm",
        "platform/apple/AppleURL.mm",
        "platform/apple/AppleURLSession.mm",
        "platform/apple/Conversion.mm",
        "platform/apple/NativeContent.mm",
        "apple/Functions.mm",
        "apple/MVLCommonHelpers.mm",
        "apple/MVLConstants.mm",
        "apple/MVLNotificationContentExtension.mm",
        "apple/MVLNotificationServiceExtension.mm",
        "apple/MVLPushHelpers.mm",
        "apple/MVLURLHelpers.mm",
        "apple/NSString+Morvelune.mm",
        "apple/UIScreen+Morvelune.mm",
      ],
      publicHeadersPath: "apple/include",
      // The sources are C++ and Objective-C++ only, which these settings reach.
      cxxSettings: [
        .headerSearchPath("."),
        .headerSearchPath("include"),
        // They manage memory by hand, which the package manager has no setting for.
        .unsafeFlags(["-fno-objc-arc"]),
      ],
      linkerSettings: [
        .linkedFramework("Foundation"),
        .linkedFramework("UIKit"),
        .linkedFramework("UserNotifications"),
        // Or a linker that takes only what is named would leave the categories out.
        .unsafeFlags(["-Xlinker", "-ObjC"]),
      ]
    )
  ],
  cxxLanguageStandard: .cxx20
)
