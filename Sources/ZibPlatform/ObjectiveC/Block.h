// Blocks: made from C++ callables, called, and kept.
//
// A block is not an object here. On GNUstep it must never get a message, so it cannot go into an
// Object, a collection, or anything that retains.
//
// The layout is the block ABI that compilers publish.

#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/TypeEncoding.h"

// There a block's isa, its functions and its descriptor's are signed with their addresses, and
// those that are made here would not be.
#if defined(__arm64e__)
#error "ZibMessaging cannot be built for arm64e, where blocks are signed: build it for arm64"
#endif

namespace zib {

struct BlockDescriptor {
  unsigned long reserved;
  unsigned long size;
  void (*copy)(void* to, const void* from);
  void (*dispose)(const void* block);
  const char* signature;
};

struct BlockLayout {
  void* isa;
  int flags;
  int reserved;
  void (*invoke)();
  const BlockDescriptor* descriptor;
};

namespace encoding {

template <>
struct Of<BlockLayout*> : Text<"@?"> {};

// A block's signature: its first argument is the block itself.
template <class Signature>
struct Block;
template <class Result, class... Arguments>
struct Block<Result(Arguments...)> : Method<Result(BlockLayout*, Arguments...)> {};

}  // namespace encoding

inline constexpr int blockHasCopyDispose = 1 << 25;
inline constexpr int blockHasSignature = 1 << 30;

template <class Signature>
class Block;

// A reference to a block, or none. Copies share it. The callable, and what it holds, is destroyed
// with the last reference, on whichever thread lets it go.
template <class Result, class... Arguments>
class Block<Result(Arguments...)> {
 public:
  // Takes a block that a caller lent for the length of a call, which may still be on its stack.
  static Block copied(BlockLayout* block) {
    return Block(block == nullptr ? nullptr : static_cast<BlockLayout*>(objc::copyBlock(block)));
  }

  // The callable must not throw: what calls a block does not expect it.
  template <class Callable>
  static Block from(Callable callable) {
    Literal<Callable> literal{{objc::stackBlockClass, blockHasCopyDispose | blockHasSignature, 0,
                               objc::functionCast<void (*)()>(&Literal<Callable>::invoke),
                               &Literal<Callable>::descriptor},
                              std::move(callable)};
    return copied(&literal.layout);
  }

  Block(const Block& other) : Block(copied(other.raw_)) {}
  Block(Block&& other) noexcept : raw_(std::exchange(other.raw_, nullptr)) {}
  Block& operator=(Block other) noexcept {
    std::swap(raw_, other.raw_);
    return *this;
  }
  ~Block() {
    if (raw_ != nullptr) objc::releaseBlock(raw_);
  }

  explicit operator bool() const noexcept { return raw_ != nullptr; }
  [[nodiscard]] BlockLayout* raw() const noexcept { return raw_; }
  Result operator()(Arguments... arguments) const { return call(raw_, arguments...); }

  // Calls a block without keeping it. A missing block is not called and gives Result().
  static Result call(BlockLayout* block, Arguments... arguments) {
    if (block == nullptr) return Result();
    using Invoke = Result (*)(BlockLayout*, Arguments...);
    return objc::functionCast<Invoke>(block->invoke)(block, arguments...);
  }

 private:
  explicit Block(BlockLayout* raw) noexcept : raw_(raw) {}

  template <class Callable>
  struct Literal {
    BlockLayout layout;
    Callable callable;

    static_assert(alignof(Callable) <= alignof(std::max_align_t));

    static Result invoke(Literal* self, Arguments... arguments) {
      return self->callable(arguments...);
    }
    // The only block that is ever copied bit by bit is the literal in from(), which is not used
    // afterwards: so its callable is moved, and callables need not be copyable.
    static void copy(void* to, const void* from) {
      auto* source = static_cast<Literal*>(const_cast<void*>(from));
      ::new (&static_cast<Literal*>(to)->callable) Callable(std::move(source->callable));
    }
    static void dispose(const void* block) {
      std::destroy_at(&static_cast<Literal*>(const_cast<void*>(block))->callable);
    }
    static constexpr auto signature = encoding::Block<Result(Arguments...)>::value;
    static constexpr BlockDescriptor descriptor{0, sizeof(BlockLayout) + sizeof(Callable), &copy,
                                                &dispose, signature.data()};
  };

  BlockLayout* raw_;
};

}  // namespace zib
