// Delegates of hosts, in Objective-C. Each method tells hostDid() "Class method", where Class is
// the one whose code it is. Callable from C++ and Objective-C.

#pragma once

#ifdef __OBJC__
#import <Foundation/Foundation.h>
typedef id HostObject;
#else
typedef struct objc_object* HostObject;
#endif

#ifdef __cplusplus
extern "C" {
#endif

// A new delegate of one of these classes:
//   Whole       has all methods: refuses URLs, presents with options 5, completes at once
//   BaseScene, and its subclasses, whose methods call super:
//     SameScene       with the same links
//     FilteringScene  with a set of the first link only
//     LaterScene      with a set of the first link only, in a later turn of the main queue
//     AgainScene      not at all; the first time it calls its own method with a set of the first
//     link
//   Composite   passes notifications on to two children that inherit its methods
//   ByHand      hands notifications to handInByHand(), and completes
//   Partial     has the device token, and answers yes to URLs
//   Legacy      opens URLs by the method with a source application, and by the oldest one: no
//   Oldest      opens URLs by the oldest method only: no
//   OddTypes    opens URLs by a method that answers nothing
//   RootClaiming  has nothing, and claims to be of a root class
//   Classless   has the device token, and raises where it is asked for its class
//   Unsure      has nothing, and after beginToRaise() raises the first time that it is asked
//   whether
//     it opens URLs, and whether it presents notifications
//   Lazy        gets the method for taps when it is asked whether it has it, and completes
// Of these, which have no method themselves and answer what their target answers:
//   Naming      names it
//   Invoking    passes invocations on
//   Proxy       likewise, and is no NSObject
//   UnsureProxy  likewise, and raises where it is asked for the signature of a tap
//   Helped      names it, but does not answer for what it has
HostObject makeHost(const char* className);

// Of a forwarding delegate, which keeps it.
void setTarget(HostObject delegate, HostObject target);

// Of Unsure.
void beginToRaise(void);

// When an application's setter of the delegate raises.
enum RaisingSetter { forNil, forDelegate, theFirstTime, forTheFirstDelegate, eachTime };
// Gives the application a subclass of the host's whose setter raises then, instead of calling super
// or after it has.
void makeSetterRaise(HostObject application, enum RaisingSetter when, int isAfterSuper);

// Another library that puts a function of its own before a method of a class, and calls what it
// found there. It tells hostDid() "Library method". Installing it again makes it call itself, or
// whoever stands before it, for it keeps one function only.
void installLibrary(const char* className, const char* selector);
// The same library before the method of one object, whose class it derives a hidden one from.
void hideBehindLibrary(HostObject delegate, const char* selector);
// The same library before a class's setter of its delegate.
void installSetterLibrary(const char* className);
// Exchanges the methods of two classes.
void exchangeMethods(const char* oneClass, const char* otherClass, const char* selector);

// The test's.
void hostDid(const char* what);
void handInByHand(HostObject notificationOrResponse, int isResponse);

#ifdef __cplusplus
}
#endif
