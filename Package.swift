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
      // What is not for iOS, or no source; the package manager would report it as unhandled.
      exclude: [
        "CMakeLists.txt",
        "CMakePresets.json",
        "MorveluneExtension.podspec",
        "README.md",
        "SECURITY.md",
        "apple/CocoaPods.modulemap",
        "bench",
        "cmake",
        "docs",
        "examples",
        "platform/linux",
        "platform/none",
        "scripts",
        "tests",
        "tools",
      ],
      // Every source in apple/, beside which the privacy manifest stands, and in these folders. A test
      // compares them with CMakeLists.txt.
      sources: [
        "apple/Functions.mm",
        "apple/MVLCommonHelpers.mm",
        "apple/MVLConstants.mm",
        "apple/MVLNotificationContentExtension.mm",
        "apple/MVLNotificationServiceExtension.mm",
        "apple/MVLPushHelpers.mm",
        "apple/MVLURLHelpers.mm",
        "apple/NSString+Morvelune.mm",
        "apple/UIScreen+Morvelune.mm",
        "detection",
        "extension",
        "payload",
        "platform",
        "util",
      ],
      resources: [.copy("apple/PrivacyInfo.xcprivacy")],
      publicHeadersPath: "apple/include",
      cxxSettings: [
        .headerSearchPath("."),
        .headerSearchPath("include"),
      ],
      linkerSettings: [
        .linkedFramework("CoreFoundation"),
        .linkedFramework("Foundation"),
        .linkedFramework("UIKit"),
        .linkedFramework("UserNotifications"),
        .linkedLibrary("c++"),
        .linkedLibrary("objc"),
      ]
    )
  ],
  cxxLanguageStandard: .cxx20
)
