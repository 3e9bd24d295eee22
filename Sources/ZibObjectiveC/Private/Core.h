// Handing a core to the module.

#import "ZibObjectiveC.h"

// NO when one is installed already.
BOOL ZIBInstallCore(id<ZIBCore> core);
