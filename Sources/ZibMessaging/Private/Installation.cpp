#include "ZibMessaging/Private/Installation.h"

#include <array>
#include <memory>

namespace zib {
namespace {

constexpr std::size_t last = functionsOfARow - 1;

struct RowOfInstallations {
  std::array<Installation, functionsOfARow> all;
  // Of `all`, those in use, and those that share the last one's function.
  std::size_t used = 0;
  Installation* latestShared = nullptr;
};

constinit std::array<RowOfInstallations, rowCount> rows;

RowOfInstallations& rowOf(Row row) { return rows[static_cast<std::size_t>(row)]; }

// Calls `use` with each, in the order in which they were made.
template <class Use>
void forEach(Row row, Use use) {
  for (const Installation& each : rowOf(row).all) {
    if (each.kind() == Installed::nothing) return;
    use(each);
  }
  for (const Installation* each = rowOf(row).all[last].next(); each != nullptr;
       each = each->next()) {
    if (each->kind() != Installed::nothing) use(*each);
  }
}

const Installation* sharedInstallationOn(Row row, Class owner) noexcept {
  for (const Installation* each = &rowOf(row).all[last]; each != nullptr; each = each->next()) {
    if (each->kind() != Installed::nothing && each->owner() == owner) return each;
  }
  return nullptr;
}

}  // namespace

const Installation& installationAt(Row row, std::size_t number) noexcept {
  return rowOf(row).all[number];
}

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
  RowOfInstallations& installations = rowOf(row);
  if (installations.used < functionsOfARow) {
    const std::size_t number = installations.used++;
    return {&installations.all[number], number};
  }
  if (installationOn(row, owner) != nullptr) return {};
  Installation* const more = std::make_unique<Installation>().release();
  Installation*& latest = installations.latestShared;
  (latest == nullptr ? installations.all[last] : *latest).setNext(more);
  latest = more;
  return {more, last};
}

}  // namespace zib
