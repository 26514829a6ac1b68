#include "foundation/support/VersionNumber.hpp"

#include <charconv>
#include <vector>

#include "foundation/support/MessageError.hpp"

namespace iconwright {

std::string VersionNumber::stringRepresentation() const {
  std::string text = std::to_string(major) + "." + std::to_string(minor);
  if (hotfix != 0) text += "." + std::to_string(hotfix);
  return text;
}

VersionNumber VersionNumber::fromStringRepresentation(std::string_view text) {
  const auto fail = [&]() -> VersionNumber { throw MessageError("invalid version string: " + std::string(text)); };
  std::vector<int> numbers;
  std::size_t start = 0;
  while (true) {
    const std::size_t dot = text.find('.', start);
    const std::string_view piece = text.substr(start, dot == std::string_view::npos ? std::string_view::npos : dot - start);
    if (piece.empty() || piece.find_first_not_of("0123456789") != std::string_view::npos) return fail();
    int value = 0;
    const auto [end, error] = std::from_chars(piece.data(), piece.data() + piece.size(), value);
    if (error != std::errc{} || end != piece.data() + piece.size()) return fail();
    numbers.push_back(value);
    if (dot == std::string_view::npos) break;
    start = dot + 1;
  }
  if (numbers.size() < 2 || numbers.size() > 3) return fail();
  return VersionNumber{numbers[0], numbers[1], numbers.size() == 3 ? numbers[2] : 0};
}

}  // namespace iconwright
