// All that hosts and cores include, for the expressions of refused.txt.

#pragma once

#include <cstdint>
#include <cstdlib>
#include <utility>

#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibCoreBoundary/ZibStorage.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibPayloadBuilder.h"
#include "ZibMessaging/ZibPushConfig.h"
#include "ZibMessaging/ZibPushError.h"
#include "ZibMessaging/ZibSwizzleManager.h"
