// SpecializableProperty<T>: a default value plus a list of overrides, one per slot, kept
// strictly ascending by slot precedence. A read for a slot walks both axes towards their
// roots: the last override (in list order) whose idiom and appearance the slot can use
// provides the value, so the idiom axis outranks the appearance axis. Every visual property
// of a document is one of these.
#pragma once

#include <concepts>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "foundation/specialization/SpecializationSlot.hpp"
#include "foundation/specialization/SpecializationSlotComponent.hpp"
#include "foundation/specialization/ValueDescription.hpp"
#include "foundation/support/Binding.hpp"
#include "foundation/support/Hashing.hpp"

namespace iconwright {

template <class T>
class SpecializableProperty {
 public:
  using Value = T;

  struct Specialization {
    SpecializationSlot slot;
    T value;

    [[nodiscard]] const SpecializationSlot& specializationSlot() const { return slot; }
    /// "(.iOS, .dark) = 0.5".
    [[nodiscard]] std::string description() const
      requires DescribableValue<T>
    {
      return slot.description() + " = " + detail::describeValue(value);
    }
    friend bool operator==(const Specialization&, const Specialization&) = default;
  };

  SpecializableProperty()
    requires std::default_initializable<T>
  = default;
  explicit SpecializableProperty(T defaultValue) : defaultValue_(std::move(defaultValue)) {}
  /// Takes `specializations` as they stand, without sorting or checking.
  /// Requires: strictly ascending by slot precedence, as add() keeps them.
  SpecializableProperty(std::vector<Specialization> specializations, T defaultValue)
      : specializations_(std::move(specializations)), defaultValue_(std::move(defaultValue)) {}

  /// The plain form in which the property reaches the document; defined with its JSON in
  /// foundation/format/SpecializationEncoding.hpp.
  struct Snapshot;

  [[nodiscard]] const std::vector<Specialization>& specializations() const { return specializations_; }
  /// Fixed for the life of the property; the operations here never change it.
  [[nodiscard]] const T& defaultValue() const { return defaultValue_; }

  // Reading.

  [[nodiscard]] const T& effectiveValue(const SpecializationSlot& slot) const {
    const auto index = providerIndex(slot);
    return index ? specializations_[*index].value : defaultValue_;
  }
  /// The providing override, or a record of the base slot with the default value.
  [[nodiscard]] Specialization effectiveSpecialization(const SpecializationSlot& slot) const {
    const auto index = providerIndex(slot);
    return index ? specializations_[*index] : Specialization{SpecializationSlot::base, defaultValue_};
  }
  /// Absent when only the default value applies, unlike effectiveSpecialization, which cannot
  /// tell a base override from none.
  [[nodiscard]] std::optional<SpecializationSlot> slotProvidingValue(const SpecializationSlot& slot) const {
    const auto index = providerIndex(slot);
    if (!index) return std::nullopt;
    return specializations_[*index].slot;
  }
  /// The override for exactly this slot, ignoring inheritance.
  [[nodiscard]] std::optional<Specialization> explicitSpecialization(const SpecializationSlot& slot) const {
    const std::size_t index = insertionIndex(slot);
    if (index < specializations_.size() && specializations_[index].slot == slot) return specializations_[index];
    return std::nullopt;
  }
  [[nodiscard]] std::optional<T> explicitValue(const SpecializationSlot& slot) const {
    auto specialization = explicitSpecialization(slot);
    if (!specialization) return std::nullopt;
    return std::move(specialization->value);
  }
  [[nodiscard]] bool hasSpecializationExactly(const SpecializationSlot& slot) const {
    return exactIndex(slot).has_value();
  }
  /// Some override's slot has exactly `component` on its axis; parents are not consulted.
  template <SpecializationSlotComponent C>
  [[nodiscard]] bool hasValueWith(C component) const {
    for (const auto& specialization : specializations_) {
      if (isSet(component, specialization.slot)) return true;
    }
    return false;
  }
  /// Every override is at the base slot; true when there are none.
  [[nodiscard]] bool onlyUsesBaseOrDefaultValue() const {
    for (const auto& specialization : specializations_) {
      if (!specialization.slot.isBaseSlot()) return false;
    }
    return true;
  }
  /// The override values in list order, without the default value.
  [[nodiscard]] std::vector<T> allValues() const {
    std::vector<T> values;
    values.reserve(specializations_.size());
    for (const auto& specialization : specializations_) values.push_back(specialization.value);
    return values;
  }

