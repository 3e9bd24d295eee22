// The integration report, as objects.

#import "ZibObjectiveC.h"

// How things are now. Main thread.
ZIBIntegrationReport* ZIBMakeIntegrationReport(void);
