#include "foundation/support/ListJoining.hpp"

namespace iconwright {

std::string quoted(std::string_view text) {
  std::string result = "\u201C";
  result += text;
  result += "\u201D";
  return result;
}

std::string quotedAlternatives(const std::vector<std::string>& items) {
  std::string result;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i > 0) result += (items.size() >= 2 && i == items.size() - 1) ? " or " : ", ";
    result += quoted(items[i]);
  }
  return result;
}

}  // namespace iconwright
