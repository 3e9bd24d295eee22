#include "ZibMessaging/Private/Installation.h"

#include <array>
#include <memory>

namespace zib {
namespace {

constexpr std::size_t last = functionsOfARow - 1;

// Of a row's installations, how many are in use, and the latest that shares the last one's
// function.
struct RowInUse {
  std::size_t used = 0;
  Installation* latestShared = nullptr;
};

constinit std::array<RowInUse, rowCount> rows;

auto& installationsOf(Row row) { return installations[static_cast<std::size_t>(row)]; }

// Calls `use` with each, in the order in which they were made.
template <class Use>
void forEach(Row row, Use use) {
  for (const Installation& each : installationsOf(row)) {
    if (each.kind() == Installed::nothing) return;
    use(each);
  }
  for (const Installation* each = installationsOf(row)[last].next(); each != nullptr;
       each = each->next()) {
    if (each->kind() != Installed::nothing) use(*each);
  }
}

const Installation* sharedInstallationOn(Row row, Class owner) noexcept {
  for (const Installation* each = &installationsOf(row)[last]; each != nullptr;
       each = each->next()) {
    if (each->kind() != Installed::nothing && each->owner() == owner) return each;
  }
  return nullptr;
}

}  // namespace

constinit std::array<std::array<Installation, functionsOfARow>, rowCount> installations;

const Installation* sharedInstallation(Row row, Class from) noexcept {
  for (Class cls = from; cls; cls = cls.superclass()) {
    if (const Installation* const found = sharedInstallationOn(row, cls)) return found;
  }
  return nullptr;
}

const Installation* installationOn(Row row, Class owner) noexcept {
  const Installation* found = nullptr;
  forEach(row, [&](const Installation& each) {
    if (each.owner() == owner) found = &each;
  });
  return found;
}

objc::IMP latestOriginal(Row row) noexcept {
  objc::IMP latest = nullptr;
  forEach(row, [&](const Installation& each) {
    if (each.kind() == Installed::swapped) latest = each.original();
  });
  return latest;
}

FreeInstallation nextInstallation(Row row, Class owner) {
  auto& [used, latestShared] = rows[static_cast<std::size_t>(row)];
  if (used < functionsOfARow) {
    const std::size_t number = used++;
    return {&installationsOf(row)[number], number};
  }
  if (installationOn(row, owner) != nullptr) return {};
  Installation* const more = std::make_unique<Installation>().release();
  (latestShared == nullptr ? installationsOf(row)[last] : *latestShared).setNext(more);
  latestShared = more;
  return {more, last};
}

}  // namespace zib
