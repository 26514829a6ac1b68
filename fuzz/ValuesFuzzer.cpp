// The JSON forms of the property values and the platform choices that documents and the
// pasteboard hand in: fills, colours, the effect values, positions, supported platforms,
// localizations and the enumerations stored as strings. The same JSON is offered to every
// type. Each either decodes or throws DecodingError or MessageError; what decodes encodes
// again, and that encoding is a fixed point of decoding and encoding once more (encodings
// drop what a kind does not use, so the values themselves need not come back equal).
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "foundation/json/DecodingError.hpp"
#include "foundation/json/JSONCoding.hpp"
#include "foundation/json/JSONReader.hpp"
#include "foundation/json/JSONWriter.hpp"
#include "foundation/json/KeyedValues.hpp"
#include "foundation/platforms/Localization.hpp"
#include "foundation/platforms/Platform.hpp"
#include "foundation/platforms/Rendition.hpp"
#include "foundation/platforms/SupportedPlatforms.hpp"
#include "foundation/specialization/Appearance.hpp"
#include "foundation/specialization/Idiom.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/values/Color.hpp"
#include "foundation/values/EffectValues.hpp"
#include "foundation/values/Fill.hpp"
#include "foundation/values/PasteboardProperty.hpp"
#include "foundation/values/Position.hpp"
#include "foundation/values/SystemColorName.hpp"
#include "fuzz/FuzzSupport.hpp"

using namespace iconwright;

namespace {

/// Decodes with `decode`, encodes with `encode`, and checks the encoding's fixed point.
template <class T, class Decode, class Encode, class Use>
void attemptWith(const JSONValue& json, const char* type, Decode decode, Encode encode, Use use) {
  std::optional<T> value;
  try {
    value = decode(Decoder(json));
  } catch (const DecodingError& error) {
    FUZZ_CHECK(std::string(error.what()).size() > 0, "an empty decoding error");
    return;
  } catch (const MessageError& error) {
    FUZZ_CHECK(!error.message().empty(), "an empty message");
    return;
  }
  const JSONValue encoded = encode(*value);
  std::optional<T> again;
  try {
    again = decode(Decoder(encoded));
  } catch (const std::exception& error) {
    FUZZ_CHECK(false, std::string(type) + " does not read its own encoding: " + error.what());
  }
  FUZZ_CHECK(encode(*again) == encoded, std::string(type) + " encodes differently after a round trip");
  use(*value);
}

template <class T, class Use>
void attempt(const JSONValue& json, const char* type, Use use) {
  attemptWith<T>(
      json, type, [](const Decoder& decoder) { return decoder.decode<T>(); },
      [](const T& value) { return encodeJSON(value); }, use);
}

template <class T>
void attempt(const JSONValue& json, const char* type) {
  attempt<T>(json, type, [](const T&) {});
}

void useSupportedPlatforms(const SupportedPlatforms& supported) {
  (void)supported.selectablePlatforms();
  (void)supported.platformForWorkspacePreviews();
  for (const Platform platform : EnumTraits<Platform>::allCases) {
    const auto nearest = supported.nearestValidPlatform(platform);
    if (nearest) FUZZ_CHECK(supported.isValidPlatform(*nearest), "the nearest valid platform is not valid");
    (void)supported.displayName(platform);
    (void)idiom(platform, supported);
  }
}

void useLocalization(const Localization& localization) {
  (void)localization.fileNameComponent();
  (void)localization.displayName();
  (void)localization.semiQualifiedDisplayName();
  (void)localization.description();
  (void)std::hash<Localization>{}(localization);
  if (const auto language = localization.languageID()) {
    (void)language->lprojName();
    (void)language->languageCode();
    (void)language->characterDirection();
    (void)language->displayName("en");
    (void)Localization::LanguageID::allowedLanguageIDs().contains(*language);
    // Any text is a language to the decoder, also "" and "a/b", which name no directory.
    const std::string& id = language->localeID();
    if (!id.empty() && id.find('/') == std::string::npos) {
      const auto back = Localization::LanguageID::fromLprojDirectoryName(language->lprojName());
      FUZZ_CHECK(back && *back == *language, "the lproj name does not give the language back: " + id);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  JSONValue json;
  try {
    json = parseJSON(fuzz::textOf(data, size));
  } catch (const DecodingError&) {
    return 0;
  }

  attempt<SupportedPlatforms>(json, "SupportedPlatforms", useSupportedPlatforms);
  attemptWith<SupportedPlatforms::Squares>(
      json, "SupportedPlatforms::Squares", SupportedPlatforms::Squares::decodeKeyedJSON,
      [](const SupportedPlatforms::Squares& squares) { return squares.encodeKeyedJSON(); },
      [](const SupportedPlatforms::Squares& squares) { (void)squares.fallbackPlatform(); });
  attemptWith<SupportedPlatforms::Circles>(
      json, "SupportedPlatforms::Circles", SupportedPlatforms::Circles::decodeKeyedJSON,
      [](const SupportedPlatforms::Circles& circles) { return circles.encodeKeyedJSON(); },
      [](const SupportedPlatforms::Circles& circles) { (void)circles.fallbackPlatform(); });
  attempt<Fill>(json, "Fill", [](const Fill& fill) { (void)std::hash<Fill>{}(fill); });
  attempt<Fill::Orientation>(json, "Fill::Orientation");
  attempt<Color>(json, "Color", [](const Color& color) { (void)color.luminance(); });
  attempt<AssetMirroring>(json, "AssetMirroring");
  attempt<BlendMode>(json, "BlendMode", [](BlendMode mode) { (void)displayName(mode); });
  attempt<BlurMaterial>(json, "BlurMaterial");
  attempt<Lighting>(json, "Lighting");
  attempt<Shadow>(json, "Shadow");
  attempt<Shadow::Kind>(json, "Shadow::Kind");
  attempt<Translucency>(json, "Translucency");
  attempt<Position>(json, "Position");
  attempt<Localization>(json, "Localization", useLocalization);
  attempt<Localization::LanguageID>(json, "Localization::LanguageID");
  attempt<Platform>(json, "Platform");
  attempt<Rendition>(json, "Rendition");
  attempt<Idiom>(json, "Idiom");
  attempt<Appearance>(json, "Appearance");
  attempt<SystemColorName>(json, "SystemColorName");
  attempt<std::vector<Fill>>(json, "[Fill]");
  attempt<PasteboardProperty<Shadow>>(json, "PasteboardProperty<Shadow>");
  return 0;
}
