// The part of Foundation's overlay that bridges what crosses the Objective-C face. Nothing of it is
// ever run.

@_exported import Foundation
@_exported import ObjectiveC

extension NSError: Error, @unchecked Sendable {}

extension String: _ObjectiveCBridgeable {
  public func _bridgeToObjectiveC() -> NSString { fatalError() }
  public static func _forceBridgeFromObjectiveC(_ source: NSString, result: inout String?) {
    fatalError()
  }
  public static func _conditionallyBridgeFromObjectiveC(_ source: NSString, result: inout String?)
    -> Bool
  {
    fatalError()
  }
  public static func _unconditionallyBridgeFromObjectiveC(_ source: NSString?) -> String {
    fatalError()
  }
}

extension Dictionary: _ObjectiveCBridgeable {
  public func _bridgeToObjectiveC() -> NSDictionary { fatalError() }
  public static func _forceBridgeFromObjectiveC(_ source: NSDictionary, result: inout Dictionary?) {
    fatalError()
  }
  public static func _conditionallyBridgeFromObjectiveC(
    _ source: NSDictionary, result: inout Dictionary?
  ) -> Bool {
    fatalError()
  }
  public static func _unconditionallyBridgeFromObjectiveC(_ source: NSDictionary?) -> Dictionary {
    fatalError()
  }
}

public struct URL: _ObjectiveCBridgeable {
  public var absoluteString: String { fatalError() }
  public func _bridgeToObjectiveC() -> NSURL { fatalError() }
  public static func _forceBridgeFromObjectiveC(_ source: NSURL, result: inout URL?) {
    fatalError()
  }
  public static func _conditionallyBridgeFromObjectiveC(_ source: NSURL, result: inout URL?) -> Bool
  {
    fatalError()
  }
  public static func _unconditionallyBridgeFromObjectiveC(_ source: NSURL?) -> URL { fatalError() }
}

public struct Data: _ObjectiveCBridgeable {
  public var count: Int { fatalError() }
  public func _bridgeToObjectiveC() -> NSData { fatalError() }
  public static func _forceBridgeFromObjectiveC(_ source: NSData, result: inout Data?) {
    fatalError()
  }
  public static func _conditionallyBridgeFromObjectiveC(_ source: NSData, result: inout Data?)
    -> Bool
  {
    fatalError()
  }
  public static func _unconditionallyBridgeFromObjectiveC(_ source: NSData?) -> Data {
    fatalError()
  }
}

extension AnyHashable: _ObjectiveCBridgeable {
  public func _bridgeToObjectiveC() -> NSObject { fatalError() }
  public static func _forceBridgeFromObjectiveC(_ source: NSObject, result: inout AnyHashable?) {
    fatalError()
  }
  public static func _conditionallyBridgeFromObjectiveC(
    _ source: NSObject, result: inout AnyHashable?
  ) -> Bool {
    fatalError()
  }
  public static func _unconditionallyBridgeFromObjectiveC(_ source: NSObject?) -> AnyHashable {
    fatalError()
  }
}

// How an enumeration of error codes becomes an error type.

public protocol _ErrorCodeProtocol: Equatable, RawRepresentable {
  associatedtype _ErrorType: _BridgedStoredNSError where _ErrorType.Code == Self
}

extension _ErrorCodeProtocol {
  public static func ~= (code: Self, error: Error) -> Bool { fatalError() }
}

public protocol _BridgedStoredNSError: Error, Hashable {
  associatedtype Code: _ErrorCodeProtocol, RawRepresentable
  where Code._ErrorType == Self, Code.RawValue: FixedWidthInteger
  static var errorDomain: String { get }
  var _nsError: NSError { get }
  init(_nsError: NSError)
}

extension _BridgedStoredNSError {
  public var code: Code { fatalError() }
  public static func == (one: Self, other: Self) -> Bool { fatalError() }
  public func hash(into hasher: inout Hasher) { fatalError() }
}
