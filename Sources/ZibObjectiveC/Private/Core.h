// Handing a core to the module.

#import "ZibObjectiveC.h"

// NO for nil, and when one is installed already.
BOOL ZIBInstallCore(id<ZIBCore> core);
