#include "foundation/specialization/SpecializationSlot.hpp"

#include <ostream>

namespace iconwright {

std::string_view SpecializationSlot::displayName(Component component) const {
  return component == Component::idiom ? iconwright::displayName(idiom) : iconwright::displayName(appearance);
}

std::string SpecializationSlot::displayName() const {
  std::string text;
  if (idiom != Idiom::base) text += iconwright::displayName(idiom);
  if (appearance != Appearance::base) {
    if (!text.empty()) text += ' ';
    text += iconwright::displayName(appearance);
  }
  return text.empty() ? std::string("Base") : text;
}

std::string SpecializationSlot::description() const {
  return "(" + iconwright::description(idiom) + ", " + iconwright::description(appearance) + ")";
}

std::string_view singularDisplayName(SpecializationSlot::Component component) {
  return component == SpecializationSlot::Component::idiom ? "Platform" : "Appearance";
}

std::string_view pluralDisplayName(SpecializationSlot::Component component) {
  return component == SpecializationSlot::Component::idiom ? "Platforms" : "Appearances";
}

std::ostream& operator<<(std::ostream& out, Idiom idiom) { return out << description(idiom); }
std::ostream& operator<<(std::ostream& out, Appearance appearance) { return out << description(appearance); }
std::ostream& operator<<(std::ostream& out, const SpecializationSlot& slot) { return out << slot.description(); }

}  // namespace iconwright
