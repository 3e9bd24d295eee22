// The core library's configuration, as far as the messaging module reads it.

#pragma once

struct ZibConfig {
  // Whether the module integrates itself into the host's delegates.
  bool autoSwizzlingEnabled = true;
};
