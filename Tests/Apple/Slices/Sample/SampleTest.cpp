// Calls the library as it was built for Apple, and converted, from a host of Linux's own.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "sample.h"

namespace {

void throwsStandard(void* context) { throw std::runtime_error(static_cast<const char*>(context)); }
void throwsNumber(void*) { throw 42; }
void returns(void*) {}

char reason[] = "of the host";

TEST(ThreadLocal, BeginsWithItsFirstValueInEachThread) {
  EXPECT_EQ(sample_count(), 42);
  EXPECT_EQ(sample_count(), 43);
  EXPECT_STREQ(sample_thread_text(), "thread-local");
  EXPECT_EQ(sample_thread_zero(), 0);
  EXPECT_EQ(sample_thread_zero(), 1);
  std::thread([] {
    EXPECT_EQ(sample_count(), 42);
    EXPECT_EQ(sample_thread_zero(), 0);
  }).join();
}

// Whether the page of an address may be written to, as the kernel prints it.
bool isWritable(const void* address) {
  const auto wanted = reinterpret_cast<std::uintptr_t>(address);
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    char dash = 0;
    std::string permissions;
    std::istringstream(line) >> std::hex >> begin >> dash >> end >> permissions;
    if (begin <= wanted && wanted < end) return permissions.find('w') != std::string::npos;
  }
  throw std::logic_error("no page has this address");
}

TEST(Loading, LeavesTextUnwritableAndConstantsToo) {
  EXPECT_FALSE(isWritable(reinterpret_cast<const void*>(&sample_count)));
  EXPECT_FALSE(isWritable(sample_constant()));
  EXPECT_TRUE(isWritable(sample_thread_text()));
}

TEST(Loading, RunsInitialisersInOrder) { EXPECT_STREQ(sample_initialised(), "ab"); }

TEST(Loading, FillsPointersIn) { EXPECT_TRUE(sample_has_good_pointers()); }

TEST(Exceptions, AreCaughtWhereTheyAreThrown) {
  EXPECT_STREQ(sample_catches_its_own(1), "hort");
  EXPECT_EQ(std::string(sample_catches_its_own(6)).substr(0, 14), "out of range: ");
}

TEST(Exceptions, OfTheHostAreKnown) {
  EXPECT_STREQ(sample_catches(throwsStandard, reason), reason);
  EXPECT_STREQ(sample_catches(throwsNumber, nullptr), "something");
  EXPECT_STREQ(sample_catches(returns, nullptr), "nothing");
}

TEST(Exceptions, PassAndDestroyWhatIsInTheirWay) {
  const int before = sample_destroyed();
  EXPECT_THROW(sample_passes(throwsStandard, reason), std::runtime_error);
  EXPECT_THROW(sample_passes(throwsNumber, nullptr), int);
  EXPECT_EQ(sample_destroyed(), before + 2);
}

TEST(Exceptions, LeaveRegistersAsTheyWere) {
  EXPECT_EQ(sample_keeps_registers(throwsNumber, nullptr, 3), 231);
}

TEST(Exceptions, OfTheLibraryAreKnownToTheHost) {
  try {
    sample_throws("of the library");
    FAIL();
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "of the library");
  }
}

TEST(CxxLibrary, HasStringsInTheLayoutOfTheLibrary) {
  EXPECT_STREQ(sample_text("a", "b"), "<ab> ab>");
  const std::string longer(40, 'x');
  EXPECT_EQ(sample_text(longer.c_str(), "y"), "<" + longer + "y> " + longer + "y>");
}

TEST(CxxLibrary, SharesAndTellsTypes) {
  EXPECT_TRUE(sample_shares());
  EXPECT_STREQ(sample_variant(), "bad_variant_access");
  EXPECT_STREQ(sample_names_type(true), "derived");
  EXPECT_STREQ(sample_names_type(false), "base");
}

TEST(CxxLibrary, LocksForOneThreadAtATime) {
  static int inside = 0;
  static bool isShared = false;
  const auto turn = [](void*) {
    isShared = isShared || ++inside != 1;
    std::this_thread::yield();
    --inside;
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&] { EXPECT_EQ(sample_locks(1000, turn, nullptr), 1000); });
  for (std::thread& thread : threads) thread.join();
  EXPECT_FALSE(isShared);
}

TEST(CLibrary, PrintsVariableArguments) {
  char* printed = nullptr;
  std::size_t size = 0;
  FILE* const file = open_memstream(&printed, &size);
  sample_prints(file, "word", -1, 0.25, 1LL << 40);
  std::fclose(file);
  EXPECT_STREQ(printed, "word -1 0.25 1099511627776 end 7 8 9 0.5\n1099511627776!-1\n");
  std::free(printed);
}

TEST(CLibrary, KnowsCharacters) {
  EXPECT_TRUE(sample_is_digit('7'));
  EXPECT_FALSE(sample_is_digit('a'));
}

}  // namespace
