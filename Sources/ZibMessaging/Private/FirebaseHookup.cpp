#include "ZibMessaging/Private/FirebaseHookup.h"

#include "ZibMessaging/Private/LogLine.h"
#include "ZibMessaging/Private/MessagingFace.h"
#include "ZibMessaging/Private/Recording.h"
#include "ZibPlatform/FirebaseMessaging/FirebaseMessaging.h"

namespace zib {

void becomeFirebaseDelegate() {
  recording::told(recording::looking);
  const FirebaseMessaging firebase = FirebaseMessaging::find();
  if (firebase.found() != FirebaseMessaging::Found::instance) return;
  const objc::id delegate = firebase.delegate();
  const objc::id face = messagingFace();
  if (face == nullptr || delegate == face) return;
  if (delegate != nullptr) {
    logLine("ℹ️ Customer has set Firebase MessagingDelegate - SDK will swizzle it");
    return;
  }
  if (firebase.setDelegate(face)) {
    logLine("✅ ZibMessaging set as Firebase MessagingDelegate automatically");
  }
}

}  // namespace zib
