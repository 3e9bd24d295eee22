// The library as it is built for Apple.

#include <array>
#include <cctype>
#include <cstring>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <variant>

#include "sample.h"

namespace {

// Initialisers.

std::array<char, 3> initialised{};
int initialisers = 0;

struct Initialised {
  explicit Initialised(char letter) {
    initialised[static_cast<std::size_t>(initialisers++)] = letter;
  }
};

const Initialised first('a');
const Initialised second('b');

// Thread-local variables.

thread_local int count = 41;
thread_local char text[13] = "thread-local";
thread_local long zero;

// Pointers.

const std::array<const char*, 3> words{"one", "two", "three"};
const char* const* const lastWord = &words[2];
int (*volatile const comparison)(const char*, const char*) = &strcmp;

// Exceptions.

int destroyed = 0;

struct Counted {
  Counted() = default;
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() { ++destroyed; }
};

const char* kept(const std::string& text) {
  static std::string last;
  last = text;
  return last.c_str();
}

struct Base {
  virtual ~Base() = default;
};
struct Derived : Base {};

std::mutex mutex;
long turns = 0;

}  // namespace

int sample_count() { return ++count; }
const char* sample_thread_text() { return text; }
long sample_thread_zero() { return zero++; }

const char* sample_initialised() { return initialised.data(); }

bool sample_has_good_pointers() {
  return comparison(*lastWord, "three") == 0 && comparison(words[1], "two") == 0;
}

const void* sample_constant() { return words.data(); }

const char* sample_catches_its_own(int position) {
  try {
    return kept(std::string("short").substr(static_cast<std::size_t>(position)));
  } catch (const std::out_of_range& error) {
    return kept(std::string("out of range: ") + error.what());
  } catch (...) {
    return "something else";
  }
}

const char* sample_catches(sample_callback call, void* context) {
  const Counted inFrame;
  try {
    call(context);
    return "nothing";
  } catch (const std::exception& error) {
    return kept(error.what());
  } catch (...) {
    return "something";
  }
}

int sample_passes(sample_callback call, void* context) {
  const Counted inFrame;
  call(context);
  return destroyed;
}

double sample_keeps_registers(sample_callback call, void* context, double seed) {
  const double a = seed * 2;
  const double b = seed * 3;
  const double c = seed * 5;
  const double d = seed * 7;
  const auto e = static_cast<long>(seed) * 11;
  const auto f = static_cast<long>(seed) * 13;
  const auto g = static_cast<long>(seed) * 17;
  const auto h = static_cast<long>(seed) * 19;
  try {
    call(context);
  } catch (...) {
    return a + b + c + d + static_cast<double>(e + f + g + h);
  }
  return a - b - c - d - static_cast<double>(e - f - g - h);
}

void sample_throws(const char* reason) { throw std::out_of_range(reason); }

int sample_destroyed() { return destroyed; }

const char* sample_text(const char* first, const char* second) {
  std::string joined(first);
  joined += second;
  joined.insert(0, "<");
  joined.push_back('>');
  const auto copied = std::make_unique<std::string>(joined);
  joined.erase(0, 1);
  std::string result = *copied;
  result.append(" ").append(joined);
  return kept(result);
}

bool sample_shares() {
  const auto shared = std::make_shared<std::string>("shared");
  std::weak_ptr<std::string> weak = shared;
  const auto locked = weak.lock();
  return locked != nullptr && *locked == "shared" && shared.use_count() == 2;
}

const char* sample_variant() {
  const std::variant<int, std::string> value = 1;
  try {
    return kept(std::get<std::string>(value));
  } catch (const std::bad_variant_access& error) {
    return kept(error.what());
  }
}

const char* sample_names_type(bool isDerived) {
  const std::unique_ptr<Base> object =
      isDerived ? std::make_unique<Derived>() : std::make_unique<Base>();
  return dynamic_cast<Derived*>(object.get()) != nullptr ? "derived" : "base";
}

long sample_locks(int until, sample_callback turn, void* context) {
  for (;;) {
    const std::lock_guard lock(mutex);
    if (turns >= until) return turns;
    ++turns;
    turn(context);
  }
}

void sample_prints(FILE* file, const char* word, int number, double fraction, long long large) {
  fprintf(file, "%s %d %.2f %lld %s %d %d %d %.1f\n", word, number, fraction, large, "end", 7, 8, 9,
          0.5);
  std::array<char, 16> text{};
  snprintf(text.data(), text.size(), "%lld%s", large, "!");
  fputs((text.data() + std::to_string(number) + '\n').c_str(), file);
}

bool sample_is_digit(char character) { return isdigit(static_cast<unsigned char>(character)) != 0; }
