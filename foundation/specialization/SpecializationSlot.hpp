// SpecializationSlot: the key under which a property holds an override, one idiom and one
// appearance. Slots are totally ordered by Precedent (idiom index first, then appearance
// index), the order in which a specializable property keeps its overrides, so that ancestors
// on each axis come before their descendants.
#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/specialization/Appearance.hpp"
#include "foundation/specialization/Idiom.hpp"
#include "foundation/support/Hashing.hpp"

namespace iconwright {

struct SpecializationSlot {
  /// The two axes, for code that works on one of them by name.
  enum class Component : std::uint8_t { idiom, appearance };

  /// Lexicographic order of (idiom index, appearance index).
  struct Precedent {
    std::pair<int, int> components;
    friend constexpr auto operator<=>(const Precedent&, const Precedent&) = default;
  };

  Idiom idiom = Idiom::base;
  Appearance appearance = Appearance::base;

  /// (base, base), the root of both axes; baseSlot is the same slot under a second name.
  static const SpecializationSlot base;
  static const SpecializationSlot baseSlot;
  /// (base, dark) and (base, tinted).
  static const SpecializationSlot dark;
  static const SpecializationSlot tinted;

  [[nodiscard]] constexpr bool isBaseSlot() const { return idiom == Idiom::base && appearance == Appearance::base; }

  [[nodiscard]] constexpr Precedent precedent() const {
    return {{iconwright::precedent(idiom), iconwright::precedent(appearance)}};
  }
  [[nodiscard]] constexpr std::pair<int, int> displayOrder() const { return precedent().components; }
  /// Strict less-than on display order; equal slots compare false.
  [[nodiscard]] static constexpr bool compareDisplayOrder(const SpecializationSlot& lhs, const SpecializationSlot& rhs) {
    return lhs.displayOrder() < rhs.displayOrder();
  }

  /// A copy with one axis replaced.
  [[nodiscard]] constexpr SpecializationSlot setting(Idiom value) const { return {value, appearance}; }
  [[nodiscard]] constexpr SpecializationSlot setting(Appearance value) const { return {idiom, value}; }
  /// A copy whose field on `component` comes from `other`.
  [[nodiscard]] constexpr SpecializationSlot taking(Component component, const SpecializationSlot& other) const {
    return component == Component::idiom ? setting(other.idiom) : setting(other.appearance);
  }

  /// The display name of this slot's value on one axis.
  [[nodiscard]] std::string_view displayName(Component component) const;
  /// The non-base axis names joined by a space, or "Base": "iOS Dark", "iOS / macOS", "Mono".
  [[nodiscard]] std::string displayName() const;
  /// "(.iOS, .dark)".
  [[nodiscard]] std::string description() const;

  friend constexpr bool operator==(const SpecializationSlot&, const SpecializationSlot&) = default;
};

inline constexpr SpecializationSlot SpecializationSlot::base{Idiom::base, Appearance::base};
inline constexpr SpecializationSlot SpecializationSlot::baseSlot{Idiom::base, Appearance::base};
inline constexpr SpecializationSlot SpecializationSlot::dark{Idiom::base, Appearance::dark};
inline constexpr SpecializationSlot SpecializationSlot::tinted{Idiom::base, Appearance::tinted};

/// 0 for idiom, 1 for appearance.
[[nodiscard]] constexpr int displayOrder(SpecializationSlot::Component component) {
  return component == SpecializationSlot::Component::idiom ? 0 : 1;
}
/// "Platform", "Appearance".
[[nodiscard]] std::string_view singularDisplayName(SpecializationSlot::Component component);
/// "Platforms", "Appearances".
[[nodiscard]] std::string_view pluralDisplayName(SpecializationSlot::Component component);

// Readable forms for diagnostics: the description texts.
std::ostream& operator<<(std::ostream& out, Idiom idiom);
std::ostream& operator<<(std::ostream& out, Appearance appearance);
std::ostream& operator<<(std::ostream& out, const SpecializationSlot& slot);

}  // namespace iconwright

template <>
struct std::hash<iconwright::SpecializationSlot> {
  std::size_t operator()(const iconwright::SpecializationSlot& slot) const noexcept {
    return iconwright::hashFields(iconwright::rawValue(slot.idiom), iconwright::rawValue(slot.appearance));
  }
};
