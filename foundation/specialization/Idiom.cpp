#include "foundation/specialization/Idiom.hpp"

#include <vector>

#include "foundation/support/ListJoining.hpp"
#include "foundation/support/MessageError.hpp"

namespace iconwright {

std::string_view fileNameComponent(Idiom idiom) {
  constexpr std::array<std::string_view, 5> texts{"Base", "iOS-or-macOS", "iOS", "macOS", "watchOS"};
  return texts[caseIndex(idiom)];
}

std::string_view displayName(Idiom idiom) {
  constexpr std::array<std::string_view, 5> texts{"Base", "iOS / macOS", "iOS", "macOS", "watchOS"};
  return texts[caseIndex(idiom)];
}

std::string_view semiQualifiedDisplayName(Idiom idiom) {
  return idiom == Idiom::base ? "Base Icon Shape" : displayName(idiom);
}

std::string description(Idiom idiom) { return "." + std::string(rawValue(idiom)); }

std::optional<Idiom> idiomFromFileNameComponent(std::string_view text) {
  for (Idiom idiom : EnumTraits<Idiom>::allCases) {
    if (fileNameComponent(idiom) == text) return idiom;
  }
  return std::nullopt;
}

Idiom requiredIdiomFromFileNameComponent(std::string_view text) {
  if (auto idiom = idiomFromFileNameComponent(text)) return *idiom;
  std::vector<std::string> names;
  for (Idiom idiom : EnumTraits<Idiom>::allCases) names.emplace_back(fileNameComponent(idiom));
  throw MessageError("Unknown idiom name: " + std::string(text) + ". Should be one of " + quotedAlternatives(names));
}

Idiom JSONCoding<Idiom>::decode(const Decoder& decoder) {
  const std::string text = decoder.decodeString();
  if (auto idiom = enumFromRawValue<Idiom>(text)) return *idiom;
  decoder.failDataCorrupted("Cannot initialize Idiom from invalid String value " + text);
}

}  // namespace iconwright
