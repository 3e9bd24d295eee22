// Reads JSON into an object of the platform's, and prints what the module writes of it.

#include <stdio.h>

#include "zib.h"

int main(void) {
  const zib_object numbers = zib_json_create(zib_text_of("[1,2,3]"));
  const zib_text json = zib_json_copy(numbers);
  printf("%s %s\n", zib_version().bytes, json.bytes);
  zib_text_free(json);
  zib_object_release(numbers);
}
