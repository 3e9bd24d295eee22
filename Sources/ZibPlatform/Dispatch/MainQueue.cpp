#include "ZibPlatform/Dispatch/MainQueue.h"

#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

bool isMainThread() { return sendToClass<"NSThread", "isMainThread", objc::BOOL>() != 0; }

}  // namespace zib
