#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "foundation/format/json/JSONReader.hpp"
#include "foundation/format/json/JSONWriter.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/values/EffectValues.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

template <class T>
std::string manifestText(const T& value) {
  return writeJSON(encodeJSON(value), JSONWritingOptions::manifest());
}

template <class T>
T decodeText(std::string_view text) {
  const JSONValue json = parseJSON(text);
  return Decoder(json).decode<T>();
}

DecodingError::Kind decodingErrorKind(const std::function<void()>& read) {
  try {
    read();
  } catch (const DecodingError& error) {
    return error.kind();
  }
  ADD_FAILURE() << "expected a DecodingError";
  return DecodingError::Kind::dataCorrupted;
}

// Blend modes and lighting are string-coded values; shadow kinds code only through JSON.
static_assert(StringEncodable<BlendMode> && StringDecodable<BlendMode>);
static_assert(StringEncodable<Lighting> && StringDecodable<Lighting>);
static_assert(!StringEncodable<Shadow::Kind>);

TEST(BlendMode, TextsFollowDeclarationOrder) {
  struct Row {
    const char* raw;
    const char* display;
  };
  const Row rows[] = {
      {"normal", "Normal"},         {"plus-lighter", "Plus Lighter"}, {"plus-darker", "Plus Darker"},
      {"overlay", "Overlay"},       {"multiply", "Multiply"},         {"soft-light", "Soft Light"},
      {"hard-light", "Hard Light"}, {"darken", "Darken"},             {"lighten", "Lighten"},
      {"screen", "Screen"},
  };
  const auto& cases = EnumTraits<BlendMode>::allCases;
  ASSERT_EQ(cases.size(), std::size(rows));
  for (std::size_t i = 0; i < cases.size(); ++i) {
    SCOPED_TRACE(rows[i].raw);
    EXPECT_EQ(caseIndex(cases[i]), i);
    EXPECT_EQ(rawValue(cases[i]), rows[i].raw);
    EXPECT_EQ(displayName(cases[i]), rows[i].display);
    EXPECT_EQ(blendModeFromCodableString(rows[i].raw), cases[i]);
    EXPECT_EQ(manifestText(cases[i]), std::string("\"") + rows[i].raw + "\"");
    EXPECT_EQ(decodeText<BlendMode>(manifestText(cases[i])), cases[i]);
  }
}

TEST(BlendMode, DisplayOrderedGroupsCoverEveryCaseOnceInMenuOrder) {
  const std::vector<std::vector<BlendMode>> expected{
      {BlendMode::normal},
      {BlendMode::darken, BlendMode::multiply, BlendMode::plusDarker},
      {BlendMode::lighten, BlendMode::screen, BlendMode::plusLighter},
      {BlendMode::overlay, BlendMode::softLight, BlendMode::hardLight},
  };
  EXPECT_EQ(blendModeDisplayOrderedGroups(), expected);
  std::set<BlendMode> seen;
  for (const auto& group : blendModeDisplayOrderedGroups()) seen.insert(group.begin(), group.end());
  EXPECT_EQ(seen.size(), EnumTraits<BlendMode>::allCases.size());
}

TEST(StringCodedEnums, UnknownTextsFailWithTheListOfCodableStrings) {
  const std::string blendMessage =
      "BlendMode must be one of \u201Cnormal\u201D, \u201Cplus-lighter\u201D, \u201Cplus-darker\u201D, "
      "\u201Coverlay\u201D, \u201Cmultiply\u201D, \u201Csoft-light\u201D, \u201Chard-light\u201D, "
      "\u201Cdarken\u201D, \u201Clighten\u201D or \u201Cscreen\u201D";
  const std::string lightingMessage = "Lighting must be one of \u201Cindividual\u201D or \u201Ccombined\u201D";
  for (const char* text : {"Normal", "", "plus lighter", "normal "}) {
    SCOPED_TRACE(text);
    EXPECT_THROW_MESSAGE((void)blendModeFromCodableString(text), MessageError, blendMessage);
  }
  for (const char* text : {"Combined", "individually", ""}) {
    SCOPED_TRACE(text);
    EXPECT_THROW_MESSAGE((void)lightingFromCodableString(text), MessageError, lightingMessage);
  }
  // Through JSON the message passes unchanged; a value that is not a string is the decoder's.
  EXPECT_THROW_MESSAGE((void)decodeText<BlendMode>("\"Normal\""), MessageError, blendMessage);
  EXPECT_THROW_MESSAGE((void)decodeText<Lighting>("\"Individual\""), MessageError, lightingMessage);
  EXPECT_EQ(decodingErrorKind([] { (void)decodeText<BlendMode>(R"({"normal": {}})"); }),
            DecodingError::Kind::typeMismatch);
  EXPECT_EQ(decodingErrorKind([] { (void)decodeText<Lighting>("1"); }), DecodingError::Kind::typeMismatch);
  EXPECT_EQ(decodingErrorKind([] { (void)decodeText<BlendMode>("null"); }), DecodingError::Kind::valueNotFound);
}

