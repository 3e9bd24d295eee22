#include "Platform/MainQueue.h"

#include "Platform/Class.h"
#include "Platform/Send.h"

namespace zib {

bool isMainThread() {
  return send<objc::BOOL>(classNamed<"NSThread">().object(), selector<"isMainThread">()) != 0;
}

}  // namespace zib
