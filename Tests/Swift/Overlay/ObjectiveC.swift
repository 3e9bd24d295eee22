// The part of the overlay of the object runtime that the compiler looks for when it imports
// Objective-C.

@_exported import ObjectiveC

@frozen public struct ObjCBool: ExpressibleByBooleanLiteral {
  var value: Int8
  public init(_ value: Bool) { self.value = value ? 1 : 0 }
  public var boolValue: Bool { value != 0 }
  public init(booleanLiteral value: Bool) { self.init(value) }
}
public func _convertBoolToObjCBool(_ value: Bool) -> ObjCBool { ObjCBool(value) }
public func _convertObjCBoolToBool(_ value: ObjCBool) -> Bool { value.boolValue }

@frozen public struct Selector: ExpressibleByStringLiteral {
  var pointer: OpaquePointer
  public init(stringLiteral value: String) { fatalError() }
}

extension NSObject: Equatable, Hashable {
  public static func == (one: NSObject, other: NSObject) -> Bool { fatalError() }
  public func hash(into hasher: inout Hasher) { fatalError() }
}