TEST(Lighting, Texts) {
  ASSERT_EQ(EnumTraits<Lighting>::allCases.size(), 2u);
  EXPECT_EQ(EnumTraits<Lighting>::allCases[0], Lighting::individual);
  EXPECT_EQ(rawValue(Lighting::individual), "individual");
  EXPECT_EQ(displayName(Lighting::individual), "Individual");
  EXPECT_EQ(rawValue(Lighting::combined), "combined");
  EXPECT_EQ(displayName(Lighting::combined), "Combined");
  EXPECT_EQ(decodeText<Lighting>("\"combined\""), Lighting::combined);
  EXPECT_EQ(manifestText(Lighting::combined), "\"combined\"");
}

TEST(Shadow, KindTextsDifferOnScreenAndInFiles) {
  struct Row {
    Shadow::Kind kind;
    const char* raw;
    const char* display;
  };
  const Row rows[] = {
      {Shadow::Kind::automatic, "automatic", "Automatic"},
      {Shadow::Kind::neutral, "neutral", "Neutral"},
      {Shadow::Kind::layerColor, "layer-color", "Chromatic"},
      {Shadow::Kind::none, "none", "Off"},
  };
  ASSERT_EQ(EnumTraits<Shadow::Kind>::allCases.size(), std::size(rows));
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    SCOPED_TRACE(rows[i].raw);
    EXPECT_EQ(EnumTraits<Shadow::Kind>::allCases[i], rows[i].kind);
    EXPECT_EQ(rawValue(rows[i].kind), rows[i].raw);
    EXPECT_EQ(displayName(rows[i].kind), rows[i].display);
  }
  // The display text is not a file text.
  try {
    (void)decodeText<Shadow>(R"({"kind": "chromatic", "opacity": 0.5})");
    FAIL() << "expected a decoding error";
  } catch (const DecodingError& error) {
    EXPECT_EQ(error.kind(), DecodingError::Kind::dataCorrupted);
    EXPECT_EQ(describeCodingPath(error.codingPath()), "kind");
    EXPECT_NE(std::string(error.what()).find("chromatic"), std::string::npos) << error.what();
  }
}

TEST(EffectValues, DefaultsAndConstants) {
  EXPECT_EQ(BlurMaterial(), BlurMaterial::initial);
  EXPECT_EQ(BlurMaterial::initial, BlurMaterial(false, 0.5));
  EXPECT_EQ(BlurMaterial::zero, BlurMaterial(false, 0.0));
  EXPECT_EQ(BlurMaterial(0.3), BlurMaterial(true, 0.3));
  EXPECT_EQ(Shadow(), Shadow::initial);
  EXPECT_EQ(Shadow::initial, (Shadow{Shadow::Kind::neutral, 0.5}));
  EXPECT_EQ(Translucency(), Translucency::initial);
  EXPECT_EQ(Translucency::initial, (Translucency{true, 0.5}));
  EXPECT_EQ(AssetMirroring().mirrorable, std::nullopt);
}

TEST(EffectValues, EqualityAndHashingSeeEveryField) {
  EXPECT_NE(BlurMaterial(true, 0.5), BlurMaterial::initial);
  EXPECT_NE(BlurMaterial(false, 0.8), BlurMaterial::initial);
  EXPECT_NE((Shadow{Shadow::Kind::none, 0.5}), Shadow::initial);
  EXPECT_NE((Shadow{Shadow::Kind::neutral, 0.6}), Shadow::initial);
  EXPECT_NE((Translucency{false, 0.5}), Translucency::initial);
  EXPECT_NE(AssetMirroring{false}, AssetMirroring{});
  EXPECT_NE(AssetMirroring{false}, AssetMirroring{true});
  EXPECT_EQ(std::hash<Shadow>{}(Shadow::initial), std::hash<Shadow>{}(Shadow{}));
  EXPECT_NE(std::hash<Shadow>{}(Shadow::initial), std::hash<Shadow>{}(Shadow{Shadow::Kind::none, 0.5}));
  EXPECT_NE(std::hash<BlurMaterial>{}(BlurMaterial::initial), std::hash<BlurMaterial>{}(BlurMaterial(0.5)));
  EXPECT_NE(std::hash<Translucency>{}(Translucency::initial), std::hash<Translucency>{}(Translucency{true, 0.6}));
}

TEST(AssetMirroring, EffectiveValueFallsBackOnlyWhenAbsent) {
  for (bool inherited : {false, true}) {
    SCOPED_TRACE(inherited);
    EXPECT_EQ(AssetMirroring{}.effectiveIsMirrorable(inherited), inherited);
    EXPECT_TRUE(AssetMirroring{true}.effectiveIsMirrorable(inherited));
    EXPECT_FALSE(AssetMirroring{false}.effectiveIsMirrorable(inherited));
  }
}

TEST(BlurMaterial, EffectiveStrengthKeepsTheStrengthWhileOff) {
  EXPECT_EQ(BlurMaterial(0.8).effectiveStrength(), 0.8);
  EXPECT_EQ(BlurMaterial(false, 0.8).effectiveStrength(), 0.0);
  EXPECT_EQ(BlurMaterial(false, 0.8).explicitStrength, 0.8);
}

