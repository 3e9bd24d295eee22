#include "ZibMessaging/Private/TokenText.h"

#include "ZibPlatform/Foundation/Strings.h"

namespace zib {

std::string_view shownOf(std::string_view token) noexcept {
  constexpr std::size_t shown = 20;
  return firstCharacters(token, shown);
}

}  // namespace zib
