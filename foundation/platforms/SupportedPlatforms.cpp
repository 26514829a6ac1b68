#include "foundation/platforms/SupportedPlatforms.hpp"

#include <algorithm>
#include <initializer_list>

#include "foundation/support/ListJoining.hpp"
#include "foundation/support/MessageError.hpp"

namespace iconwright {

namespace {

constexpr std::string_view squaresKey = "squares";
constexpr std::string_view circlesKey = "circles";
constexpr std::string_view sharedText = "shared";
constexpr std::string_view sharedCase = "shared";
constexpr std::string_view uniqueCase = "unique";

JSONValue platformArray(std::initializer_list<std::pair<Platform, bool>> flags) {
  JSONValue array = JSONValue::emptyArray();
  for (const auto& [platform, isSet] : flags) {
    if (isSet) array.append(JSONCoding<Platform>::encode(platform));
  }
  return array;
}

// The platforms named by an array, or absent when the value is not an array of platform names.
std::optional<std::vector<Platform>> decodePlatformArray(const Decoder& decoder) {
  try {
    return decoder.decode<std::vector<Platform>>();
  } catch (const DecodingError&) {
    return std::nullopt;
  } catch (const MessageError&) {
    return std::nullopt;
  }
}

// A document group: absent gives no platform, an array names the set platforms of the group,
// a string must be "shared". Returns the named platforms, or absent for shared.
std::optional<std::vector<Platform>> decodeGroup(const Decoder& decoder, std::string_view key,
                                                 std::initializer_list<Platform> members) {
  if (!decoder.contains(key)) return std::vector<Platform>{};
  const Decoder value = decoder[key];
  if (auto platforms = decodePlatformArray(value)) {
    const bool allMembers = std::all_of(platforms->begin(), platforms->end(), [&](Platform p) {
      return std::find(members.begin(), members.end(), p) != members.end();
    });
    if (!allMembers) throw MessageError("Invalid encoding of supported platforms - unknown platform values.");
    return platforms;
  }
  const std::string text = value.decodeString();
  if (text != sharedText) throw MessageError("Invalid encoding of supported platforms: " + quoted(text));
  return std::nullopt;
}

bool names(const std::vector<Platform>& platforms, Platform platform) {
  return std::find(platforms.begin(), platforms.end(), platform) != platforms.end();
}

// The case of a keyed union: exactly one of "shared" and "unique" must be present.
std::string_view keyedCase(const Decoder& decoder) {
  decoder.requireObject();
  const bool hasShared = decoder.contains(sharedCase);
  const bool hasUnique = decoder.contains(uniqueCase);
  if (hasShared == hasUnique) {
    throw DecodingError(DecodingError::Kind::typeMismatch, decoder.codingPath(),
                        "Invalid number of keys found, expected one");
  }
  return hasShared ? sharedCase : uniqueCase;
}

JSONValue keyedShared() {
  JSONValue object = JSONValue::emptyObject();
  object.set(std::string(sharedCase), JSONValue::emptyObject());
  return object;
}

JSONValue keyedUnique(JSONValue flags) {
  JSONValue object = JSONValue::emptyObject();
  object.set(std::string(uniqueCase), std::move(flags));
  return object;
}

}  // namespace

// Squares

std::vector<Platform> SupportedPlatforms::Squares::selectablePlatforms() const {
  if (isShared()) return {Platform::iOS};
  const Unique flags = *uniqueFlags();
  std::vector<Platform> result;
  if (flags.iOS) result.push_back(Platform::iOS);
  if (flags.macOS) result.push_back(Platform::macOS);
  return result;
}

std::optional<Platform> SupportedPlatforms::Squares::fallbackPlatform() const {
  if (isShared() || uniqueFlags()->iOS) return Platform::iOS;
  if (uniqueFlags()->macOS) return Platform::macOS;
  return std::nullopt;
}

bool SupportedPlatforms::Squares::isValid(Platform platform) const {
  switch (platform) {
    case Platform::iOS: return isShared() || uniqueFlags()->iOS;
    case Platform::macOS: return isShared() || uniqueFlags()->macOS;
    case Platform::watchOS: return false;
  }
  return false;
}

JSONValue SupportedPlatforms::Squares::encodeKeyedJSON() const {
  if (isShared()) return keyedShared();
  JSONValue flags = JSONValue::emptyObject();
  flags.set("iOS", uniqueFlags()->iOS);
  flags.set("macOS", uniqueFlags()->macOS);
  return keyedUnique(std::move(flags));
}

SupportedPlatforms::Squares SupportedPlatforms::Squares::decodeKeyedJSON(const Decoder& decoder) {
  if (keyedCase(decoder) == sharedCase) {
    decoder[sharedCase].requireObject();
    return shared();
  }
  const Decoder flags = decoder[uniqueCase];
  flags.requireObject();
  return unique(flags.decode<bool>("iOS"), flags.decode<bool>("macOS"));
}

// Circles

std::vector<Platform> SupportedPlatforms::Circles::selectablePlatforms() const {
  if (isShared() || uniqueFlags()->watchOS) return {Platform::watchOS};
  return {};
}

std::optional<Platform> SupportedPlatforms::Circles::fallbackPlatform() const {
  if (isShared() || uniqueFlags()->watchOS) return Platform::watchOS;
  return std::nullopt;
}

bool SupportedPlatforms::Circles::isValid(Platform platform) const {
  return platform == Platform::watchOS && (isShared() || uniqueFlags()->watchOS);
}

JSONValue SupportedPlatforms::Circles::encodeKeyedJSON() const {
  if (isShared()) return keyedShared();
  JSONValue flags = JSONValue::emptyObject();
  flags.set("watchOS", uniqueFlags()->watchOS);
  return keyedUnique(std::move(flags));
}

SupportedPlatforms::Circles SupportedPlatforms::Circles::decodeKeyedJSON(const Decoder& decoder) {
  if (keyedCase(decoder) == sharedCase) {
    decoder[sharedCase].requireObject();
    return shared();
  }
  const Decoder flags = decoder[uniqueCase];
  flags.requireObject();
  return unique(flags.decode<bool>("watchOS"));
}

// SupportedPlatforms

std::vector<Platform> SupportedPlatforms::selectablePlatforms() const {
  std::vector<Platform> result = squares.selectablePlatforms();
  for (Platform platform : circles.selectablePlatforms()) result.push_back(platform);
  return result;
}

bool SupportedPlatforms::isValidPlatform(Platform platform) const {
  return platform == Platform::watchOS ? circles.isValid(platform) : squares.isValid(platform);
}

std::optional<Platform> SupportedPlatforms::nearestValidPlatform(Platform platform) const {
  const bool iOS = squares.isValid(Platform::iOS);
  const bool macOS = squares.isValid(Platform::macOS);
  const bool watchOS = circles.isValid(Platform::watchOS);
  switch (platform) {
    case Platform::iOS:
      if (iOS) return Platform::iOS;
      if (macOS) return Platform::macOS;
      break;
    case Platform::macOS:
      if (macOS) return Platform::macOS;
      if (iOS) return Platform::iOS;
      break;
    case Platform::watchOS:
      if (watchOS) return Platform::watchOS;
      if (iOS) return Platform::iOS;
      if (macOS) return Platform::macOS;
      return std::nullopt;
  }
  if (watchOS) return Platform::watchOS;
  return std::nullopt;
}

std::optional<Platform> SupportedPlatforms::platformForWorkspacePreviews() const {
  for (Platform platform : {Platform::macOS, Platform::iOS, Platform::watchOS}) {
    if (isValidPlatform(platform)) return platform;
  }
  return std::nullopt;
}

std::string SupportedPlatforms::displayName(Platform platform) const {
  if (platform != Platform::watchOS && squares.isShared()) return "iOS, macOS";
  return std::string(iconwright::displayName(platform));
}

JSONValue SupportedPlatforms::encodeJSON() const {
  JSONValue object = JSONValue::emptyObject();
  if (squares.isShared()) {
    object.set(std::string(squaresKey), sharedText);
  } else if (const auto flags = *squares.uniqueFlags(); flags.iOS || flags.macOS) {
    object.set(std::string(squaresKey), platformArray({{Platform::iOS, flags.iOS}, {Platform::macOS, flags.macOS}}));
  }
  if (circles.isShared()) {
    object.set(std::string(circlesKey), sharedText);
  } else if (circles.uniqueFlags()->watchOS) {
    object.set(std::string(circlesKey), platformArray({{Platform::watchOS, true}}));
  }
  return object;
}

SupportedPlatforms SupportedPlatforms::decodeJSON(const Decoder& decoder) {
  decoder.requireObject();
  SupportedPlatforms result;
  if (auto named = decodeGroup(decoder, squaresKey, {Platform::iOS, Platform::macOS})) {
    result.squares = Squares::unique(names(*named, Platform::iOS), names(*named, Platform::macOS));
  } else {
    result.squares = Squares::shared();
  }
  if (auto named = decodeGroup(decoder, circlesKey, {Platform::watchOS})) {
    result.circles = Circles::unique(names(*named, Platform::watchOS));
  } else {
    result.circles = Circles::shared();
  }
  return result;
}

Idiom idiom(Platform platform, const SupportedPlatforms& supported) {
  if (platform != Platform::watchOS && supported.squares.isShared()) return Idiom::square;
  return idiomIgnoringSupportedPlatforms(platform);
}

}  // namespace iconwright

std::size_t std::hash<iconwright::SupportedPlatforms>::operator()(const iconwright::SupportedPlatforms& value) const noexcept {
  const auto squares = value.squares.uniqueFlags();
  const auto circles = value.circles.uniqueFlags();
  return iconwright::hashFields(squares.has_value(), squares && squares->iOS, squares && squares->macOS,
                                circles.has_value(), circles && circles->watchOS);
}
