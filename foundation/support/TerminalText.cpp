#include "foundation/support/TerminalText.hpp"

#include <cstdint>
#include <cstdio>
#include <optional>

namespace iconwright {

namespace {

struct Decoded {
  char32_t scalar;
  std::size_t length;
};

/// The UTF-8 scalar at the start of `text`, or nothing when its first byte does not begin a
/// valid sequence (overlong forms, surrogates and values past U+10FFFF are invalid).
std::optional<Decoded> decodeScalar(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const std::uint8_t lead = byte(0);
  if (lead < 0x80) return Decoded{lead, 1};
  std::size_t length = 0;
  char32_t scalar = 0;
  char32_t minimum = 0;
  if ((lead & 0xE0) == 0xC0) {
    length = 2, scalar = lead & 0x1F, minimum = 0x80;
  } else if ((lead & 0xF0) == 0xE0) {
    length = 3, scalar = lead & 0x0F, minimum = 0x800;
  } else if ((lead & 0xF8) == 0xF0) {
    length = 4, scalar = lead & 0x07, minimum = 0x10000;
  } else {
    return std::nullopt;
  }
  if (text.size() < length) return std::nullopt;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return std::nullopt;
    scalar = (scalar << 6) | (byte(i) & 0x3F);
  }
  if (scalar < minimum || scalar > 0x10FFFF || (scalar >= 0xD800 && scalar <= 0xDFFF)) return std::nullopt;
  return Decoded{scalar, length};
}

/// Characters that move the cursor, change the terminal's state or reorder what is shown.
bool isUnsafe(char32_t scalar, bool keepingLayout) {
  if (keepingLayout && (scalar == '\n' || scalar == '\t')) return false;
  return scalar < 0x20 || (scalar >= 0x7F && scalar <= 0x9F) || scalar == 0x061C || scalar == 0x200E ||
         scalar == 0x200F || (scalar >= 0x2028 && scalar <= 0x202E) || (scalar >= 0x2066 && scalar <= 0x2069);
}

std::string hex(unsigned value, const char* format) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, format, value);
  return buffer;
}

}  // namespace

std::string escapedForTerminal(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const auto decoded = decodeScalar(text);
    if (!decoded) {
      result += hex(static_cast<std::uint8_t>(text.front()), "\\x%02X");
      text.remove_prefix(1);
      continue;
    }
    if (isUnsafe(decoded->scalar, true)) {
      result += hex(static_cast<unsigned>(decoded->scalar), "\\u{%X}");
    } else {
      result.append(text.substr(0, decoded->length));
    }
    text.remove_prefix(decoded->length);
  }
  return result;
}

std::string escapedJSONForTerminal(std::string_view json) {
  std::string result;
  result.reserve(json.size());
  while (!json.empty()) {
    const auto decoded = decodeScalar(json);
    if (!decoded) {
      result += "\\ufffd";
      json.remove_prefix(1);
      continue;
    }
    // Outside strings JSON holds only blanks, line feeds and ASCII, which pass unchanged.
    if (decoded->scalar >= 0x7F && isUnsafe(decoded->scalar, true)) {
      result += hex(static_cast<unsigned>(decoded->scalar), "\\u%04x");
    } else {
      result.append(json.substr(0, decoded->length));
    }
    json.remove_prefix(decoded->length);
  }
  return result;
}

}  // namespace iconwright
