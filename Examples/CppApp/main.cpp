// Starts the game on the simulated device, with the part of the engine and of UIApplicationMain()
// played by hand.

#include "CppApp/Delegates.h"
#include "CppApp/Game.h"
#include "Device/Device.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Send.h"

using zib::selector;
using zib::send;
using zib::objc::id;

int main() {
  launchDevice();
  const zib::AutoreleasePool pool;
  Game game;
  const zib::Object delegate = makeDelegate(game);
  const auto application = zib::Application::shared();
  send<void>(application->native(), selector<"setDelegate:">(), delegate.raw());
  zib::NotificationCenter::current().setDelegate(delegate.raw());
  game.launched(*application);

  liveThroughADay();
}
