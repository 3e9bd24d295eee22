// The objects that the system calls back, made without any Objective-C source: their methods are
// C++ functions, and each turns the system's objects into C++ and tells the game.
//
// An app that has its delegates in Objective-C or Swift does not need this.

#pragma once

#include "CppApp/Game.h"
#include "ZibPlatform/ObjectiveC/Object.h"

// One object that is the application's and the notification centre's delegate in one. The game
// outlives it. Once in a process.
zib::Object makeDelegate(Game& game);
