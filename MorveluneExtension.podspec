Pod::Spec.new do |s|
  s.name = 'MorveluneExtension'
  s.version = '1.0'
  s.summary = 'Enriches and measures push notifications inside a notification extension.'
  s.author = 'Morvelune'
  s.license = { :type => 'Proprietary', :text => 'All rights reserved.' }

  # CocoaPods wants both, but it is not decided where the project is published. A pod that is added
  # by its path uses neither.
  s.homepage = 'https://example.com/MorveluneExtension'
  s.source = { :git => 'https://example.com/MorveluneExtension.git', :tag => s.version.to_s }

  s.platform = :ios, '13.0'
  s.frameworks = 'Foundation', 'UIKit', 'UserNotifications'
  s.libraries = 'c++'
  s.requires_arc = false

  s.public_header_files = 'apple/include/MorveluneExtension/*.h'
  s.module_map = 'apple/CocoaPods.modulemap'

  # The same sources as in CMakeLists.txt and Package.swift; a test compares the lists.
  s.source_files = [
    'apple/include/MorveluneExtension/*.h',
    'detection/FSign.cpp',
    'detection/MediaTypes.cpp',
    'extension/AttachmentTasks.cpp',
    'extension/MVLNotificationServiceExtension.cpp',
    'extension/TrackingTask.cpp',
    'payload/MVLNotificationContentExtension.cpp',
    'payload/MVLPushHelpers.cpp',
    'payload/TrackingDescriptor.cpp',
    'payload/UNNotificationToDictionary.cpp',
    'payload/Version.cpp',
    'util/CommonParameters.cpp',
    'util/MVLCommonHelpers.cpp',
    'util/MVLURLHelpers.cpp',
    'util/NSStringMorvelune.cpp',
    'util/TemplateFiller.cpp',
    'util/UIScreenMorvelune.cpp',
    'util/WhiteSpace.cpp',
    'platform/Path.cpp',
    'platform/PercentCoding.cpp',
    'platform/Platform.cpp',
    'platform/Printable.cpp',
    'platform/SystemLog.cpp',
    'platform/UNNotificationContent.cpp',
    'platform/URL.cpp',
    'platform/Value.cpp',
    'platform/apple/AppleDevice.mm',
    'platform/apple/AppleDigest.mm',
    'platform/apple/AppleFileManager.mm',
    'platform/apple/AppleLocale.mm',
    'platform/apple/AppleMainQueue.mm',
    'platform/apple/AppleNotificationAttachments.mm',
    'platform/apple/AppleNotificationCenter.mm',
    'platform/apple/ApplePlatform.mm',
    'platform/apple/AppleSystemLog.mm',
    'platform/apple/AppleText.mm',
    'platform/apple/AppleURL.mm',
    'platform/apple/AppleURLSession.mm',
    'platform/apple/Conversion.mm',
    'platform/apple/NativeContent.mm',
    'apple/Functions.mm',
    'apple/MVLCommonHelpers.mm',
    'apple/MVLConstants.mm',
    'apple/MVLNotificationContentExtension.mm',
    'apple/MVLNotificationServiceExtension.mm',
    'apple/MVLPushHelpers.mm',
    'apple/MVLURLHelpers.mm',
    'apple/NSString+Morvelune.mm',
    'apple/UIScreen+Morvelune.mm',
  ]

  # The C++ headers stay in their folders, where the sources find them. As source files they would
  # be put into one folder, in which several share a name with a public header.
  s.preserve_paths = [
    'detection/*.h',
    'include/morvelune/*.h',
    'include/morvelune/platform/*.h',
    'platform/*.h',
    'platform/apple/*.h',
    'payload/*.h',
    'util/*.h',
  ]
  s.pod_target_xcconfig = {
    'CLANG_CXX_LANGUAGE_STANDARD' => 'c++20',
    'CLANG_CXX_LIBRARY' => 'libc++',
    'HEADER_SEARCH_PATHS' => '"$(PODS_TARGET_SRCROOT)" "$(PODS_TARGET_SRCROOT)/include" ' \
                             '"$(PODS_TARGET_SRCROOT)/apple/include"',
    # Xcode would give a framework version symbols of the names that the library's own have.
    'VERSIONING_SYSTEM' => '',
  }
end
