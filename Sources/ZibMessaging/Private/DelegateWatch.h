// Keeps watch for delegates that come at any later time, for hosts that ask for it: by what the
// system posts, and where it posts nothing, by the setters through which delegates come.

#pragma once

namespace zib {

// From now on, for the life of the process. Once; main thread. A class that is intercepted already
// is left alone, without a line.
void watchForDelegates();

}  // namespace zib
