// SpecializationSlotComponent: what Idiom and Appearance share as axes of a slot, so that
// generic code can walk either tree. Each axis specialises SlotComponentTraits with its name,
// its root and the slot field that holds it; the operations below work on any axis:
//   canUseValues(Idiom::iOS, Idiom::square)          // true: a child uses its ancestors' values
//   path(Idiom::base, Idiom::macOS)                  // base, square, macOS
#pragma once

#include <algorithm>
#include <concepts>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "foundation/specialization/SpecializationSlot.hpp"

namespace iconwright {

template <class C>
struct SlotComponentTraits;  // slotName, base, slotField (a member pointer into SpecializationSlot)

template <>
struct SlotComponentTraits<Idiom> {
  static constexpr std::string_view slotName = idiomSlotName;
  static constexpr Idiom base = Idiom::base;
  static constexpr Idiom SpecializationSlot::*slotField = &SpecializationSlot::idiom;
};

template <>
struct SlotComponentTraits<Appearance> {
  static constexpr std::string_view slotName = appearanceSlotName;
  static constexpr Appearance base = Appearance::base;
  static constexpr Appearance SpecializationSlot::*slotField = &SpecializationSlot::appearance;
};

template <class C>
concept SpecializationSlotComponent = std::regular<C> && requires(C value) {
  { std::hash<C>{}(value) } -> std::convertible_to<std::size_t>;
  { SlotComponentTraits<C>::slotName } -> std::convertible_to<std::string_view>;
  { SlotComponentTraits<C>::base } -> std::convertible_to<C>;
  { displayName(value) } -> std::convertible_to<std::string_view>;
  { fileNameComponent(value) } -> std::convertible_to<std::string_view>;
  { parent(value) } -> std::same_as<std::optional<C>>;
  { semiQualifiedDisplayName(value) } -> std::convertible_to<std::string_view>;
  { SlotComponentTraits<C>::slotField } -> std::convertible_to<C SpecializationSlot::*>;
};

/// The slot's value on this axis equals `value`.
template <SpecializationSlotComponent C>
[[nodiscard]] constexpr bool isSet(C value, const SpecializationSlot& slot) {
  return slot.*SlotComponentTraits<C>::slotField == value;
}

/// Writes `value` into the slot's field for this axis.
template <SpecializationSlotComponent C>
constexpr void set(C value, SpecializationSlot& slot) {
  slot.*SlotComponentTraits<C>::slotField = value;
}

/// The slot's value on the axis C: value<Idiom>(slot).
template <SpecializationSlotComponent C>
[[nodiscard]] constexpr C value(const SpecializationSlot& slot) {
  return slot.*SlotComponentTraits<C>::slotField;
}

template <SpecializationSlotComponent C>
[[nodiscard]] constexpr bool isBase(C value) {
  return value == SlotComponentTraits<C>::base;
}

/// True when `other` is `value` itself or one of its ancestors: values flow down the tree only,
/// never up to a parent nor across to a sibling.
template <SpecializationSlotComponent C>
[[nodiscard]] constexpr bool canUseValues(C value, C other) {
  for (std::optional<C> step = value; step; step = parent(*step)) {
    if (*step == other) return true;
  }
  return false;
}

/// The chain from `from` down to `to`, both ends included; absent when `from` is not `to` or
/// one of its ancestors.
template <SpecializationSlotComponent C>
[[nodiscard]] std::optional<std::vector<C>> path(C from, C to) {
  std::vector<C> steps;
  for (std::optional<C> step = to; step; step = parent(*step)) {
    steps.push_back(*step);
    if (*step == from) {
      std::reverse(steps.begin(), steps.end());
      return steps;
    }
  }
  return std::nullopt;
}

/// path(from, value).
template <SpecializationSlotComponent C>
[[nodiscard]] std::optional<std::vector<C>> pathFrom(C value, C from) {
  return path(from, value);
}

/// path(value, to).
template <SpecializationSlotComponent C>
[[nodiscard]] std::optional<std::vector<C>> pathTo(C value, C to) {
  return path(value, to);
}

}  // namespace iconwright
