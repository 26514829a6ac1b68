// How a SpecializableProperty<T> reaches the document. Its Snapshot is either one value for
// every slot, written plainly under the property's singular key ("opacity" : 0.5), or a list
// of per-slot records, written as an array under the plural key ("opacity-specializations").
// A property without overrides has no snapshot and writes no key, so its declared default
// comes back on reading. The default value itself is never written.
#pragma once

#include <concepts>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "foundation/json/JSONCoding.hpp"
#include "foundation/specialization/Appearance.hpp"
#include "foundation/specialization/Idiom.hpp"
#include "foundation/specialization/SpecializableProperty.hpp"
#include "foundation/specialization/SpecializationSlot.hpp"

namespace iconwright {

template <class T>
struct SpecializableProperty<T>::Snapshot {
  using Value = T;

  /// One record of the list form: {"value" : v}, plus "idiom" and "appearance" where they are
  /// not base. "localization" and "languageDirection" are declared keys that nothing reads.
  struct Specialization {
    SpecializationSlot slot;
    T value;

    [[nodiscard]] JSONValue encodeJSON() const {
      JSONValue::Object object;
      object.emplace("value", JSONCoding<T>::encode(value));
      if (slot.idiom != Idiom::base) object.emplace("idiom", JSONCoding<Idiom>::encode(slot.idiom));
      if (slot.appearance != Appearance::base) {
        object.emplace("appearance", JSONCoding<Appearance>::encode(slot.appearance));
      }
      return JSONValue(std::move(object));
    }
    /// "value" is required; a missing or null "idiom" or "appearance" is base, an unknown one
    /// a data-corrupted DecodingError.
    [[nodiscard]] static Specialization decodeJSON(const Decoder& decoder) {
      SpecializationSlot slot;
      if (auto idiom = decoder.decodeIfPresent<Idiom>("idiom")) slot.idiom = *idiom;
      if (auto appearance = decoder.decodeIfPresent<Appearance>("appearance")) slot.appearance = *appearance;
      return {slot, decoder.decode<T>("value")};
    }

    friend bool operator==(const Specialization&, const Specialization&) = default;
  };

  /// One value for every slot.
  [[nodiscard]] static Snapshot universal(T value) { return Snapshot(Universal{std::move(value)}); }
  /// One record per slot, in the order given (which apply() does not need sorted).
  [[nodiscard]] static Snapshot specialized(std::vector<Specialization> specializations) {
    return Snapshot(std::move(specializations));
  }

  /// universal for a single override at the base slot, absent for no overrides, else
  /// specialized with the overrides in the property's order.
  [[nodiscard]] static std::optional<Snapshot> fromModelValue(const SpecializableProperty<T>& property) {
    const auto& specializations = property.specializations();
    if (specializations.size() == 1 && specializations.front().slot.isBaseSlot()) {
      return universal(specializations.front().value);
    }
    if (specializations.empty()) return std::nullopt;
    std::vector<Specialization> records;
    records.reserve(specializations.size());
    for (const auto& specialization : specializations) records.push_back({specialization.slot, specialization.value});
    return specialized(std::move(records));
  }

  [[nodiscard]] bool isUniversal() const { return std::holds_alternative<Universal>(storage_); }
  /// The value of universal; null for specialized.
  [[nodiscard]] const T* universalValue() const {
    const auto* universal = std::get_if<Universal>(&storage_);
    return universal ? &universal->value : nullptr;
  }
  /// The records of specialized; null for universal.
  [[nodiscard]] const std::vector<Specialization>* specializations() const {
    return std::get_if<std::vector<Specialization>>(&storage_);
  }

  /// The records of specialized, or for universal one record at the base slot.
  [[nodiscard]] std::vector<Specialization> list() const {
    if (const T* value = universalValue()) return {Specialization{SpecializationSlot::base, *value}};
    return *specializations();
  }
  [[nodiscard]] std::size_t specializationsCount() const {
    return isUniversal() ? 1 : specializations()->size();
  }

  /// Replaces the property's overrides with the records, inserted in order: the property
  /// sorts them, and of two records for one slot the later stays. The default value stays.
  void apply(SpecializableProperty<T>& property) const {
    property.removeAllSpecializations();
    using PropertySpecialization = typename SpecializableProperty<T>::Specialization;
    if (const T* value = universalValue()) {
      property.add(PropertySpecialization{SpecializationSlot::base, *value});
      return;
    }
    for (const auto& record : *specializations()) property.add(PropertySpecialization{record.slot, record.value});
  }
  /// Sets the value of the first record (its own slot ignored) as the explicit value of
  /// `slot`, leaving the other overrides; an empty list does nothing.
  void applyFirstSpecialization(SpecializableProperty<T>& property, const SpecializationSlot& slot) const {
    if (const T* value = universalValue()) {
      property.setExplicitValue(*value, slot);
    } else if (!specializations()->empty()) {
      property.setExplicitValue(specializations()->front().value, slot);
    }
  }

  /// universal and specialized never compare equal, even where they apply alike.
  friend bool operator==(const Snapshot&, const Snapshot&) = default;

 private:
  struct Universal {
    T value;
    friend bool operator==(const Universal&, const Universal&) = default;
  };

  explicit Snapshot(Universal universal) : storage_(std::move(universal)) {}
  explicit Snapshot(std::vector<Specialization> specializations) : storage_(std::move(specializations)) {}

  std::variant<Universal, std::vector<Specialization>> storage_;
};

template <class T>
std::optional<typename SpecializableProperty<T>::Snapshot> SpecializableProperty<T>::snapshot() const {
  return Snapshot::fromModelValue(*this);
}

/// What a record holds for one specializable property: absent when it has no overrides.
template <class T>
using PropertySnapshot = std::optional<typename SpecializableProperty<T>::Snapshot>;

/// A property snapshot of some value type.
template <class S>
concept SpecializablePropertySnapshot = std::same_as<S, typename SpecializableProperty<typename S::Value>::Snapshot>;

/// Reads a property from an object: the singular key (null counts as present) gives
/// universal, and the plural key is then not looked at; else the plural key gives
/// specialized; else absent. Decoding errors reach the caller.
template <class T>
[[nodiscard]] std::optional<typename SpecializableProperty<T>::Snapshot> decodeSpecializableProperty(
    const Decoder& decoder, std::string_view singularKey, std::string_view pluralKey) {
  using Snapshot = typename SpecializableProperty<T>::Snapshot;
  if (decoder.contains(singularKey)) return Snapshot::universal(decoder.decode<T>(singularKey));
  if (decoder.contains(pluralKey)) {
    return Snapshot::specialized(decoder.decode<std::vector<typename Snapshot::Specialization>>(pluralKey));
  }
  return std::nullopt;
}

/// Writes nothing for an absent snapshot, the value under the singular key for universal,
/// and the array of records under the plural key for specialized.
template <SpecializablePropertySnapshot S>
void encodeSpecializableProperty(JSONValue::Object& object, const std::optional<S>& snapshot,
                                 std::string_view singularKey, std::string_view pluralKey) {
  if (!snapshot) return;
  if (const auto* value = snapshot->universalValue()) {
    object.insert_or_assign(std::string(singularKey), JSONCoding<typename S::Value>::encode(*value));
  } else {
    object.insert_or_assign(std::string(pluralKey), encodeJSON(*snapshot->specializations()));
  }
}

}  // namespace iconwright
