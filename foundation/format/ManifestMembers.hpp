// Reading and writing the members of one manifest object (the root, a group, a layer) so that
// documents from newer versions of the format survive a save. Members this format does not
// declare are kept as raw JSON and written back in their sorted place. When the document names
// a format feature this version does not know, a declared member whose value does not decode
// is kept raw the same way, its property staying at its default; it is written back only
// while that property still has no value of its own. Without such a feature every decoding
// error reaches the caller. Also here: reading an array element by element, and applying a
// property snapshot to a live member.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <tuple>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/document/IconwrightDocumentMember.hpp"
#include "foundation/format/SpecializationEncoding.hpp"
#include "foundation/json/DecodingError.hpp"
#include "foundation/json/JSONCoding.hpp"
#include "foundation/support/MessageError.hpp"

namespace iconwright {

/// The keys of one declared member: a property's singular and plural key, or a single key
/// (pluralKey empty).
struct ManifestKeys {
  std::string_view key;
  std::string_view pluralKey;
};

/// The root's "features" names a format feature: this version knows none, so any name
/// counts.
[[nodiscard]] bool namesUnknownFormatFeatures(const Decoder& root);

class ManifestObjectReader {
 public:
  /// Requires an object (a type mismatch otherwise). With `keepsUndecodableMembers`, a
  /// declared member that fails to decode is kept raw and read as absent.
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

  Decoder decoder_;
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

/// One row of a member type's property table: the manifest keys of a specializable property,
/// the live member's property and the snapshot's field for it. A tuple of rows, one table per
/// member type, drives the manifest reader and writer and the conversions between a live
/// member and its snapshot, so a property is added in one row.
template <class Member, class T>
struct ManifestProperty {
  using Value = T;
  ManifestKeys keys;
  MemberKeyPath<Member, SpecializableProperty<T>> keyPath;
  PropertySnapshot<T> Member::Snapshot::*field;
};

/// The keys of every row, after `others` (the members that are not specializable properties).
template <std::size_t Count, class... Rows>
[[nodiscard]] constexpr auto manifestKeys(const std::array<ManifestKeys, Count>& others, const std::tuple<Rows...>& rows) {
  std::array<ManifestKeys, Count + sizeof...(Rows)> keys{};
  std::size_t index = 0;
  for (const auto& key : others) keys[index++] = key;
  std::apply([&](const auto&... row) { ((keys[index++] = row.keys), ...); }, rows);
  return keys;
}

/// Writes each row's snapshot field under its keys.
template <class Snapshot, class... Rows>
void encodeManifestProperties(JSONValue::Object& object, const Snapshot& snapshot, const std::tuple<Rows...>& rows) {
  std::apply(
      [&](const auto&... row) {
        (encodeSpecializableProperty(object, snapshot.*row.field, row.keys.key, row.keys.pluralKey), ...);
      },
      rows);
}

/// Reads each row's snapshot field, in row order.
template <class Snapshot, class... Rows>
void decodeManifestProperties(ManifestObjectReader& reader, Snapshot& snapshot, const std::tuple<Rows...>& rows) {
  std::apply([&](const auto&... row) { ((snapshot.*row.field = reader.template property<typename Rows::Value>(row.keys)), ...); },
             rows);
}

/// Each row's snapshot field from the live member's property.
template <class Member, class... Rows>
void snapshotManifestProperties(const Member& member, typename Member::Snapshot& snapshot,
                                const std::tuple<Rows...>& rows) {
  std::apply([&](const auto&... row) { ((snapshot.*row.field = (member.*row.keyPath.storage).snapshot()), ...); }, rows);
}

/// Applies each row's present snapshot field to the live member.
template <class Member, class... Rows>
void applyManifestProperties(Member& member, const typename Member::Snapshot& snapshot, const std::tuple<Rows...>& rows) {
  std::apply([&](const auto&... row) { (applyPropertySnapshot(member, row.keyPath, snapshot.*row.field), ...); }, rows);
}

/// Adds kept members to an encoded object: an undeclared one always, a declared one only when
/// the object holds none of that member's keys.
void writeUnknownManifestMembers(JSONValue::Object& object, const JSONValue::Object& unknownMembers,
                                 std::span<const ManifestKeys> declared);

}  // namespace iconwright
