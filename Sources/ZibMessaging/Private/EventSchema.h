// The schema that notification events are sent under, and whose it is.

#pragma once

#include <string_view>

namespace zib {

// Lives as long as the process.
std::string_view notificationEventSchemaURI() noexcept;

enum class VendorOutcome { set, isNoVendor, isSetAlready };

// In place of the build's vendor. Once in a process, since whoever has read the URI may hold it.
VendorOutcome setEventVendor(std::string_view vendor);

}  // namespace zib
