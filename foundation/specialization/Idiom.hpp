// Idiom: the device-family axis of a specialization slot. The cases form a small tree rooted
// at `base`: `square` (shared by iOS and macOS) and `watchOS` under it, `iOS` and `macOS`
// under `square`. A value stored for an idiom serves its descendants unless they have their own.
// Declaration order is the precedence order used by specializable properties.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "foundation/json/JSONCoding.hpp"
#include "foundation/graphics/Geometry.hpp"
#include "foundation/support/Enumeration.hpp"

namespace iconwright {

enum class Idiom : std::uint8_t { base, square, iOS, macOS, watchOS };

template <>
struct EnumTraits<Idiom> {
  static constexpr std::array allCases{Idiom::base, Idiom::square, Idiom::iOS, Idiom::macOS, Idiom::watchOS};
  [[nodiscard]] static constexpr std::string_view rawValue(Idiom idiom) {
    constexpr std::array<std::string_view, 5> texts{"base", "square", "iOS", "macOS", "watchOS"};
    return texts[caseIndex(idiom)];
  }
};

/// "Icon Shape", the name of the axis in a user interface.
inline constexpr std::string_view idiomSlotName = "Icon Shape";

// The three texts of each case: JSON, file names and command lines, people.
[[nodiscard]] constexpr std::string_view rawValue(Idiom idiom) { return EnumTraits<Idiom>::rawValue(idiom); }
/// "Base", "iOS-or-macOS", "iOS", "macOS", "watchOS".
[[nodiscard]] std::string_view fileNameComponent(Idiom idiom);
/// "Base", "iOS / macOS", "iOS", "macOS", "watchOS".
[[nodiscard]] std::string_view displayName(Idiom idiom);
/// As displayName, except "Base Icon Shape" for `base`.
[[nodiscard]] std::string_view semiQualifiedDisplayName(Idiom idiom);
/// A full stop and the raw value: ".macOS".
[[nodiscard]] std::string description(Idiom idiom);

/// The case index, used to order slots.
[[nodiscard]] constexpr int precedent(Idiom idiom) { return static_cast<int>(caseIndex(idiom)); }

/// The logical canvas, the same for every idiom: 1024 by 1024 points.
[[nodiscard]] constexpr Size logicalCanvasSize() { return {1024.0, 1024.0}; }

namespace detail {
inline constexpr std::array childrenOfBase{Idiom::square, Idiom::watchOS};
inline constexpr std::array childrenOfSquare{Idiom::iOS, Idiom::macOS};
}  // namespace detail

/// The direct children: absent (not empty) for the three leaves.
[[nodiscard]] constexpr std::optional<std::span<const Idiom>> children(Idiom idiom) {
  switch (idiom) {
    case Idiom::base: return std::span<const Idiom>(detail::childrenOfBase);
    case Idiom::square: return std::span<const Idiom>(detail::childrenOfSquare);
    default: return std::nullopt;
  }
}

namespace detail {
// The parent index of each case (-1 for none), found by entering every child of every case
// with that case as its parent.
constexpr std::array<int, 5> makeIdiomParents() {
  std::array<int, 5> parents{-1, -1, -1, -1, -1};
  for (Idiom idiom : EnumTraits<Idiom>::allCases) {
    if (auto kids = children(idiom)) {
      for (Idiom child : *kids) parents.at(caseIndex(child)) = static_cast<int>(caseIndex(idiom));
    }
  }
  return parents;
}
inline constexpr std::array<int, 5> idiomParents = makeIdiomParents();
}  // namespace detail

/// Absent for `base` only.
[[nodiscard]] constexpr std::optional<Idiom> parent(Idiom idiom) {
  const int index = detail::idiomParents.at(caseIndex(idiom));
  if (index < 0) return std::nullopt;
  return EnumTraits<Idiom>::allCases.at(static_cast<std::size_t>(index));
}

namespace detail {
constexpr std::array<Idiom, 3> makeConcreteIdioms() {
  std::array<Idiom, 3> leaves{};
  std::size_t count = 0;
  for (Idiom idiom : EnumTraits<Idiom>::allCases) {
    if (!children(idiom)) leaves.at(count++) = idiom;
  }
  return leaves;
}
}  // namespace detail

/// The cases without children, in declaration order: iOS, macOS, watchOS.
inline constexpr std::array<Idiom, 3> concreteIdioms = detail::makeConcreteIdioms();

/// The case whose fileNameComponent equals `text` exactly (case-sensitive), or absent.
[[nodiscard]] std::optional<Idiom> idiomFromFileNameComponent(std::string_view text);
/// As idiomFromFileNameComponent; throws MessageError
/// "Unknown idiom name: <text>. Should be one of “Base”, … or “watchOS”" when nothing matches.
Idiom requiredIdiomFromFileNameComponent(std::string_view text);

/// The raw value as a JSON string. Decoding an unknown raw value is a data-corrupted error.
template <>
struct JSONCoding<Idiom> {
  static Idiom decode(const Decoder& decoder);
  static JSONValue encode(Idiom idiom) { return JSONValue(rawValue(idiom)); }
};

}  // namespace iconwright
