// Makes the module Firebase Messaging's delegate where the host has set none.

#pragma once

namespace zib {

// One attempt, on the caller's thread. The host's delegate is never replaced.
void becomeFirebaseDelegate();

}  // namespace zib
