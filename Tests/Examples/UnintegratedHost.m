// The Objective-C example without its integration, and at the end what became of its delegates'
// methods. Built twice, with the module linked in and without any of it; both have to print the
// same.

#include <objc/runtime.h>
#include <stdio.h>
#include <stdlib.h>

#include "Device/Device.h"
#import "ObjectiveCApp/AppDelegate.h"
#import "ObjectiveCApp/NotificationDelegate.h"

typedef struct {
  Class owner;
  Method *methods;
  IMP *implementations;
  unsigned int count;
} Methods;

static Methods methodsOf(Class owner) {
  Methods all = {owner, NULL, NULL, 0};
  all.methods = class_copyMethodList(owner, &all.count);
  all.implementations = (IMP *)calloc(all.count, sizeof(IMP));
  for (unsigned int index = 0; index < all.count; ++index) {
    all.implementations[index] =
        class_getMethodImplementation(owner, method_getName(all.methods[index]));
  }
  return all;
}

static void reportMethods(Methods before) {
  Methods now = methodsOf(before.owner);
  printf("%s has %u methods, had %u\n", class_getName(before.owner), now.count, before.count);
  for (unsigned int index = 0; index < now.count && index < before.count; ++index) {
    BOOL isSame = now.methods[index] == before.methods[index] &&
                  now.implementations[index] == before.implementations[index];
    printf("  %s %s: %s\n", sel_getName(method_getName(now.methods[index])),
           method_getTypeEncoding(now.methods[index]), isSame ? "untouched" : "CHANGED");
  }
  free(now.methods);
  free(now.implementations);
  free(before.methods);
  free(before.implementations);
}

int main(void) {
  @autoreleasepool {
    launchDevice();
    Methods appMethods = methodsOf([AppDelegate class]);
    Methods notificationMethods = methodsOf([NotificationDelegate class]);
    UIApplication *application = [UIApplication sharedApplication];
    AppDelegate *appDelegate = [[AppDelegate alloc] init];
    application.delegate = appDelegate;
    [appDelegate application:application didFinishLaunchingWithOptions:nil];
    liveThroughADay();
    reportMethods(appMethods);
    reportMethods(notificationMethods);
  }
  return 0;
}
