#include "foundation/platforms/Rendition.hpp"

#include <ostream>
#include <string>
#include <vector>

#include "foundation/support/ListJoining.hpp"
#include "foundation/support/MessageError.hpp"

namespace iconwright {

namespace {

template <class Text>
[[noreturn]] void failUnknownRendition(std::string_view name, Text text) {
  std::vector<std::string> names;
  for (Rendition rendition : EnumTraits<Rendition>::allCases) names.emplace_back(text(rendition));
  throw MessageError("Unknown rendition name: " + quoted(name) + ". Should be one of " + quotedAlternatives(names));
}

}  // namespace

std::string_view fileNameComponent(Rendition rendition) {
  constexpr std::array<std::string_view, 6> texts{"Default",     "Dark",       "TintedLight",
                                                  "TintedDark", "ClearLight", "ClearDark"};
  return texts[caseIndex(rendition)];
}

std::string_view displayName(Rendition rendition) {
  constexpr std::array<std::string_view, 6> texts{"Default",      "Dark",        "Tinted Light",
                                                  "Tinted Dark", "Clear Light", "Clear Dark"};
  return texts[caseIndex(rendition)];
}

std::optional<Rendition> renditionFromFileNameComponent(std::string_view text) {
  for (Rendition rendition : EnumTraits<Rendition>::allCases) {
    if (fileNameComponent(rendition) == text) return rendition;
  }
  return std::nullopt;
}

Rendition requiredRenditionFromFileNameComponent(std::string_view text) {
  if (auto rendition = renditionFromFileNameComponent(text)) return *rendition;
  failUnknownRendition(text, [](Rendition r) { return fileNameComponent(r); });
}

std::span<const Rendition> renditions(Appearance appearance) {
  static constexpr std::array light{Rendition::lightColor};
  static constexpr std::array dark{Rendition::darkColor};
  static constexpr std::array tinted{Rendition::lightTint, Rendition::darkTint, Rendition::lightClear,
                                     Rendition::darkClear};
  switch (appearance) {
    case Appearance::base: return {};
    case Appearance::light: return light;
    case Appearance::dark: return dark;
    case Appearance::tinted: return tinted;
  }
  return {};
}

Rendition JSONCoding<Rendition>::decode(const Decoder& decoder) {
  const std::string text = decoder.decodeString();
  if (auto rendition = enumFromRawValue<Rendition>(text)) return *rendition;
  failUnknownRendition(text, [](Rendition r) { return rawValue(r); });
}

std::ostream& operator<<(std::ostream& out, Rendition rendition) { return out << rawValue(rendition); }

}  // namespace iconwright
