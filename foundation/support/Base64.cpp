#include "foundation/support/Base64.hpp"

namespace iconwright {

namespace {
constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

int sextet(char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (c >= '0' && c <= '9') return c - '0' + 52;
  if (c == '+') return 62;
  if (c == '/') return 63;
  return -1;
}
}  // namespace

std::string base64Encoded(const std::vector<std::uint8_t>& bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t n = std::min<std::size_t>(3, bytes.size() - i);
    std::uint32_t group = std::uint32_t{bytes[i]} << 16;
    if (n > 1) group |= std::uint32_t{bytes[i + 1]} << 8;
    if (n > 2) group |= bytes[i + 2];
    text += alphabet[(group >> 18) & 63];
    text += alphabet[(group >> 12) & 63];
    text += n > 1 ? alphabet[(group >> 6) & 63] : '=';
    text += n > 2 ? alphabet[group & 63] : '=';
  }
  return text;
}

std::optional<std::vector<std::uint8_t>> base64Decoded(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  std::vector<std::uint8_t> bytes;
  bytes.reserve(text.size() / 4 * 3);
  for (std::size_t i = 0; i < text.size(); i += 4) {
    const bool last = i + 4 == text.size();
    const int padding = last ? (text[i + 3] == '=') + (text[i + 2] == '=') : 0;
    if (padding == 1 && text[i + 2] == '=') return std::nullopt;
    std::uint32_t group = 0;
    for (int j = 0; j < 4; ++j) {
      const char c = text[i + static_cast<std::size_t>(j)];
      int value = 0;
      if (j >= 4 - padding) {
        if (c != '=') return std::nullopt;
      } else {
        value = sextet(c);
        if (value < 0) return std::nullopt;
      }
      group = (group << 6) | static_cast<std::uint32_t>(value);
    }
    bytes.push_back(static_cast<std::uint8_t>(group >> 16));
    if (padding < 2) bytes.push_back(static_cast<std::uint8_t>(group >> 8));
    if (padding < 1) bytes.push_back(static_cast<std::uint8_t>(group));
  }
  return bytes;
}

}  // namespace iconwright
