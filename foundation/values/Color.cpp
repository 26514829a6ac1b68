#include "foundation/values/Color.hpp"

#include <cctype>
#include <charconv>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <locale.h>
#include <vector>

#include "foundation/specialization/Appearance.hpp"
#include "foundation/support/Assertions.hpp"
#include "foundation/support/ListJoining.hpp"
#include "foundation/support/MessageError.hpp"

namespace iconwright {

namespace {

constexpr std::string_view assertionSource = "IconComposition.Color";

PlatformColorSpace spaceOfKind(Color::Kind kind) {
  switch (kind) {
    case Color::Kind::extendedSRGB: return PlatformColorSpace::extendedSRGB;
    case Color::Kind::sRGB: return PlatformColorSpace::sRGB;
    case Color::Kind::gray: return PlatformColorSpace::genericGrayGamma2_2;
    case Color::Kind::displayP3: return PlatformColorSpace::displayP3;
    case Color::Kind::extendedGray: return PlatformColorSpace::extendedGray;
  }
  ICONWRIGHT_UNREACHABLE(assertionSource);
}

std::string_view spaceWord(Color::Kind kind) {
  switch (kind) {
    case Color::Kind::extendedSRGB: return "extended-srgb";
    case Color::Kind::sRGB: return "srgb";
    case Color::Kind::gray: return "gray";
    case Color::Kind::displayP3: return "display-p3";
    case Color::Kind::extendedGray: return "extended-gray";
  }
  ICONWRIGHT_UNREACHABLE(assertionSource);
}

/// The whole text as a double in the C locale: no blanks around it, nothing after it.
/// Takes what strtod takes: decimal and hexadecimal forms, "inf", "infinity" and "nan".
std::optional<double> strictDouble(const std::string& text) {
  // The C locale's blanks, whatever locale the process has chosen.
  if (text.empty() || std::string_view(" \t\n\v\f\r").find(text.front()) != std::string_view::npos) return std::nullopt;
  static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", locale_t{});
  char* end = nullptr;
  const double value = strtod_l(text.c_str(), &end, cLocale);
  if (end != text.c_str() + text.size()) return std::nullopt;
  return value;
}

/// The pieces between commas, empty ones dropped, each a number; absent when a piece
/// does not parse or the count is not `count`.
std::optional<std::vector<double>> parseComponents(std::string_view remainder, std::size_t count) {
  std::vector<double> numbers;
  std::size_t start = 0;
  while (start <= remainder.size()) {
    std::size_t comma = remainder.find(',', start);
    if (comma == std::string_view::npos) comma = remainder.size();
    const std::string piece(remainder.substr(start, comma - start));
    if (!piece.empty()) {
      const auto number = strictDouble(piece);
      if (!number) return std::nullopt;
      numbers.push_back(*number);
    }
    start = comma + 1;
  }
  if (numbers.size() != count) return std::nullopt;
  return numbers;
}

}  // namespace

std::optional<Color> Color::fromPlatformColor(const PlatformColor& color) {
  const auto& c = color.components;
  const auto fits = [&](PlatformColorSpace space) { return color.space == space && c.size() == numberOfComponents(space); };
  if (fits(PlatformColorSpace::displayP3)) return displayP3(c[0], c[1], c[2], c[3]);
  if (fits(PlatformColorSpace::extendedSRGB)) return extendedSRGB(c[0], c[1], c[2], c[3]);
  if (fits(PlatformColorSpace::sRGB)) return sRGB(c[0], c[1], c[2], c[3]);
  if (fits(PlatformColorSpace::extendedGray)) return extendedGray(c[0], c[1]);
  if (fits(PlatformColorSpace::genericGrayGamma2_2)) return gray(c[0], c[1]);
  if (colorSpaceModel(color.space) == ColorSpaceModel::monochrome) {
    const auto matched = matchedToColorSpace(color, PlatformColorSpace::extendedGray);
    if (!matched || matched->components.size() != 2) return std::nullopt;
    return extendedGray(matched->components[0], matched->components[1]);
  }
  const auto matched = matchedToColorSpace(color, PlatformColorSpace::displayP3);
  if (!matched || matched->components.size() != 4) return std::nullopt;
  const auto& m = matched->components;
  return displayP3(m[0], m[1], m[2], m[3]);
}

std::optional<RGBAComponents> Color::storedRGBA() const {
  switch (kind()) {
    case Kind::extendedSRGB: return std::get<0>(storage_);
    case Kind::sRGB: return std::get<1>(storage_);
    case Kind::displayP3: return std::get<3>(storage_);
    case Kind::gray:
    case Kind::extendedGray: return std::nullopt;
  }
  return std::nullopt;
}

std::optional<GrayComponents> Color::storedGray() const {
  switch (kind()) {
    case Kind::gray: return std::get<2>(storage_);
    case Kind::extendedGray: return std::get<4>(storage_);
    case Kind::extendedSRGB:
    case Kind::sRGB:
    case Kind::displayP3: return std::nullopt;
  }
  return std::nullopt;
}

PlatformColorSpace Color::colorSpace() const { return spaceOfKind(kind()); }

PlatformColor Color::platformColor() const {
  if (const auto rgba = storedRGBA()) return PlatformColor{colorSpace(), {rgba->red, rgba->green, rgba->blue, rgba->alpha}};
  const GrayComponents gray = *storedGray();
  return PlatformColor{colorSpace(), {gray.white, gray.alpha}};
}

RGBAComponents Color::rgbaComponents(PlatformColorSpace space) const {
  ICONWRIGHT_PRECONDITION(colorSpaceModel(space) == ColorSpaceModel::rgb, assertionSource, unreachableCodeMessage);
  if (const auto rgba = storedRGBA(); rgba && colorSpace() == space) return *rgba;
  const auto matched = matchedToColorSpace(platformColor(), space);
  if (!matched || matched->components.size() != 4) ICONWRIGHT_UNREACHABLE(assertionSource);
  const auto& m = matched->components;
  return RGBAComponents{m[0], m[1], m[2], m[3]};
}

GrayComponents Color::grayComponents(PlatformColorSpace space) const {
  ICONWRIGHT_PRECONDITION(colorSpaceModel(space) == ColorSpaceModel::monochrome, assertionSource,
                          unreachableCodeMessage);
  if (const auto gray = storedGray(); gray && colorSpace() == space) return *gray;
  const auto matched = matchedToColorSpace(platformColor(), space);
  if (!matched || matched->components.size() != 2) ICONWRIGHT_UNREACHABLE(assertionSource);
  return GrayComponents{matched->components[0], matched->components[1]};
}

RGBAComponents Color::displayP3Components() const {
  const auto matched = matchedToColorSpace(platformColor(), PlatformColorSpace::displayP3);
  if (!matched || matched->components.size() != 4) ICONWRIGHT_UNREACHABLE(assertionSource);
  const auto& m = matched->components;
  return RGBAComponents{m[0], m[1], m[2], m[3]};
}

std::string Color::stringRepresentation() const {
  const PlatformColor numbers = platformColor();
  std::string text(spaceWord(kind()));
  text += ':';
  for (std::size_t i = 0; i < numbers.components.size(); ++i) {
    if (i > 0) text += ',';
    // Five digits after the point, as "%0.5f" in the C locale, whatever locale the process uses.
    char buffer[512];
    const auto written = std::to_chars(buffer, buffer + sizeof buffer, numbers.components[i], std::chars_format::fixed, 5);
    text.append(buffer, written.ptr);
  }
  return text;
}

Color Color::fromStringRepresentation(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) throw MessageError("Invalid color encoding, missing ':' delimiter");
  const std::string_view word = text.substr(0, colon);
  const std::string_view remainder = text.substr(colon + 1);

