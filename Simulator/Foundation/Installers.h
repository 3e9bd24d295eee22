// The parts of prepareFoundation(), one for each source file here. Called by nothing else.

#pragma once

namespace sim {

void installClock();
void installDateFormatter();
void installDirectories();
void installErrors();
void installFileData();
void installJSONSerialization();
void installMethodSignatures();
void installBundleAndProcessInfo();
void installPropertyListSerialization();
void installStrings();
void installURLs();
void keepThrownExceptions();

// The part of installURLs() that not every version of the system has.
void installURLsOfVersion();

}  // namespace sim
