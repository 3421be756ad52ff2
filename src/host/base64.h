// Base64 (RFC 4648, with padding), in streams: documents are large.
#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <span>
#include <string_view>
#include <vector>

namespace tolvane::host {

void writeBase64(std::ostream& out, std::span<const std::uint8_t> bytes);

/// Nothing for a text that is not base64: wrong characters, wrong length, bits that no byte has.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> readBase64(std::string_view text);

}  // namespace tolvane::host
