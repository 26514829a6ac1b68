// Reading and writing the members of one manifest object (the root, a group, a layer) so that
// documents from newer versions of the format survive a save. Members this format does not
// declare are kept as raw JSON and written back in their sorted place. When the document names
// a format feature this version does not know, a declared member whose value does not decode
// is kept raw the same way, its property staying at its default; it is written back only
// while that property still has no value of its own. Without such a feature every decoding
// error reaches the caller. Also here: the ManifestProperty rows that pair a member type's
// property table (document/PropertyTable.hpp) with its snapshot fields and drive the reading,
// writing, snapshot and clone of groups and layers; reading an array element by element.
#pragma once

#include <array>
#include <cstddef>
#include <exception>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "foundation/document/PropertyTable.hpp"
#include "foundation/format/SpecializationEncoding.hpp"
#include "foundation/json/DecodingError.hpp"
#include "foundation/json/JSONCoding.hpp"
#include "foundation/support/Assertions.hpp"
#include "foundation/support/MessageError.hpp"

namespace iconwright {

/// The root's "features" names a format feature: this version knows none, so any name
/// counts.
[[nodiscard]] bool namesUnknownFormatFeatures(const Decoder& root);

class ManifestObjectReader {
 public:
  /// Requires an object (a type mismatch otherwise). With `keepsUndecodableMembers`, a
  /// declared member that fails to decode is kept raw and read as absent. The reader refers
  /// to `decoder`, which must outlive it.
  ManifestObjectReader(const Decoder& decoder, bool keepsUndecodableMembers);

  [[nodiscard]] const Decoder& decoder() const { return decoder_; }
  [[nodiscard]] bool keepsUndecodableMembers() const { return keepsUndecodableMembers_; }

  /// A specializable property under its two keys (see decodeSpecializableProperty).
  template <class T>
  [[nodiscard]] PropertySnapshot<T> property(const ManifestKeys& keys) {
    declare(keys);
    const std::string_view present = decoder_.contains(keys.key) ? keys.key : keys.pluralKey;
    return attempt<PropertySnapshot<T>>(present, std::nullopt, [&] {
      return decodeSpecializableProperty<T>(decoder_, keys.key, keys.pluralKey);
    });
  }

  /// A member that may be missing; missing or null reads as absent.
  template <class T>
  [[nodiscard]] std::optional<T> optionalMember(std::string_view key) {
    declare({key, {}});
    return attempt<std::optional<T>>(key, std::nullopt, [&] { return decoder_.decodeIfPresent<T>(key); });
  }

  /// A member that must be there: missing is a key-not-found error in any case. `decode`
  /// reads it from its own decoder; a failure there reads as `fallback` when kept raw.
  template <class T, class Decode>
  [[nodiscard]] T requiredMember(std::string_view key, T fallback, Decode&& decode) {
    declare({key, {}});
    const Decoder member = decoder_[key];
    return attempt<T>(key, std::move(fallback), [&] { return decode(member); });
  }

  /// A declared key that nothing reads: it vanishes on the next save.
  void ignore(std::string_view key) { declare({key, {}}); }

  /// The members that were not declared, and the declared ones kept raw.
  [[nodiscard]] JSONValue::Object unknownMembers() const;

 private:
  void declare(const ManifestKeys& keys);

  template <class Result, class Decode>
  Result attempt(std::string_view key, Result fallback, Decode&& decode) {
    if (!keepsUndecodableMembers_) return decode();
    try {
      return decode();
    } catch (const DecodingError&) {
    } catch (const MessageError&) {
    }
    if (const JSONValue* raw = decoder_.json().find(key)) kept_.insert_or_assign(std::string(key), *raw);
    return fallback;
  }

