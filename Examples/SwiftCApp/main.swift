// A host and a core in Swift over the C surface, which is the way in wherever Swift has no
// Objective-C: this one runs on Linux, on the simulated device.

import Device
import ZibMessagingC

// What the core's functions are given as their context.
final class Core {
  func log(_ line: String) { print("zib    | \(line)") }

  func track(_ schema: String, _ data: String) {
    print("core   | event \(schema)\n         \(data)")
  }
}

func core(_ context: UnsafeMutableRawPointer?) -> Core {
  Unmanaged<Core>.fromOpaque(context!).takeUnretainedValue()
}

func string(_ text: zib_text) -> String {
  String(decoding: UnsafeRawBufferPointer(start: text.bytes, count: text.size), as: UTF8.self)
}

func installCore() -> Bool {
  var table = zib_core()
  table.size = MemoryLayout<zib_core>.size
  table.context = Unmanaged.passRetained(Core()).toOpaque()
  table.release = { Unmanaged<Core>.fromOpaque($0!).release() }
  table.config = { _, config in
    config.pointee.auto_swizzling_enabled = true
    return true
  }
  table.log = { core($0).log(string($1)) }
  table.error = { context, line, _ in core(context).log(string(line)) }
  table.track_self_describing_event = { context, schema, data in
    let json = zib_json_copy(data)
    core(context).track(string(schema), string(json))
    zib_text_free(json)
  }
  return zib_core_install(&table)
}

launchDevice()
guard installCore() else { fatalError("there is a core already") }

var delegate = zib_messaging_delegate()
delegate.size = MemoryLayout<zib_messaging_delegate>.size
delegate.did_receive_notification_response = { _, _, action, _ in
  print("app    | tapped: \(string(action))")
}
zib_messaging_set_delegate(&delegate)

guard let application = deviceApplication() else { fatalError("there is no application") }
zib_messaging_configure(application)
zib_messaging_register_for_push(application)

liveThroughADay()
