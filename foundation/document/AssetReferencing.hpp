// AssetReferencing: which asset names a value or a document member uses, and the renaming of
// those names after asset stores were merged. Free functions over names, optionals, vectors,
// maps (their values), specializable properties (the default value and every override) and
// members held by shared_ptr (IconComposition, Group and Layer, through their own functions).
//   AssetReferenceSet used = assetReferences(layer->imageName());
//   updateAssetReferences(layers, renames);
#pragma once

#include <concepts>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "foundation/assets/AssetName.hpp"
#include "foundation/specialization/SpecializableProperty.hpp"

namespace iconwright {

// Every overload is declared before any is defined, so that nested forms (an optional in a
// property in a vector) find one another.

inline void collectAssetReferences(const AssetName& name, AssetReferenceSet& references) {
  name.collectAssetReferences(references);
}
inline void updateAssetReferences(AssetName& name, const AssetRenames& renames) { name.updateAssetReferences(renames); }

template <class T>
void collectAssetReferences(const std::optional<T>& value, AssetReferenceSet& references);
template <class T>
void updateAssetReferences(std::optional<T>& value, const AssetRenames& renames);

template <class T, class Allocator>
void collectAssetReferences(const std::vector<T, Allocator>& values, AssetReferenceSet& references);
template <class T, class Allocator>
void updateAssetReferences(std::vector<T, Allocator>& values, const AssetRenames& renames);

template <class Key, class T, class... Rest>
void collectAssetReferences(const std::unordered_map<Key, T, Rest...>& values, AssetReferenceSet& references);
template <class Key, class T, class... Rest>
void updateAssetReferences(std::unordered_map<Key, T, Rest...>& values, const AssetRenames& renames);

template <class Key, class T, class... Rest>
void collectAssetReferences(const std::map<Key, T, Rest...>& values, AssetReferenceSet& references);
template <class Key, class T, class... Rest>
void updateAssetReferences(std::map<Key, T, Rest...>& values, const AssetRenames& renames);

/// The base (default) value and every override's value.
template <class T>
void collectAssetReferences(const SpecializableProperty<T>& property, AssetReferenceSet& references);
/// Rewrites the base (default) value and every override's value; the slots stay.
template <class T>
void updateAssetReferences(SpecializableProperty<T>& property, const AssetRenames& renames);

/// A document member: its own collect and update, which walk its subtree.
template <class Member>
  requires requires(const Member& member, AssetReferenceSet& references) {
    member.collectAssetReferences(references);
  }
void collectAssetReferences(const std::shared_ptr<Member>& member, AssetReferenceSet& references);
template <class Member>
  requires requires(Member& member, const AssetRenames& renames) { member.updateAssetReferences(renames); }
void updateAssetReferences(const std::shared_ptr<Member>& member, const AssetRenames& renames);

// ---------------------------------------------------------------------------------------

template <class T>
void collectAssetReferences(const std::optional<T>& value, AssetReferenceSet& references) {
  if (value) collectAssetReferences(*value, references);
}
template <class T>
void updateAssetReferences(std::optional<T>& value, const AssetRenames& renames) {
  if (value) updateAssetReferences(*value, renames);
}

template <class T, class Allocator>
void collectAssetReferences(const std::vector<T, Allocator>& values, AssetReferenceSet& references) {
  for (const T& value : values) collectAssetReferences(value, references);
}
template <class T, class Allocator>
void updateAssetReferences(std::vector<T, Allocator>& values, const AssetRenames& renames) {
  for (T& value : values) updateAssetReferences(value, renames);
}

template <class Key, class T, class... Rest>
void collectAssetReferences(const std::unordered_map<Key, T, Rest...>& values, AssetReferenceSet& references) {
  for (const auto& entry : values) collectAssetReferences(entry.second, references);
}
template <class Key, class T, class... Rest>
void updateAssetReferences(std::unordered_map<Key, T, Rest...>& values, const AssetRenames& renames) {
  for (auto& entry : values) updateAssetReferences(entry.second, renames);
}

template <class Key, class T, class... Rest>
void collectAssetReferences(const std::map<Key, T, Rest...>& values, AssetReferenceSet& references) {
  for (const auto& entry : values) collectAssetReferences(entry.second, references);
}
template <class Key, class T, class... Rest>
void updateAssetReferences(std::map<Key, T, Rest...>& values, const AssetRenames& renames) {
  for (auto& entry : values) updateAssetReferences(entry.second, renames);
}

template <class T>
void collectAssetReferences(const SpecializableProperty<T>& property, AssetReferenceSet& references) {
  collectAssetReferences(property.defaultValue(), references);
  for (const auto& specialization : property.specializations()) collectAssetReferences(specialization.value, references);
}
template <class T>
void updateAssetReferences(SpecializableProperty<T>& property, const AssetRenames& renames) {
  auto specializations = property.specializations();
  for (auto& specialization : specializations) updateAssetReferences(specialization.value, renames);
  T defaultValue = property.defaultValue();
  updateAssetReferences(defaultValue, renames);
  property = SpecializableProperty<T>(std::move(specializations), std::move(defaultValue));
}

template <class Member>
  requires requires(const Member& member, AssetReferenceSet& references) {
    member.collectAssetReferences(references);
  }
void collectAssetReferences(const std::shared_ptr<Member>& member, AssetReferenceSet& references) {
  if (member) member->collectAssetReferences(references);
}
template <class Member>
  requires requires(Member& member, const AssetRenames& renames) { member.updateAssetReferences(renames); }
void updateAssetReferences(const std::shared_ptr<Member>& member, const AssetRenames& renames) {
  if (member) member->updateAssetReferences(renames);
}

/// The values that name assets.
template <class T>
concept AssetReferencing = requires(const T& value, T& target, AssetReferenceSet& references,
                                    const AssetRenames& renames) {
  collectAssetReferences(value, references);
  updateAssetReferences(target, renames);
};

/// Every name the value uses.
template <AssetReferencing T>
[[nodiscard]] AssetReferenceSet assetReferences(const T& value) {
  AssetReferenceSet references;
  collectAssetReferences(value, references);
  return references;
}

/// A copy of the value with the names renamed. A member held by shared_ptr is renamed in
/// place: the copy is the same object.
template <AssetReferencing T>
[[nodiscard]] T updatingAssetReferences(T value, const AssetRenames& renames) {
  updateAssetReferences(value, renames);
  return value;
}

}  // namespace iconwright
