// swift-tools-version:5.9
import PackageDescription

let package = Package(
  name: "ZibMessaging",
  platforms: [.iOS(.v13)],
  products: [.library(name: "ZibMessaging", targets: ["ZibMessaging"])],
  targets: [
    .target(
      name: "ZibMessaging",
      path: "Sources",
      exclude: ["CMakeLists.txt"],
      publicHeadersPath: ".",
      cxxSettings: [.headerSearchPath(".")]
    )
  ],
  cxxLanguageStandard: .cxx20
)
