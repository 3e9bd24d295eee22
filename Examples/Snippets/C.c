#include <stdio.h>

#include "zib.h"

static void log_line(void* context, zib_text line) {
  (void)context;
  puts(line.bytes);
}

static void track(void* context, zib_text schema, zib_object data) {
  const zib_text json = zib_json_copy(data);
  (void)context;
  printf("%s %s\n", schema.bytes, json.bytes);
  zib_text_free(json);
}

static void tapped(void* context, zib_object response, zib_text action, zib_object user_info) {
  (void)context, (void)response, (void)user_info;
  printf("tapped: %s\n", action.bytes);
}

void print_report_in_c(void);
void print_report_in_c(void) {
  zib_integration_report* const report = zib_integration_report_create();
  puts(zib_integration_report_text(report).bytes);
  zib_integration_report_free(report);
}

void start_in_c(zib_object application);
void start_in_c(zib_object application) {
  const zib_core core = {
      .size = sizeof core,
      .log = log_line,
      .track_self_describing_event = track,
  };
  const zib_messaging_delegate delegate = {
      .size = sizeof delegate,
      .did_receive_notification_response = tapped,
  };
  zib_core_install(&core);
  zib_messaging_set_delegate(&delegate);
  zib_messaging_configure(application);
  zib_messaging_register_for_push(application);
}
