#include "foundation/format/ManifestMembers.hpp"

#include <algorithm>
#include <array>

namespace iconwright {

namespace {

// The format features this version implements. A document naming any other one was written
// by a newer version.
constexpr std::array<std::string_view, 0> knownFormatFeatures{};

/// Room for the keys one manifest object declares, so that declaring them allocates once.
constexpr std::size_t typicalDeclaredKeyCount = 48;

}  // namespace

bool namesUnknownFormatFeatures(const Decoder& root) {
  const JSONValue* features = root.json().find("features");
  if (features == nullptr || !features->isArray()) return false;
  return std::ranges::any_of(features->arrayValue(), [](const JSONValue& feature) {
    return feature.isString() && std::ranges::find(knownFormatFeatures, feature.stringValue()) == knownFormatFeatures.end();
  });
}

ManifestObjectReader::ManifestObjectReader(const Decoder& decoder, bool keepsUndecodableMembers)
    : decoder_(decoder), keepsUndecodableMembers_(keepsUndecodableMembers) {
  decoder_.requireObject();
  declared_.reserve(typicalDeclaredKeyCount);
}

void ManifestObjectReader::declare(const ManifestKeys& keys) {
  declared_.push_back(keys.key);
  if (!keys.pluralKey.empty()) declared_.push_back(keys.pluralKey);
}

JSONValue::Object ManifestObjectReader::unknownMembers() const {
  JSONValue::Object members = kept_;
  for (const auto& [key, value] : decoder_.json().objectValue()) {
    if (std::ranges::find(declared_, key) == declared_.end()) members.emplace(key, value);
  }
  return members;
}

void writeUnknownManifestMembers(JSONValue::Object& object, const JSONValue::Object& unknownMembers,
                                 std::span<const ManifestKeys> declared) {
  for (const auto& member : unknownMembers) {
    const std::string& key = member.first;
    const JSONValue& value = member.second;
    const auto keys = std::ranges::find_if(
        declared, [&](const ManifestKeys& entry) { return entry.key == key || (!entry.pluralKey.empty() && entry.pluralKey == key); });
    if (keys != declared.end()) {
      if (object.contains(keys->key) || (!keys->pluralKey.empty() && object.contains(keys->pluralKey))) continue;
    }
    object.emplace(key, value);
  }
}

}  // namespace iconwright