  if (word == "named") {
    const SystemColorName name = systemColorNameFromStringRepresentation(remainder);
    const auto color = fromPlatformColor(resolve(name, Appearance::light));
    if (!color) throw MessageError("Invalid color: " + quoted(remainder));
    return *color;
  }
  const auto fourComponents = [&] {
    auto numbers = parseComponents(remainder, 4);
    if (!numbers) {
      throw MessageError("Expected four comma separated color components from \"" + std::string(remainder) + "\"");
    }
    return RGBAComponents::fromComponents({(*numbers)[0], (*numbers)[1], (*numbers)[2], (*numbers)[3]});
  };
  const auto twoComponents = [&] {
    auto numbers = parseComponents(remainder, 2);
    if (!numbers) {
      throw MessageError("Expected two comma separated color components from \"" + std::string(remainder) + "\"");
    }
    return GrayComponents::fromComponents({(*numbers)[0], (*numbers)[1]});
  };
  if (word == "extended-srgb") return extendedSRGB(fourComponents());
  if (word == "srgb") return sRGB(fourComponents());
  if (word == "display-p3") return displayP3(fourComponents());
  if (word == "gray") return gray(twoComponents());
  if (word == "extended-gray") return extendedGray(twoComponents());
  throw MessageError("Invalid color space: " + std::string(word));
}

JSONValue Color::encodeJSON() const { return JSONValue(stringRepresentation()); }

Color Color::decodeJSON(const Decoder& decoder) { return fromStringRepresentation(decoder.decodeString()); }

}  // namespace iconwright

std::size_t std::hash<iconwright::Color>::operator()(const iconwright::Color& color) const noexcept {
  std::size_t seed = std::hash<int>{}(static_cast<int>(color.kind()));
  if (const auto rgba = color.storedRGBA()) {
    iconwright::hashCombine(seed, std::hash<iconwright::RGBAComponents>{}(*rgba));
  } else {
    iconwright::hashCombine(seed, std::hash<iconwright::GrayComponents>{}(*color.storedGray()));
  }
  return seed;
}
