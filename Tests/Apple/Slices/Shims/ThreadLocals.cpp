// Thread-local variables. There a variable is a descriptor whose function gives the address for the
// calling thread; the variables of the image are one thread-local object here.

extern "C" {

struct ThreadLocalDescriptor {
  void* (*address)(ThreadLocalDescriptor*);
  unsigned long key, offset;
};

// Nothing, in an image that has none.
[[gnu::weak]] extern __thread char zib_image_thread_locals[];

// For _tlv_bootstrap in Calls_*.S, which has to save what callers believe unchanged.
void* zib_thread_local_address(ThreadLocalDescriptor* variable) {
  return zib_image_thread_locals + variable->offset;
}
}
