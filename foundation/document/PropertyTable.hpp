// The property table of a member type (IconComposition, Group, Layer): one PropertyKeyPath
// row per specializable property — where it is stored, the name observers hear, its two
// manifest keys — and the tuple `propertyTable` of those rows in declaration order, both at
// the end of the class. The table drives enumeration and undoable editing here
// (PropertyEnumerable); the format pairs each row with its snapshot field (ManifestProperty in
// format/ManifestMembers.hpp) for reading, writing, snapshots and clones.
//
// To add a specializable property `glow` to Group:
//   1. the storage member with its default: `SpecializableProperty<bool> glow_{false};`;
//   2. its row, `static constexpr PropertyKeyPath glowKeyPath{&Group::glow_, "glow",
//      {"glow", "glow-specializations"}};`, and `glowKeyPath` in `propertyTable`;
//   3. `PropertySnapshot<bool> glow;` in Group::Snapshot and
//      `ManifestProperty{Group::glowKeyPath, &Group::Snapshot::glow}` in GroupSnapshot.cpp
//      (without it the format table fails to compile);
//   4. if code names it, a getter and a setter that calls change(glowKeyPath, …).
#pragma once

#include <string_view>
#include <tuple>
#include <utility>

#include "foundation/document/IconwrightDocumentMember.hpp"
#include "foundation/specialization/SpecializableProperty.hpp"

namespace iconwright {

/// The keys of one manifest member: a property's singular and plural key, or a single key
/// (pluralKey empty).
struct ManifestKeys {
  std::string_view key;
  std::string_view pluralKey;
};

/// One row of a property table: the key path of a specializable property of `Member`, with
/// the keys it is written under. It is a MemberKeyPath, so change() and lense() take it.
template <class Member, class T>
struct PropertyKeyPath : MemberKeyPath<Member, SpecializableProperty<T>> {
  using Value = T;

  constexpr PropertyKeyPath(SpecializableProperty<T> Member::*storage, std::string_view name, ManifestKeys keys)
      : MemberKeyPath<Member, SpecializableProperty<T>>{storage, name}, keys(keys) {}

  ManifestKeys keys;
};

/// Enumeration of the specializable properties of `Member`, in the order of
/// `Member::propertyTable`.
template <class Member>
class PropertyEnumerable {
 public:
  /// Calls `visitor(keyPath)` with each row of the table.
  template <class Visitor>
  static void forEachPropertyKeyPath(Visitor&& visitor) {
    std::apply([&](const auto&... row) { (visitor(row), ...); }, Member::propertyTable);
  }

  /// Calls `visitor(name, property)` for each specializable property.
  template <class Visitor>
  void enumerateProperties(Visitor&& visitor) const {
    const Member& member = static_cast<const Member&>(*this);
    forEachPropertyKeyPath([&](const auto& row) { visitor(row.name, member.*row.storage); });
  }

  /// Calls `visitor(name, property)` with a copy of each specializable property that it may
  /// edit; an edited copy is stored through change(), so an edit is one undoable change.
  template <class Visitor>
  void updateProperties(Visitor&& visitor) {
    Member& member = static_cast<Member&>(*this);
    forEachPropertyKeyPath([&](const auto& row) {
      auto property = member.*row.storage;
      visitor(row.name, property);
      member.change(row, std::move(property), true);
    });
  }
};

}  // namespace iconwright
