// Which texts are URLs, by RFC 3986 and nothing beyond it, and where their parts lie.
//
// Not a URL type: that is NSURL.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace sim {

struct URLText {
  // Without its question mark; none where the text has no question mark before a number sign.
  std::optional<std::string_view> query;
  // Where a path would stand, if there is an authority with no path but a query or a fragment.
  std::optional<std::size_t> missingPath;
};

// None for a text that is no URI reference. An empty one is none here, although it is one by the
// grammar. The result refers to `text`.
std::optional<URLText> parseURLText(std::string_view text);

// The same with square brackets anywhere, as the system's parser was before version 17.
std::optional<URLText> parseLegacyURLText(std::string_view text);

// `text` with all that a URL cannot hold where it stands percent-encoded.
std::string withInvalidCharactersEncoded(std::string_view text);

// The bytes that `text` stands for; a percent sign that encodes nothing stays.
std::string percentDecoded(std::string_view text);

}  // namespace sim
