// Delegates of a host, in Objective-C, that record how they were called. Callable from C++ and
// Objective-C.

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

// A new delegate, for the application and for the notification centre, of one of these classes:
//   RecordingDelegate   only records, and completes at once: options 9
//   InheritingDelegate  a subclass of it without methods of its own
//   SuperDelegate       a subclass of it whose methods record and then call super's
//   LaterDelegate       completes in another turn of the main queue
//   ThrowingDelegate    throws an NSException from each method
HostObject makeHostDelegate(const char* className);
// What `class` answers, which the runtime may know otherwise.
const char* classNameOf(HostObject object);

// The function that a message to the object reaches.
const void* implementationFor(HostObject object, const char* selector);

// Changes the delegate's number of badges, which can be observed.
void setBadges(HostObject delegate, int badges);
// Observes it, which gives the delegate a hidden class, until the observation ends.
void beginObservation(HostObject delegate);
void endObservation(HostObject delegate);
int observedChanges(void);
const char* hiddenClassNameOf(HostObject object);

// The exception that the work throws, caught in Objective-C, or nil.
HostObject exceptionThrownBy(void (*work)(void* context), void* context);
// The one that ThrowingDelegate threw last.
HostObject thrownException(void);

// The test's: called by every method of the delegates.
void hostMethodCalled(HostObject receiver, const char* selector, HostObject subject,
                      HostObject argument);

#ifdef __cplusplus
}
#endif