  /// universal for a single override at the base slot, absent for none, else specialized.
  /// Defined in foundation/format/SpecializationEncoding.hpp.
  [[nodiscard]] std::optional<Snapshot> snapshot() const;

  // Writing.

  /// Inserts or replaces the override for exactly this slot.
  void setExplicitValue(T value, const SpecializationSlot& slot) { add({slot, std::move(value)}); }

  /// Replaces the value of whichever override provides `slot`, keeping that override's slot, so
  /// every slot inheriting from it changes too. With no provider the value becomes a new
  /// override at the base slot, whatever slot was asked for; the default value is never touched.
  void setEffectiveValue(T value, const SpecializationSlot& slot) {
    if (const auto index = providerIndex(slot)) {
      specializations_[*index].value = std::move(value);
    } else {
      specializations_.insert(specializations_.begin(), Specialization{SpecializationSlot::base, std::move(value)});
    }
  }

  /// The ordered insert: replaces an override of the same slot, else inserts before the first
  /// override that does not precede the new one.
  void add(Specialization specialization) {
    const std::size_t index = insertionIndex(specialization.slot);
    if (index < specializations_.size() && specializations_[index].slot == specialization.slot) {
      specializations_[index] = std::move(specialization);
    } else {
      specializations_.insert(specializations_.begin() + static_cast<std::ptrdiff_t>(index), std::move(specialization));
    }
  }

  /// Stores the inherited value as this slot's own copy; later changes to the ancestor no longer
  /// reach the slot.
  void addSpecialization(const SpecializationSlot& slot) { setExplicitValue(T(effectiveValue(slot)), slot); }
  void makeValueExplicit(const SpecializationSlot& slot) { addSpecialization(slot); }

  /// Removes the override for exactly this slot; false (and nothing removed) when the slot only
  /// inherits.
  bool removeSpecialization(const SpecializationSlot& slot) {
    const auto index = exactIndex(slot);
    if (!index) return false;
    specializations_.erase(specializations_.begin() + static_cast<std::ptrdiff_t>(*index));
    return true;
  }
  void removeAllSpecializations() { specializations_ = {}; }

  // Transforming.

  /// Applies `transform(slot, value)` to each override in order, then `transform(nullopt,
  /// defaultValue)` last. An exception from the transform ends the work and reaches the caller.
  template <class Transform>
  [[nodiscard]] auto map(Transform&& transform) const {
    using U = std::remove_cvref_t<std::invoke_result_t<Transform&, std::optional<SpecializationSlot>, const T&>>;
    std::vector<typename SpecializableProperty<U>::Specialization> mapped;
    mapped.reserve(specializations_.size());
    for (const auto& specialization : specializations_) {
      mapped.push_back({specialization.slot, std::invoke(transform, std::optional(specialization.slot), specialization.value)});
    }
    U mappedDefault = std::invoke(transform, std::optional<SpecializationSlot>(), defaultValue_);
    return SpecializableProperty<U>(std::move(mapped), std::move(mappedDefault));
  }

  // Asset references, when the value names assets. The default value is never visited.

  template <class References>
    requires requires(const T& value, References& references) { value.collectAssetReferences(references); }
  void collectAssetReferences(References& references) const {
    for (const auto& specialization : specializations_) specialization.value.collectAssetReferences(references);
  }

  template <class Renames>
    requires requires(T& value, const Renames& renames) { value.updateAssetReferences(renames); }
  void updateAssetReferences(const Renames& renames) {
    for (auto& specialization : specializations_) specialization.value.updateAssetReferences(renames);
  }

