Pod::Spec.new do |spec|
  spec.name = 'ZibMessaging'
  header = File.read(File.join(__dir__, 'Sources/ZibMessaging/ZibVersion.h'))
  spec.version = header.scan(/ZIB_VERSION_(?:MAJOR|MINOR|PATCH) (\d+)/).join('.')
  spec.summary = 'Push messaging for iOS: tokens, notifications as analytics events, deep links.'
  spec.description = <<-TEXT
    Puts itself between the system and the app's delegates at run time, takes the device and FCM tokens,
    reports each notification shown or tapped as an analytics event, opens its link, and obeys a remote
    push switch.
  TEXT
  spec.homepage = 'https://zib.example/messaging'
  spec.license = { type: 'Apache-2.0', file: 'LICENSE' }
  spec.author = 'Zib'
  spec.source = { git: 'https://zib.example/messaging.git', tag: spec.version.to_s }

  spec.platform = :ios, '13.0'
  spec.requires_arc = true
  spec.static_framework = true
  spec.frameworks = 'Foundation', 'UIKit', 'UserNotifications'
  spec.libraries = 'c++'

  spec.source_files = 'Sources/**/*.{h,m,cpp}'
  spec.public_header_files = 'Sources/ZibC/zib.h', 'Sources/ZibObjectiveC/ZibObjectiveC.h'
  spec.resource_bundles = { 'ZibMessaging' => ['Sources/ZibC/PrivacyInfo.xcprivacy'] }
  spec.pod_target_xcconfig = {
    'CLANG_CXX_LANGUAGE_STANDARD' => 'c++20',
    # Nothing of the module asks an object for its type.
    'GCC_ENABLE_CPP_RTTI' => 'NO',
    'HEADER_SEARCH_PATHS' => '"${PODS_TARGET_SRCROOT}/Sources" ' \
                             '"${PODS_TARGET_SRCROOT}/Sources/ZibC" ' \
                             '"${PODS_TARGET_SRCROOT}/Sources/ZibObjectiveC"',
    'GCC_PREPROCESSOR_DEFINITIONS[config=Debug]' => '$(inherited) ZIB_CHECKS_SENDS=1'
  }
end
