// std::mutex of the image: Apple's is 64 bytes that begin with a signature, Linux's is 40 bytes of
// zeros and has room in what follows the signature.

#include <pthread.h>
#include <stdlib.h>

namespace {

struct AppleMutex {
  static constexpr long expected = 0x32AAABA7;

  long signature;
  alignas(8) char opaque[56];
};

static_assert(sizeof(AppleMutex) == 64 && sizeof(pthread_mutex_t) <= sizeof(AppleMutex::opaque));

pthread_mutex_t* inside(AppleMutex* mutex) {
  if (mutex->signature != AppleMutex::expected) abort();
  return reinterpret_cast<pthread_mutex_t*>(mutex->opaque);
}

}  // namespace

extern "C" {

void lock(AppleMutex* mutex) __asm__("_ZNSt3__15mutex4lockEv");
void lock(AppleMutex* mutex) {
  if (pthread_mutex_lock(inside(mutex)) != 0) abort();
}

bool tryLock(AppleMutex* mutex) __asm__("_ZNSt3__15mutex8try_lockEv");
bool tryLock(AppleMutex* mutex) { return pthread_mutex_trylock(inside(mutex)) == 0; }

void unlock(AppleMutex* mutex) __asm__("_ZNSt3__15mutex6unlockEv");
void unlock(AppleMutex* mutex) {
  if (pthread_mutex_unlock(inside(mutex)) != 0) abort();
}

void destroy(AppleMutex* mutex) __asm__("_ZNSt3__15mutexD1Ev");
void destroy(AppleMutex* mutex) { pthread_mutex_destroy(inside(mutex)); }
}
