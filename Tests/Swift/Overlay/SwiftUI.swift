// The part of SwiftUI's declarations that the example's app uses.

import UIKit

@MainActor public protocol View {
  associatedtype Body: View
  @ViewBuilder var body: Body { get }
}
extension Never: View {
  public var body: Never { fatalError() }
}
@resultBuilder public enum ViewBuilder {
  public static func buildBlock<Content: View>(_ content: Content) -> Content { content }
}
public struct Text: View {
  public init(_ text: String) {}
  public var body: Never { fatalError() }
}

@MainActor public protocol Scene {
  associatedtype Body: Scene
  @SceneBuilder var body: Body { get }
}
extension Never: Scene {}
@resultBuilder public enum SceneBuilder {
  public static func buildBlock<Content: Scene>(_ content: Content) -> Content { content }
}
public struct WindowGroup<Content: View>: Scene {
  public init(@ViewBuilder content: () -> Content) {}
  public var body: Never { fatalError() }
}

@MainActor public protocol App {
  associatedtype Body: Scene
  @SceneBuilder var body: Body { get }
  init()
}
extension App {
  public static func main() {}
}

@MainActor @propertyWrapper
public struct UIApplicationDelegateAdaptor<Delegate: NSObject & UIApplicationDelegate> {
  public init(_ type: Delegate.Type) {}
  public var wrappedValue: Delegate { fatalError() }
}
