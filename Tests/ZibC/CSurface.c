// zib.h as a compiler of C11 sees it, with every warning, and a core and a delegate as a host in C
// writes them: ZibCSurfaceTest.cpp runs them.

#include "Tests/ZibC/CSurface.h"

#include <stdlib.h>
#include <string.h>

static void note(void* context, const char* what) {
  struct c_notes* const notes = context;
  const size_t used = strlen(notes->text);
  if (used + strlen(what) + 2 < sizeof notes->text) {
    strcat(strcat(notes->text, what), ";");
  }
}

static void release(void* context) { note(context, "released"); }

static bool config(void* context, zib_config* config) {
  note(context, "config");
  config->auto_swizzling_enabled = false;
  return true;
}

static zib_text copy_endpoint(void* context) {
  note(context, "endpoint");
  return zib_text_copy(zib_text_of("https://config.example/push.json"));
}

static void error(void* context, zib_text line, const zib_error* error) {
  note(context, line.bytes);
  if (error != NULL) note(context, error->description.bytes);
}

static void track(void* context, zib_text schema, zib_object data) {
  const zib_text json = zib_json_copy(data);
  note(context, schema.bytes);
  note(context, json.bytes);
  zib_text_free(json);
}

static void register_token(void* context, zib_text token) { note(context, token.bytes); }

static void save_permission(void* context, bool granted) {
  note(context, granted ? "granted" : "denied");
}

static void save_token(void* context, zib_text token) {
  note(context, "saved");
  note(context, token.bytes);
}

bool c_install_core(struct c_notes* notes) {
  const zib_core core = {
      .size = sizeof core,
      .context = notes,
      .release = release,
      .config = config,
      .copy_push_config_endpoint = copy_endpoint,
      .error = error,
      .track_self_describing_event = track,
      .register_push_token = register_token,
      .save_push_permission = save_permission,
      .save_fcm_token = save_token,
  };
  return zib_core_install(&core);
}

static void got_token(void* context, zib_text token) { note(context, token.bytes); }

static void got_notification(void* context, zib_object user_info) {
  const zib_text json = zib_json_copy(user_info);
  note(context, json.bytes);
  zib_text_free(json);
}

static void got_response(void* context, zib_object response, zib_text action,
                         zib_object user_info) {
  note(context, response == NULL ? "no response" : "response");
  note(context, action.bytes);
  got_notification(context, user_info);
}

static void failed(void* context, const zib_error* error) {
  note(context, error->domain.bytes);
  note(context, error->code == ZIB_PUSH_ERROR_NO_DATA ? "no data" : "another code");
  note(context, error->object == NULL ? "no object" : "object");
}

bool c_set_delegate(struct c_notes* notes) {
  const zib_messaging_delegate delegate = {
      .size = sizeof delegate,
      .context = notes,
      .release = release,
      .did_receive_token = got_token,
      .did_receive_notification = got_notification,
      .did_receive_notification_response = got_response,
      .did_fail_to_register = failed,
  };
  return zib_messaging_set_delegate(&delegate);
}