TEST(EffectValues, WriteTheirExactJSONForms) {
  struct Row {
    const char* label;
    std::function<std::string()> write;
    const char* expected;
  };
  const Row rows[] = {
      {"mirroring absent", [] { return manifestText(AssetMirroring{}); }, "{\n\n}"},
      {"mirroring true", [] { return manifestText(AssetMirroring{true}); }, "{\n  \"mirrorable\" : true\n}"},
      {"mirroring false", [] { return manifestText(AssetMirroring{false}); }, "{\n  \"mirrorable\" : false\n}"},
      {"blur enabled", [] { return manifestText(BlurMaterial(0.5)); }, "0.5"},
      {"blur integral", [] { return manifestText(BlurMaterial(1.0)); }, "1"},
      {"blur disabled", [] { return manifestText(BlurMaterial(false, 0.8)); }, "null"},
      {"shadow", [] { return manifestText(Shadow{Shadow::Kind::layerColor, 1.62}); },
       "{\n  \"kind\" : \"layer-color\",\n  \"opacity\" : 1.62\n}"},
      {"shadow off", [] { return manifestText(Shadow{Shadow::Kind::none, 0}); },
       "{\n  \"kind\" : \"none\",\n  \"opacity\" : 0\n}"},
      {"translucency", [] { return manifestText(Translucency{false, 0.84}); },
       "{\n  \"enabled\" : false,\n  \"value\" : 0.84\n}"},
      {"blend mode", [] { return manifestText(BlendMode::plusLighter); }, "\"plus-lighter\""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(row.write(), row.expected);
  }
}

TEST(EffectValues, ReadEveryFormAsItStands) {
  EXPECT_EQ(decodeText<AssetMirroring>("{}"), AssetMirroring{});
  EXPECT_EQ(decodeText<AssetMirroring>(R"({"mirrorable": null})"), AssetMirroring{});
  EXPECT_EQ(decodeText<AssetMirroring>(R"({"mirrorable": false})"), AssetMirroring{false});
  EXPECT_EQ(decodeText<BlurMaterial>("0.25"), BlurMaterial(true, 0.25));
  EXPECT_EQ(decodeText<BlurMaterial>("1"), BlurMaterial(true, 1.0));
  EXPECT_EQ(decodeText<BlurMaterial>("null"), BlurMaterial::initial);
  // No range checks.
  EXPECT_EQ(decodeText<Shadow>(R"({"kind": "automatic", "opacity": -1})"), (Shadow{Shadow::Kind::automatic, -1}));
  EXPECT_EQ(decodeText<Shadow>(R"({"opacity": 1.62, "kind": "layer-color"})"),
            (Shadow{Shadow::Kind::layerColor, 1.62}));
  EXPECT_EQ(decodeText<Translucency>(R"({"enabled": false, "value": 7})"), (Translucency{false, 7}));
}

TEST(BlurMaterial, DisabledLosesItsStrengthInJSON) {
  const BlurMaterial saved(false, 0.8);
  const BlurMaterial read = decodeText<BlurMaterial>(manifestText(saved));
  EXPECT_EQ(read, BlurMaterial(false, 0.5));
  EXPECT_NE(read, saved);
  EXPECT_EQ(read.effectiveStrength(), 0.0);
  EXPECT_EQ(saved.effectiveStrength(), 0.0);
}

TEST(EffectValues, MalformedJSONFailsThroughTheDecoder) {
  struct Row {
    const char* label;
    std::function<void()> read;
    DecodingError::Kind kind;
  };
  const Row rows[] = {
      {"shadow without opacity", [] { (void)decodeText<Shadow>(R"({"kind": "neutral"})"); },
       DecodingError::Kind::keyNotFound},
      {"shadow kind not a string", [] { (void)decodeText<Shadow>(R"({"kind": 1, "opacity": 1})"); },
       DecodingError::Kind::typeMismatch},
      {"shadow as a string", [] { (void)decodeText<Shadow>(R"("neutral")"); }, DecodingError::Kind::typeMismatch},
      {"translucency without value", [] { (void)decodeText<Translucency>(R"({"enabled": false})"); },
       DecodingError::Kind::keyNotFound},
      {"translucency enabled as a number", [] { (void)decodeText<Translucency>(R"({"enabled": 1, "value": 1})"); },
       DecodingError::Kind::typeMismatch},
      {"blur as a string", [] { (void)decodeText<BlurMaterial>(R"("0.5")"); }, DecodingError::Kind::typeMismatch},
      {"blur as an object", [] { (void)decodeText<BlurMaterial>(R"({"enabled": true})"); },
       DecodingError::Kind::typeMismatch},
      {"mirroring as a boolean", [] { (void)decodeText<AssetMirroring>("true"); }, DecodingError::Kind::typeMismatch},
      {"mirrorable as a string", [] { (void)decodeText<AssetMirroring>(R"({"mirrorable": "yes"})"); },
       DecodingError::Kind::typeMismatch},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(decodingErrorKind(row.read), row.kind);
  }
}

}  // namespace
}  // namespace iconwright