  const Decoder& decoder_;
  bool keepsUndecodableMembers_;
  std::vector<std::string_view> declared_;
  JSONValue::Object kept_;
};

/// The elements of a JSON array, each read with `decode(element)`. Requires an array.
template <class Decode>
[[nodiscard]] auto decodeElements(const Decoder& decoder, Decode&& decode) {
  std::vector<decltype(decode(decoder))> elements;
  const std::size_t count = decoder.count();
  elements.reserve(count);
  for (std::size_t index = 0; index < count; ++index) elements.push_back(decode(decoder.element(index)));
  return elements;
}

/// Applies a present property snapshot to the property `keyPath` of a live member, through
/// the member's notifying change().
template <class Member, class KeyPath, class Snapshot>
void applyPropertySnapshot(Member& member, const KeyPath& keyPath, const std::optional<Snapshot>& snapshot) {
  if (!snapshot) return;
  auto property = member.*keyPath.storage;
  snapshot->apply(property);
  member.change(keyPath, std::move(property), true);
}

/// A row of a member type's property table (PropertyTable.hpp) paired with the snapshot's
/// field for it. A tuple of these, one per member type in the order the manifest declares its
/// keys, drives the manifest reader and writer and the conversions between a live member and
/// its snapshot; the keys, the live property and its name all come from the document's row.
template <class Member, class T>
struct ManifestProperty {
  using Value = T;
  PropertyKeyPath<Member, T> keyPath;
  PropertySnapshot<T> Member::Snapshot::*field;
};

template <class Member, class T, class Field>
ManifestProperty(PropertyKeyPath<Member, T>, Field) -> ManifestProperty<Member, T>;

namespace detail {
template <class A, class B>
constexpr bool sameKeyPath(const A& lhs, const B& rhs) {
  if constexpr (std::is_same_v<A, B>) {
    return lhs.storage == rhs.storage;
  } else {
    return false;
  }
}
}  // namespace detail

/// Whether `rows` pairs every row of Member::propertyTable with a field, each once. Asserted
/// where a format table is defined, so a table that misses a row does not compile.
template <class Member, class... Rows>
[[nodiscard]] constexpr bool coversPropertyTable(const std::tuple<Rows...>& rows) {
  if (sizeof...(Rows) != std::tuple_size_v<decltype(Member::propertyTable)>) return false;
  const auto pairings = [&](const auto& wanted) {
    return std::apply([&](const auto&... row) { return (int{detail::sameKeyPath(row.keyPath, wanted)} + ...); }, rows);
  };
  return std::apply([&](const auto&... tableRow) { return ((pairings(tableRow) == 1) && ...); }, Member::propertyTable);
}

/// The keys of every row, after `others` (the members that are not specializable properties).
template <std::size_t Count, class... Rows>
[[nodiscard]] constexpr auto manifestKeys(const std::array<ManifestKeys, Count>& others, const std::tuple<Rows...>& rows) {
  std::array<ManifestKeys, Count + sizeof...(Rows)> keys{};
  std::size_t index = 0;
  for (const auto& key : others) keys[index++] = key;
  std::apply([&](const auto&... row) { ((keys[index++] = row.keyPath.keys), ...); }, rows);
  return keys;
}

/// Writes each row's snapshot field under its keys.
template <class Snapshot, class... Rows>
void encodeManifestProperties(JSONValue::Object& object, const Snapshot& snapshot, const std::tuple<Rows...>& rows) {
  std::apply(
      [&](const auto&... row) {
        (encodeSpecializableProperty(object, snapshot.*row.field, row.keyPath.keys.key, row.keyPath.keys.pluralKey), ...);
      },
      rows);
}

/// Reads each row's snapshot field, in row order.
template <class Snapshot, class... Rows>
void decodeManifestProperties(ManifestObjectReader& reader, Snapshot& snapshot, const std::tuple<Rows...>& rows) {
  std::apply(
      [&](const auto&... row) {
        ((snapshot.*row.field = reader.template property<typename Rows::Value>(row.keyPath.keys)), ...);
      },
      rows);
}

/// The snapshot of a live group or layer: its name, each row's field from the live property,
/// and the kept manifest members.
template <class Member, class... Rows>
void snapshotManifestMember(const Member& member, typename Member::Snapshot& snapshot, const std::tuple<Rows...>& rows) {
  snapshot.name = member.name();
  std::apply([&](const auto&... row) { ((snapshot.*row.field = (member.*row.keyPath.storage).snapshot()), ...); }, rows);
  snapshot.unknownManifestMembers = member.unknownManifestMembers();
}

/// The reverse onto a new live group or layer: the name and each present field through the
/// notifying setters, then the kept manifest members.
template <class Member, class... Rows>
void applyManifestMember(Member& member, const typename Member::Snapshot& snapshot, const std::tuple<Rows...>& rows) {
  member.setName(snapshot.name);
  std::apply([&](const auto&... row) { (applyPropertySnapshot(member, row.keyPath, snapshot.*row.field), ...); }, rows);
  member.setUnknownManifestMembers(snapshot.unknownManifestMembers);
}

/// create(member.snapshot()): a snapshot made from a live member always reads back, so a
/// failure stops the process, reported under `source`.
template <class Member>
[[nodiscard]] std::shared_ptr<Member> cloneThroughSnapshot(const Member& member, const char* source) {
  try {
    return Member::create(member.snapshot());
  } catch (const std::exception& error) {
    ICONWRIGHT_FATAL(source, error.what());
  }
}

/// Adds kept members to an encoded object: an undeclared one always, a declared one only when
/// the object holds none of that member's keys.
void writeUnknownManifestMembers(JSONValue::Object& object, const JSONValue::Object& unknownMembers,
                                 std::span<const ManifestKeys> declared);

}  // namespace iconwright
