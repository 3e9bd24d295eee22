// BOOL in the types of methods. It is a `bool` on the platform, "B", and an `unsigned char` in
// GCC's runtime and in GNUstep, "C"; no other method here has an `unsigned char`.

#include "Types.h"

#include <pthread.h>
#include <stdlib.h>
#include <string.h>

namespace {

struct Entry {
  Entry* next;
  char text[];
};

Entry* entries;
pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;

// Past a class's name in quotation marks, or a structure's name up to its fields.
char* pastName(char* at) {
  const char* const ends = *at == '"' ? "\"" : "=}";
  char* const end = strpbrk(at + 1, ends);
  return end == nullptr ? at + 1 : end + (*at == '"' ? 1 : 0);
}

void replace(char* text, char from, char to) {
  while (*text != '\0') {
    if (*text == '"' || *text == '{') {
      text = pastName(text);
      continue;
    }
    if (*text == from) *text = to;
    ++text;
  }
}

}  // namespace

// One text for all calls with the same one, as callers keep it.
const char* withBool(const char* types, char from, char to) {
  if (types == nullptr || strchr(types, from) == nullptr) return types;
  auto* const made = static_cast<Entry*>(malloc(sizeof(Entry) + strlen(types) + 1));
  strcpy(made->text, types);
  replace(made->text, from, to);
  pthread_mutex_lock(&mutex);
  Entry* found = entries;
  while (found != nullptr && strcmp(found->text, made->text) != 0) found = found->next;
  if (found != nullptr) {
    free(made);
  } else {
    made->next = entries;
    entries = found = made;
  }
  pthread_mutex_unlock(&mutex);
  return found->text;
}
