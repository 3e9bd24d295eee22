// Prints what Swift sees of a module: the interface that the compiler's own library generates.
//
//   interface LIBRARY MODULE COMPILER-ARGUMENT...

#include <dlfcn.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>

typedef void* object;
typedef struct {
  unsigned long data[3];
} variant;

static void* kit;

static void* find(const char* name) {
  void* const found = dlsym(kit, name);
  if (found == NULL) {
    fprintf(stderr, "interface: %s\n", dlerror());
    exit(1);
  }
  return found;
}

#define FUNCTION(result, name, ...) \
  result (*const name)(__VA_ARGS__) = (result(*)(__VA_ARGS__))find(#name)

static char* requestFor(char** arguments, int count) {
  char* text = NULL;
  size_t size = 0;
  FILE* const out = open_memstream(&text, &size);
  fprintf(out,
          "{key.request: source.request.editor.open.interface, key.name: \"interface\", "
          "key.synthesizedextensions: 0, key.modulename: \"%s\", key.compilerargs: [",
          arguments[0]);
  for (int index = 1; index < count; ++index) {
    fprintf(out, "%s\"%s\"", index > 1 ? ", " : "", arguments[index]);
  }
  fprintf(out, "]}");
  fclose(out);
  return text;
}

static int fail(const char* problem) {
  fprintf(stderr, "interface: %s\n", problem);
  return 1;
}

int main(int count, char** arguments) {
  if (count < 3) return fail("usage: interface LIBRARY MODULE COMPILER-ARGUMENT...");
  kit = dlopen(arguments[1], RTLD_NOW);
  if (kit == NULL) return fail(dlerror());
  FUNCTION(void, sourcekitd_initialize, void);
  FUNCTION(object, sourcekitd_request_create_from_yaml, const char*, char**);
  FUNCTION(object, sourcekitd_send_request_sync, object);
  FUNCTION(bool, sourcekitd_response_is_error, object);
  FUNCTION(char*, sourcekitd_response_description_copy, object);
  FUNCTION(variant, sourcekitd_response_get_value, object);
  FUNCTION(object, sourcekitd_uid_get_from_cstr, const char*);
  FUNCTION(const char*, sourcekitd_variant_dictionary_get_string, variant, object);

  sourcekitd_initialize();
  char* error = NULL;
  const object request =
      sourcekitd_request_create_from_yaml(requestFor(arguments + 2, count - 2), &error);
  if (request == NULL) return fail(error);
  const object response = sourcekitd_send_request_sync(request);
  if (sourcekitd_response_is_error(response)) {
    return fail(sourcekitd_response_description_copy(response));
  }
  puts(sourcekitd_variant_dictionary_get_string(sourcekitd_response_get_value(response),
                                                sourcekitd_uid_get_from_cstr("key.sourcetext")));
  return 0;
}