  /// Whether the value shown for `renderedSlot` was authored for another appearance and should
  /// be adapted by the renderer. A value equal to `alwaysAdaptingForValue` always adapts, one
  /// equal to `neverAdaptingForValue` never does; a value from a base-appearance override or
  /// from the default counts as authored for light.
  [[nodiscard]] bool shouldAutoAdaptAppearance(const SpecializationSlot& renderedSlot,
                                               const std::optional<T>& alwaysAdaptingForValue = std::nullopt,
                                               const std::optional<T>& neverAdaptingForValue = std::nullopt) const
    requires std::equality_comparable<T>
  {
    const auto index = providerIndex(renderedSlot);
    const T& value = index ? specializations_[*index].value : defaultValue_;
    const Appearance authored = index ? specializations_[*index].slot.appearance : Appearance::base;
    if (alwaysAdaptingForValue && *alwaysAdaptingForValue == value) return true;
    if (neverAdaptingForValue && *neverAdaptingForValue == value) return false;
    const Appearance effectiveAuthored = authored == Appearance::base ? Appearance::light : authored;
    return renderedSlot.appearance != effectiveAuthored;
  }

  friend bool operator==(const SpecializableProperty&, const SpecializableProperty&) = default;

 private:
  // The provider: scanning from the end, the first override whose idiom and appearance the
  // target can use.
  [[nodiscard]] std::optional<std::size_t> providerIndex(const SpecializationSlot& target) const {
    for (std::size_t index = specializations_.size(); index-- > 0;) {
      const SpecializationSlot& slot = specializations_[index].slot;
      if (canUseValues(target.idiom, slot.idiom) && canUseValues(target.appearance, slot.appearance)) return index;
    }
    return std::nullopt;
  }
  // The provider, when it is exactly `slot`; on a sorted list an exact override is the last match.
  [[nodiscard]] std::optional<std::size_t> exactIndex(const SpecializationSlot& slot) const {
    const auto index = providerIndex(slot);
    if (index && specializations_[*index].slot == slot) return index;
    return std::nullopt;
  }
  // The first index whose override does not precede `slot`, or the end.
  [[nodiscard]] std::size_t insertionIndex(const SpecializationSlot& slot) const {
    const auto precedent = slot.precedent();
    std::size_t index = 0;
    while (index < specializations_.size() && specializations_[index].slot.precedent() < precedent) ++index;
    return index;
  }

  std::vector<Specialization> specializations_;
  T defaultValue_{};
};

/// A binding to the value shown for `slot`: reads effectiveValue, writes through setEffectiveValue.
template <class T>
[[nodiscard]] Binding<T> effectiveValueBinding(Binding<SpecializableProperty<T>> property, SpecializationSlot slot) {
  return {[property, slot] { return T(property().effectiveValue(slot)); },
          [property, slot](const T& value) {
            SpecializableProperty<T> edited = property();
            edited.setEffectiveValue(value, slot);
            property.set(edited);
          }};
}

/// A binding to the override for exactly `slot`: reads explicitValue; writing a value sets the
/// override, writing absent removes it.
template <class T>
[[nodiscard]] Binding<std::optional<T>> explicitValueBinding(Binding<SpecializableProperty<T>> property,
                                                             SpecializationSlot slot) {
  return {[property, slot] { return property().explicitValue(slot); },
          [property, slot](const std::optional<T>& value) {
            SpecializableProperty<T> edited = property();
            if (value) {
              edited.setExplicitValue(*value, slot);
            } else {
              edited.removeSpecialization(slot);
            }
            property.set(edited);
          }};
}

}  // namespace iconwright

template <class T>
  requires requires(const T& value) { std::hash<T>{}(value); }
struct std::hash<iconwright::SpecializableProperty<T>> {
  std::size_t operator()(const iconwright::SpecializableProperty<T>& property) const noexcept {
    std::size_t seed = property.specializations().size();
    for (const auto& specialization : property.specializations()) {
      iconwright::hashCombine(seed, iconwright::hashFields(specialization.slot, specialization.value));
    }
    iconwright::hashCombine(seed, std::hash<T>{}(property.defaultValue()));
    return seed;
  }
};
