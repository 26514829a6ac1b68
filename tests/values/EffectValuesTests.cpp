#include <gtest/gtest.h>

#include "foundation/support/MessageError.hpp"
#include "foundation/values/EffectValues.hpp"
#include "tests/common/TestSupport.hpp"
#include "tests/values/ValueCodingSupport.hpp"

namespace iconwright {
namespace {

using testing::decodeText;
using testing::expectDecodingError;
using testing::manifestText;

// Blend modes and lighting are string-coded values; shadow kinds code only through JSON.
static_assert(StringEncodable<BlendMode> && StringDecodable<BlendMode>);
static_assert(StringEncodable<Lighting> && StringDecodable<Lighting>);
static_assert(!StringEncodable<Shadow::Kind>);
// Constants, and defaults that equal them.
static_assert(BlurMaterial() == BlurMaterial::initial && BlurMaterial::initial == BlurMaterial(false, 0.5));
static_assert(BlurMaterial::zero == BlurMaterial(false, 0) && BlurMaterial(0.3) == BlurMaterial(true, 0.3));
static_assert(Shadow() == Shadow::initial && Shadow::initial == Shadow{Shadow::Kind::neutral, 0.5});
static_assert(Translucency() == Translucency::initial && Translucency::initial == Translucency{true, 0.5});
// The strength is kept while the blur is off.
static_assert(BlurMaterial(false, 0.8).effectiveStrength() == 0 && BlurMaterial(0.8).effectiveStrength() == 0.8);
// A stored mirroring wins over the inherited one.
static_assert(AssetMirroring{}.effectiveIsMirrorable(true) && !AssetMirroring{}.effectiveIsMirrorable(false));
static_assert(!AssetMirroring{false}.effectiveIsMirrorable(true) && AssetMirroring{true}.effectiveIsMirrorable(false));

template <class E>
void expectTexts(const std::vector<std::pair<const char*, const char*>>& rawAndDisplay) {
  ASSERT_EQ(EnumTraits<E>::allCases.size(), rawAndDisplay.size());
  for (std::size_t i = 0; i < rawAndDisplay.size(); ++i) {
    const E value = EnumTraits<E>::allCases[i];
    SCOPED_TRACE(rawAndDisplay[i].first);
    EXPECT_EQ(caseIndex(value), i);
    EXPECT_EQ(rawValue(value), rawAndDisplay[i].first);
    EXPECT_EQ(displayName(value), rawAndDisplay[i].second);
    EXPECT_EQ(manifestText(value), "\"" + std::string(rawAndDisplay[i].first) + "\"");
    EXPECT_EQ(decodeText<E>(manifestText(value)), value);
  }
}

TEST(EffectEnums, TextsInDeclarationOrder) {
  expectTexts<BlendMode>({{"normal", "Normal"},
                          {"plus-lighter", "Plus Lighter"},
                          {"plus-darker", "Plus Darker"},
                          {"overlay", "Overlay"},
                          {"multiply", "Multiply"},
                          {"soft-light", "Soft Light"},
                          {"hard-light", "Hard Light"},
                          {"darken", "Darken"},
                          {"lighten", "Lighten"},
                          {"screen", "Screen"}});
  expectTexts<Lighting>({{"individual", "Individual"}, {"combined", "Combined"}});
  expectTexts<Shadow::Kind>(
      {{"automatic", "Automatic"}, {"neutral", "Neutral"}, {"layer-color", "Chromatic"}, {"none", "Off"}});
}

TEST(BlendMode, DisplayOrderedGroupsAreTheMenuOrder) {
  const std::vector<std::vector<BlendMode>> expected{
      {BlendMode::normal},
      {BlendMode::darken, BlendMode::multiply, BlendMode::plusDarker},
      {BlendMode::lighten, BlendMode::screen, BlendMode::plusLighter},
      {BlendMode::overlay, BlendMode::softLight, BlendMode::hardLight},
  };
  EXPECT_EQ(blendModeDisplayOrderedGroups(), expected);
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
  EXPECT_THROW_MESSAGE((void)lightingFromCodableString("Combined"), MessageError, lightingMessage);
  // Through JSON the message passes unchanged; a value that is not a string is the decoder's.
  EXPECT_THROW_MESSAGE((void)decodeText<BlendMode>("\"Normal\""), MessageError, blendMessage);
  EXPECT_THROW_MESSAGE((void)decodeText<Lighting>("\"Individual\""), MessageError, lightingMessage);
  expectDecodingError([] { (void)decodeText<BlendMode>(R"({"normal": {}})"); }, DecodingError::Kind::typeMismatch, "");
  expectDecodingError([] { (void)decodeText<Lighting>("null"); }, DecodingError::Kind::valueNotFound, "");
}

TEST(EffectValues, WriteTheirExactJSONForms) {
  EXPECT_EQ(manifestText(AssetMirroring{}), "{\n\n}");
  EXPECT_EQ(manifestText(AssetMirroring{true}), "{\n  \"mirrorable\" : true\n}");
  EXPECT_EQ(manifestText(AssetMirroring{false}), "{\n  \"mirrorable\" : false\n}");
  EXPECT_EQ(manifestText(BlurMaterial(0.5)), "0.5");
  EXPECT_EQ(manifestText(BlurMaterial(1.0)), "1");
  EXPECT_EQ(manifestText(BlurMaterial(false, 0.8)), "null");
  EXPECT_EQ(manifestText(Shadow{Shadow::Kind::layerColor, 1.62}),
            "{\n  \"kind\" : \"layer-color\",\n  \"opacity\" : 1.62\n}");
  EXPECT_EQ(manifestText(Translucency{false, 0.84}), "{\n  \"enabled\" : false,\n  \"value\" : 0.84\n}");
}

TEST(EffectValues, ReadTheirJSONFormsAsTheyStand) {
  EXPECT_EQ(decodeText<AssetMirroring>("{}"), AssetMirroring{});
  EXPECT_EQ(decodeText<AssetMirroring>(R"({"mirrorable": null})"), AssetMirroring{});
  EXPECT_EQ(decodeText<AssetMirroring>(R"({"mirrorable": false})"), AssetMirroring{false});
  EXPECT_EQ(decodeText<BlurMaterial>("1"), BlurMaterial(true, 1.0));
  EXPECT_EQ(decodeText<Shadow>(R"({"opacity": -1, "kind": "automatic"})"), (Shadow{Shadow::Kind::automatic, -1}));
  EXPECT_EQ(decodeText<Translucency>(R"({"enabled": false, "value": 7})"), (Translucency{false, 7}));
  // A disabled blur loses its strength on the way through JSON.
  const BlurMaterial saved(false, 0.8);
  EXPECT_EQ(decodeText<BlurMaterial>(manifestText(saved)), BlurMaterial::initial);
}

TEST(EffectValues, MalformedJSONFailsThroughTheDecoder) {
  using Kind = DecodingError::Kind;
  struct Row {
    const char* label;
    std::function<void()> read;
    Kind kind;
    const char* path;
  };
  const Row rows[] = {
      {"display text as shadow kind", [] { (void)decodeText<Shadow>(R"({"kind": "chromatic", "opacity": 1})"); },
       Kind::dataCorrupted, "kind"},
      {"shadow without opacity", [] { (void)decodeText<Shadow>(R"({"kind": "neutral"})"); }, Kind::keyNotFound, ""},
      {"shadow as a string", [] { (void)decodeText<Shadow>(R"("neutral")"); }, Kind::typeMismatch, ""},
      {"translucency without value", [] { (void)decodeText<Translucency>(R"({"enabled": false})"); },
       Kind::keyNotFound, ""},
      {"enabled as a number", [] { (void)decodeText<Translucency>(R"({"enabled": 1, "value": 1})"); },
       Kind::typeMismatch, "enabled"},
      {"blur as a string", [] { (void)decodeText<BlurMaterial>(R"("0.5")"); }, Kind::typeMismatch, ""},
      {"mirroring as a boolean", [] { (void)decodeText<AssetMirroring>("true"); }, Kind::typeMismatch, ""},
      {"mirrorable as a string", [] { (void)decodeText<AssetMirroring>(R"({"mirrorable": "yes"})"); },
       Kind::typeMismatch, "mirrorable"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    expectDecodingError(row.read, row.kind, row.path);
  }
}

}  // namespace
}  // namespace iconwright
