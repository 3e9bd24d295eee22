// The messaging module for every language: C11, and the only symbols that a library of it exports.
//
// Objects of the platform are handed over as they are and borrowed: what receives one and keeps it
// retains it, and what a function returns belongs to its caller where the name says copy or create.
// No function fails loudly, and none lets an exception out: what goes wrong is an error line of the
// core's. A missing object or text, or an object of another class than is asked for, is one error
// line that names the operation, which then does nothing; an application or an error is taken as it
// is.
//
// Functions may be called on any thread and run on it, unless it says main thread. Host functions
// may be called on any thread, unless it says which, and never after their context was released.

#ifndef ZIB_H
#define ZIB_H

// NOLINTBEGIN(modernize-deprecated-headers): for C
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
// NOLINTEND(modernize-deprecated-headers)

#if defined(__clang__)
#define ZIB_ASSUME_NONNULL_BEGIN                                                                   \
  _Pragma("clang diagnostic push") _Pragma("clang diagnostic ignored \"-Wnullability-extension\"") \
      _Pragma("clang assume_nonnull begin")
#define ZIB_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end") _Pragma("clang diagnostic pop")
#define ZIB_NULLABLE _Nullable
#else
#define ZIB_ASSUME_NONNULL_BEGIN
#define ZIB_ASSUME_NONNULL_END
#define ZIB_NULLABLE
#endif

#define ZIB_API __attribute__((visibility("default")))

#if defined(__has_feature)
#define ZIB_HAS_FEATURE(feature) __has_feature(feature)
#else
#define ZIB_HAS_FEATURE(feature) 0
#endif

// Ownership as a compiler of Objective-C sees it.
#if ZIB_HAS_FEATURE(objc_arc)
#define ZIB_BORROWED __unsafe_unretained
#define ZIB_OWNED_BY_CALLER __attribute__((ns_returns_retained))
#else
#define ZIB_BORROWED
#define ZIB_OWNED_BY_CALLER
#endif

