// swift-tools-version:5.4
import PackageDescription

let package = Package(
  name: "ZibMessaging",
  platforms: [.iOS(.v13)],
  products: [
    // For hosts and cores in Swift and Objective-C.
    .library(name: "ZibMessaging", targets: ["ZibMessaging"]),
    // For those in C, and in languages that speak it.
    .library(name: "ZibMessagingC", targets: ["ZibMessagingC"]),
    // For those in C++.
    .library(name: "ZibMessagingCxx", targets: ["ZibMessagingCxx"]),
    // Records an app's run as a scenario, in debug builds.
    .library(name: "ZibRecorder", targets: ["ZibRecorder"]),
  ],
  targets: [
    .target(
      name: "ZibMessaging",
      dependencies: ["ZibMessagingC"],
      path: "Sources/ZibObjectiveC",
      publicHeadersPath: ".",
      cSettings: [.headerSearchPath(".")]
    ),
    .target(
      name: "ZibMessagingC",
      dependencies: ["ZibMessagingCxx"],
      path: "Sources/ZibC",
      resources: [.copy("PrivacyInfo.xcprivacy")],
      publicHeadersPath: ".",
      cxxSettings: [.headerSearchPath("..")] + checked
    ),
    .target(
      name: "ZibMessagingCxx",
      path: "Sources",
      exclude: ["CMakeLists.txt", "ZibC", "ZibObjectiveC"],
      sources: ["ZibPlatform", "ZibCoreBoundary", "ZibMessaging"],
      publicHeadersPath: ".",
      cxxSettings: [.headerSearchPath(".")] + checked,
      // The module finds both by name, and would find nothing in an app that links neither.
      linkerSettings: [
        .linkedFramework("UIKit", .when(platforms: [.iOS])),
        .linkedFramework("UserNotifications", .when(platforms: [.iOS])),
      ]
    ),
    .target(
      name: "ZibRecorder",
      dependencies: ["ZibMessagingCxx"],
      path: "Recorder",
      publicHeadersPath: ".",
      cxxSettings: [.headerSearchPath(".."), .headerSearchPath("../Sources")] + checked
    ),
  ],
  cxxLanguageStandard: .cxx20
)

var checked: [CXXSetting] { [.define("ZIB_CHECKS_SENDS", .when(configuration: .debug))] }
