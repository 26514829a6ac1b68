#include "foundation/specialization/Appearance.hpp"

#include <utility>
#include <vector>

#include "foundation/support/ListJoining.hpp"
#include "foundation/support/MessageError.hpp"

namespace iconwright {

namespace {
// Names accepted on input only; fileNameComponent never produces them.
constexpr std::array<std::pair<std::string_view, Appearance>, 1> appearanceAliases{{{"Light", Appearance::light}}};
}  // namespace

std::string_view fileNameComponent(Appearance appearance) {
  constexpr std::array<std::string_view, 4> texts{"Base", "Default", "Dark", "Mono"};
  return texts[caseIndex(appearance)];
}

std::string_view displayName(Appearance appearance) {
  // The same texts as the file names today; kept apart because they are for people.
  constexpr std::array<std::string_view, 4> texts{"Base", "Default", "Dark", "Mono"};
  return texts[caseIndex(appearance)];
}

std::string_view semiQualifiedDisplayName(Appearance appearance) {
  return appearance == Appearance::base ? "Base Appearance" : displayName(appearance);
}

std::string description(Appearance appearance) { return "." + std::string(rawValue(appearance)); }

std::optional<Appearance> appearanceFromFileNameComponent(std::string_view text) {
  for (Appearance appearance : EnumTraits<Appearance>::allCases) {
    if (fileNameComponent(appearance) == text) return appearance;
  }
  for (const auto& [alias, appearance] : appearanceAliases) {
    if (alias == text) return appearance;
  }
  return std::nullopt;
}

Appearance requiredAppearanceFromFileNameComponent(std::string_view text) {
  if (auto appearance = appearanceFromFileNameComponent(text)) return *appearance;
  std::vector<std::string> names;
  for (Appearance appearance : EnumTraits<Appearance>::allCases) names.emplace_back(fileNameComponent(appearance));
  throw MessageError("Unknown appearance name: " + std::string(text) + ". Should be one of " +
                     quotedAlternatives(names));
}

Appearance JSONCoding<Appearance>::decode(const Decoder& decoder) {
  const std::string text = decoder.decodeString();
  if (auto appearance = enumFromRawValue<Appearance>(text)) return *appearance;
  decoder.failDataCorrupted("Cannot initialize Appearance from invalid String value " + text);
}

}  // namespace iconwright