#if defined(__cplusplus)
extern "C" {
#endif
ZIB_ASSUME_NONNULL_BEGIN

// Any object of the platform.
#if defined(__OBJC__)
typedef id zib_object;
#else
typedef struct objc_object* zib_object;
#endif

// Text in UTF-8; null bytes are no text at all, and an empty text has bytes. NUL may be part of it.
// What the module hands out is also followed by a NUL. What it is given is read during the call
// only, and bytes that are no UTF-8 become U+FFFD.
typedef struct zib_text {
  const char* ZIB_NULLABLE bytes;
  size_t size;
} zib_text;

// A text that ends at its NUL; no text for null.
static inline zib_text zib_text_of(const char* ZIB_NULLABLE terminated) {
  zib_text text = {terminated, 0};
  while (terminated && terminated[text.size]) ++text.size;
  return text;
}

// A copy, as copy_push_config_endpoint is to give one; no text for no text.
ZIB_API zib_text zib_text_copy(zib_text text);
// Frees what a function whose name says copy has given. Once; no text is fine.
ZIB_API void zib_text_free(zib_text text);

// The module's version, such as "0.1.0". It lives as long as the process.
ZIB_API zib_text zib_version(void);

// Gives an object up that a function whose name says copy or create has given. ARC does so itself.
#if !ZIB_HAS_FEATURE(objc_arc)
ZIB_API void zib_object_release(zib_object ZIB_NULLABLE object);
#endif

// Lets a context go: once, after the last call of the functions that come with it, on whichever
// thread ends it.
typedef void (*zib_release)(void* ZIB_NULLABLE context);

// A failure. What a function of the host's gets is valid during its call.
typedef struct zib_error {
  zib_text domain;
  int64_t code;
  zib_text description;
  ZIB_BORROWED zib_object object;  // the NSError
} zib_error;

// The failures that the remote push configuration finds itself, as codes of this domain. Their
// descriptions come with them.
#define ZIB_PUSH_ERROR_DOMAIN "ZibMessaging.ZibPushError"
enum {
  ZIB_PUSH_ERROR_INVALID_URL = 0,
  ZIB_PUSH_ERROR_NO_DATA = 1,
  ZIB_PUSH_ERROR_INVALID_PLIST = 2,
  ZIB_PUSH_ERROR_FIREBASE_NOT_CONFIGURED = 3  // for hosts; the module never fails with it
};

// The core library, which receives what the module has to log, send and store.

typedef struct zib_config {
  size_t size;  // as in the module; a core may be older or newer
  bool auto_swizzling_enabled;
} zib_config;

// `size` is sizeof(zib_core): members are only ever added at the end, and those that an older core
// does not have count as null. A null function is not called.
typedef struct zib_core {
  size_t size;
  void* ZIB_NULLABLE context;
  zib_release ZIB_NULLABLE release;
  // False while there is no configuration. All members of `config` have their defaults before.
  bool (*ZIB_NULLABLE config)(void* ZIB_NULLABLE context, zib_config* config);
  // The URL of the remote push configuration, by zib_text_copy; the module frees it. No text while
  // there is none.
  zib_text (*ZIB_NULLABLE copy_push_config_endpoint)(void* ZIB_NULLABLE context);
  // One complete line.
  void (*ZIB_NULLABLE log)(void* ZIB_NULLABLE context, zib_text line);
  // A failure, with the error where there is one.
  void (*ZIB_NULLABLE error)(void* ZIB_NULLABLE context, zib_text line,
                             const zib_error* ZIB_NULLABLE error);
  // One analytics event, an NSDictionary, under a schema URI. Once for each event.
  void (*ZIB_NULLABLE track_self_describing_event)(void* ZIB_NULLABLE context, zib_text schema,
                                                   zib_object data);
  // The FCM registration token, whole. Always after save_fcm_token for the same token.
  void (*ZIB_NULLABLE register_push_token)(void* ZIB_NULLABLE context, zib_text token);
  // The user's answer to the request for permission.
  void (*ZIB_NULLABLE save_push_permission)(void* ZIB_NULLABLE context, bool granted);
  void (*ZIB_NULLABLE save_fcm_token)(void* ZIB_NULLABLE context, zib_text token);
} zib_core;

// For the core library, once, when it starts. Where a core in C++ has installed a part of itself,
// this one is the rest. False, and one error line, for null, when all of a core is installed
// already, or when `size` is that of no zib_core; nothing is kept then, and nothing released.
ZIB_API bool zib_core_install(const zib_core* core);

// What a host can learn. All members as in zib_core. Each is called on the thread of the operation
// that has the news, after the module's own logging and tracking.
typedef struct zib_messaging_delegate {
  size_t size;
  void* ZIB_NULLABLE context;
  zib_release ZIB_NULLABLE release;
  // An FCM token was accepted; it is whole.
  void (*ZIB_NULLABLE did_receive_token)(void* ZIB_NULLABLE context, zib_text token);
  // A notification is about to be presented in the foreground: an NSDictionary.
  void (*ZIB_NULLABLE did_receive_notification)(void* ZIB_NULLABLE context, zib_object user_info);
  // The user acted on a notification: a UNNotificationResponse, and what there is to read in it.
  void (*ZIB_NULLABLE did_receive_notification_response)(void* ZIB_NULLABLE context,
                                                         zib_object response,
                                                         zib_text action_identifier,
                                                         zib_object user_info);
  // Registration failed, or the request for permission ended with an error.
  void (*ZIB_NULLABLE did_fail_to_register)(void* ZIB_NULLABLE context, const zib_error* error);
} zib_messaging_delegate;

// ZibMessaging

// The delegate is copied and kept until another takes its place; null takes it back. A host whose
// own object may go keeps it weakly in the context. False, and one error line, when `size` is that
// of no zib_messaging_delegate; nothing is kept then, and nothing released.
ZIB_API bool zib_messaging_set_delegate(const zib_messaging_delegate* ZIB_NULLABLE delegate);
ZIB_API bool zib_messaging_has_delegate(void);

// The user's latest answer that came without an error.
ZIB_API bool zib_messaging_is_push_enabled(void);
// The latest FCM token that was accepted; no text before the first.
ZIB_API zib_text zib_messaging_copy_fcm_token(void);
// The latest device token, an NSData; null before the first.
ZIB_API zib_object ZIB_NULLABLE zib_messaging_copy_apns_token(void) ZIB_OWNED_BY_CALLER;
// The schema URI of every notification event.
ZIB_API zib_text zib_messaging_copy_notification_event_schema_uri(void);
// The vendor in that schema, in place of the one that the module was built with. Once, before
// configure; otherwise, and for a text with anything but letters, digits, ".", "-" and "_", it is
// refused with an error line and false.
ZIB_API bool zib_messaging_set_event_vendor(zib_text vendor);

// How the module finds the delegates of a host that it integrates itself into.
enum {
  // When configure runs, and once more for what was not there: half a second later for the delegate
  // of notifications, a second later for scenes, where none was connected, and for the delegate of
  // a Firebase that had started. Not again for the application's delegate, further scenes and
  // Firebase.
  ZIB_DELEGATE_DISCOVERY_ONCE_WITH_RETRY = 0,
  // As they come, at any time.
  ZIB_DELEGATE_DISCOVERY_CONTINUOUS = 1
};
ZIB_API int32_t zib_messaging_delegate_discovery(void);
// Before configure, which uses it; later, and for what is none of the above, it is refused with an
// error line and false.
ZIB_API bool zib_messaging_set_delegate_discovery(int32_t discovery);

// Integrates the module into the host, or leaves that to the host, as the core's configuration
// says. Once, on the main thread, at start-up: a second call only logs. The UIApplication may be
// null where there is none yet.
ZIB_API void zib_messaging_configure(zib_object ZIB_NULLABLE application);
// Asks the user for permission, and the system for a device token once it is granted. Both answers
// arrive later, on the main thread. Without the UIApplication, null, the user is asked all the
// same, and no device token follows.
ZIB_API void zib_messaging_register_for_push(zib_object ZIB_NULLABLE application);

// What the application delegate was told; a host that integrates by hand forwards it. The token is
// an NSData, the error an NSError or null. set_push_token is the same as the first.
ZIB_API void zib_messaging_did_register_for_remote_notifications(zib_object device_token);
ZIB_API void zib_messaging_did_fail_to_register_for_remote_notifications(
    zib_object ZIB_NULLABLE error);
ZIB_API void zib_messaging_set_push_token(zib_object device_token);

// An FCM registration token. Dropped, with a warning, before the first device token.
// did_receive_registration_token is the same.
ZIB_API void zib_messaging_set_fcm_token(zib_text token);
ZIB_API void zib_messaging_did_receive_registration_token(zib_text token);

// Becomes Firebase Messaging's delegate if Firebase is there and has none. One attempt.
ZIB_API void zib_messaging_ensure_firebase_messaging_delegate(void);
// Becomes the notification centre's delegate if it has none.
ZIB_API void zib_messaging_setup_as_notification_delegate(void);
// The module's object of the class "ZibMessaging", for hosts that set such delegates themselves. It
// lives as long as the process.
ZIB_API zib_object ZIB_NULLABLE zib_messaging_runtime_object(void);

// A UNNotification is about to be presented in the foreground: gives the
// UNNotificationPresentationOptions to present it with, none for null.
ZIB_API unsigned long zib_messaging_will_present(zib_object notification);
// The user acted on a notification, by this UNNotificationResponse.
ZIB_API void zib_messaging_did_receive(zib_object response);
// Report a notification, by its NSDictionary, without a log line, a call of the delegate or a link.
ZIB_API void zib_messaging_track_notification_received(zib_object user_info);
ZIB_API void zib_messaging_track_notification_opened(zib_object user_info);

// The integration report: who stands between the system and the host's delegates. A report is how
// things were when it was made, and never changes; its texts live as long as it does.

typedef struct zib_integration_report zib_integration_report;

// What the module did with a method of a delegate.
enum {
  ZIB_INTEGRATION_NONE = 0,       // nothing: it has the callback only if it is the delegate itself
  ZIB_INTEGRATION_SWAPPED = 1,    // the delegate's method was replaced
  ZIB_INTEGRATION_ADDED = 2,      // the delegate had no such method
  ZIB_INTEGRATION_FORWARDING = 3  // it had none, but answers by forwarding to another object
};

// One of the methods that the module intercepts, on the delegate that the system has. `size` is
// sizeof(zib_integration_row), and is set by the caller: no more is written.
typedef struct zib_integration_row {
  size_t size;
  zib_text method;          // its selector
  zib_text delegate_class;  // no text where there is no delegate
  int64_t state;
  size_t function_count;
  size_t remark_count;
} zib_integration_row;

// One function that a callback runs through; no text for what cannot be told. `size` as above.
typedef struct zib_integration_function {
  size_t size;
  zib_text image;  // the file name of the program or library that it lies in
  zib_text symbol;
} zib_integration_function;

// How things are now; the caller frees it. Main thread. Null only where memory is short.
ZIB_API zib_integration_report* ZIB_NULLABLE zib_integration_report_create(void);
// Once; null is fine.
ZIB_API void zib_integration_report_free(zib_integration_report* ZIB_NULLABLE report);
// All of it, for a support ticket. No token, link or payload is in it.
ZIB_API zib_text zib_integration_report_text(const zib_integration_report* report);
ZIB_API size_t zib_integration_report_row_count(const zib_integration_report* report);
// False, and one error line, for a row that there is not or a `size` that ends before the first
// member or within one; nothing is written then.
ZIB_API bool zib_integration_report_get_row(const zib_integration_report* report, size_t row,
                                            zib_integration_row* result);
// Of a row's functions, from the outermost, which the system calls, inwards. False as above.
ZIB_API bool zib_integration_report_get_function(const zib_integration_report* report, size_t row,
                                                 size_t function, zib_integration_function* result);
// What a host may want to know, in plain words. No text, and one error line, for a remark that
// there is not.
ZIB_API zib_text zib_integration_report_remark(const zib_integration_report* report, size_t row,
                                               size_t remark);

// ZibDeepLinkHandler

// True means that the host has handled the link, an NSURL, and it must not be opened. Called on the
// thread that handles the notification.
typedef bool (*zib_url_delegate)(void* ZIB_NULLABLE context, zib_object url, zib_text text);

// The host's first chance at each link; null takes it back. The context is kept until another takes
// its place.
ZIB_API void zib_deep_link_handler_set_url_delegate(zib_url_delegate ZIB_NULLABLE url_delegate,
                                                    void* ZIB_NULLABLE context,
                                                    zib_release ZIB_NULLABLE release);
ZIB_API bool zib_deep_link_handler_has_url_delegate(void);
// Opens the link of a tapped notification, by its NSDictionary. True when a link was handled by the
// host or handed on for opening.
ZIB_API bool zib_deep_link_handler_handle_notification_url(zib_object user_info);
// Records a link, an NSURL, that reached the app by another route. True, but for what is
// none.
ZIB_API bool zib_deep_link_handler_handle_url(zib_object url, zib_text source);

// ZibPushConfig

// Gets the content of the app's Firebase property list, an NSDictionary, to configure Firebase
// from, on a thread of the URL session's.
typedef void (*zib_firebase_config_handler)(void* ZIB_NULLABLE context, zib_object config);
// Gets whether the registration for push was started: with true on the main thread, with false on
// the URL session's, or before the return if nothing could be fetched.
typedef void (*zib_push_config_completion)(void* ZIB_NULLABLE context, bool started);

// Makes push depend on a remote switch, from the core's endpoint where `config_endpoint` is no
// text. The context is released when the flow has ended, whichever way it did. `application` is
// as in zib_messaging_register_for_push.
ZIB_API void zib_push_config_configure_push(zib_object ZIB_NULLABLE application,
                                            zib_text config_endpoint,
                                            zib_firebase_config_handler firebase_config_handler,
                                            zib_push_config_completion ZIB_NULLABLE completion,
                                            void* ZIB_NULLABLE context,
                                            zib_release ZIB_NULLABLE release);
// Registers for push at once, without a remote configuration.
ZIB_API void zib_push_config_register_for_push_simple(zib_object ZIB_NULLABLE application);
// Where the latest downloaded property list is stored; no text while there is no such file.
ZIB_API zib_text zib_push_config_copy_saved_firebase_plist_path(void);

// ZibPayloadBuilder: an NSDictionary each; null, and one error line, for an argument that is
// missing or of another class, and where what an argument holds raises as it is read.

ZIB_API zib_object ZIB_NULLABLE zib_payload_builder_create_notification_payload(
    zib_object user_info, zib_text event_type) ZIB_OWNED_BY_CALLER;
// The properties are an NSDictionary with text for keys, of at most 256 levels and 100,000 values:
// larger ones are left out of the event, with an error line.
ZIB_API zib_object ZIB_NULLABLE zib_payload_builder_create_event_payload(
    zib_text event_name, zib_object ZIB_NULLABLE properties) ZIB_OWNED_BY_CALLER;

// The platform's objects, for hosts and cores in languages without words for them.

// All of an NSString.
ZIB_API zib_text zib_string_copy(zib_object string);
// An NSString of the text; null for no text.
ZIB_API zib_object ZIB_NULLABLE zib_string_create(zib_text text) ZIB_OWNED_BY_CALLER;

// Any object as JSON, its members by name. What JSON has no word for is written as text: bytes in
// base64, a date in ISO 8601, or as an empty text where that has no word for it; a number that is
// infinite or none is null. No text, and one error line, for more than 256 levels or 100,000
// values, and for an object that raises as it is read.
ZIB_API zib_text zib_json_copy(zib_object object);
// Null, and one error line, for what is no JSON object or array.
ZIB_API zib_object ZIB_NULLABLE zib_json_create(zib_text json) ZIB_OWNED_BY_CALLER;

ZIB_ASSUME_NONNULL_END
#if defined(__cplusplus)
}
#endif
#endif
