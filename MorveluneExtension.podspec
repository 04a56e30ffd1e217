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
  s.frameworks = 'CoreFoundation', 'Foundation', 'UIKit', 'UserNotifications'
  s.libraries = 'c++', 'objc'
  s.requires_arc = true

  s.public_header_files = 'apple/include/MorveluneExtension/*.h'
  s.module_map = 'apple/CocoaPods.modulemap'

  # The same sources as in CMakeLists.txt and Package.swift; a test compares them.
  s.source_files = [
    'apple/include/MorveluneExtension/*.h',
    'apple/*.mm',
    'detection/*.cpp',
    'extension/*.cpp',
    'payload/*.cpp',
    'platform/*.cpp',
    'platform/apple/*.mm',
    'util/*.cpp',
  ]
  s.resource_bundles = { 'MorveluneExtension' => ['apple/PrivacyInfo.xcprivacy'] }

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
    # Without it a static pod is no module, and Swift cannot import it.
    'DEFINES_MODULE' => 'YES',
    'HEADER_SEARCH_PATHS' => '"$(PODS_TARGET_SRCROOT)" "$(PODS_TARGET_SRCROOT)/include" ' \
                             '"$(PODS_TARGET_SRCROOT)/apple/include"',
    # Xcode would give a framework version symbols of the names that the library's own have.
    'VERSIONING_SYSTEM' => '',
  }
end
