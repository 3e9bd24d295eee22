// The parts of installFoundation(), one for each source file here. Called by nothing else.

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

}  // namespace sim
