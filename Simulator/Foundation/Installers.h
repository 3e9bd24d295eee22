// The parts of prepare(), one for each source file here. Called by nothing else.

#pragma once

namespace sim::foundation {

void installBundleAndProcessInfo();
void installClock();
void installDateFormatter();
void installDirectories();
void installErrors();
void installFileData();
void installJSONSerialization();
void installMethodSignatures();
void installPropertyListSerialization();
void installStrings();
void installThrownExceptions();
void installURLs();

// The part of installURLs() that not every version of the system has.
void installURLsOfVersion();

}  // namespace sim::foundation
