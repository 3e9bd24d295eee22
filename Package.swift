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
      cxxSettings: [
        .headerSearchPath("."),
        // Without it the checks of debug builds would ship.
        .define("NDEBUG", .when(configuration: .release)),
      ]
    )
  ],
  cxxLanguageStandard: .cxx20
)
