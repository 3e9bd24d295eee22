#include "ZibPlatform/Dispatch/MainQueue.h"

#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

bool isMainThread() {
  return send<objc::BOOL>(classNamed<"NSThread">().object(), selector<"isMainThread">()) != 0;
}

}  // namespace zib
