#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/json/JSONReader.hpp"
#include "foundation/specialization/SpecializationSlotComponent.hpp"
#include "foundation/support/MessageError.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

static_assert(EnumTraits<Idiom>::allCases.size() == 5 && EnumTraits<Appearance>::allCases.size() == 4);
static_assert(SpecializationSlotComponent<Idiom> && SpecializationSlotComponent<Appearance>);
static_assert(!SpecializationSlotComponent<int>);
static_assert(parent(Idiom::base) == std::nullopt && parent(Idiom::square) == Idiom::base &&
              parent(Idiom::iOS) == Idiom::square && parent(Idiom::macOS) == Idiom::square &&
              parent(Idiom::watchOS) == Idiom::base);
static_assert(concreteIdioms == std::array{Idiom::iOS, Idiom::macOS, Idiom::watchOS});
static_assert(logicalCanvasSize().width == 1024.0 && logicalCanvasSize().height == 1024.0);

TEST(Idiom, TextsOfEachCase) {
  struct Row {
    Idiom idiom;
    const char *raw, *file, *display, *semiQualified, *description;
  };
  const Row rows[] = {
      {Idiom::base, "base", "Base", "Base", "Base Icon Shape", ".base"},
      {Idiom::square, "square", "iOS-or-macOS", "iOS / macOS", "iOS / macOS", ".square"},
      {Idiom::iOS, "iOS", "iOS", "iOS", "iOS", ".iOS"},
      {Idiom::macOS, "macOS", "macOS", "macOS", "macOS", ".macOS"},
      {Idiom::watchOS, "watchOS", "watchOS", "watchOS", "watchOS", ".watchOS"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.raw);
    EXPECT_EQ(rawValue(row.idiom), row.raw);
    EXPECT_EQ(fileNameComponent(row.idiom), row.file);
    EXPECT_EQ(displayName(row.idiom), row.display);
    EXPECT_EQ(semiQualifiedDisplayName(row.idiom), row.semiQualified);
    EXPECT_EQ(description(row.idiom), row.description);
    EXPECT_EQ(idiomFromFileNameComponent(row.file), row.idiom);
    EXPECT_EQ(enumFromRawValue<Idiom>(row.raw), row.idiom);
  }
  EXPECT_EQ(SlotComponentTraits<Idiom>::slotName, "Icon Shape");
}

TEST(Appearance, TextsOfEachCase) {
  struct Row {
    Appearance appearance;
    const char *raw, *file, *display, *semiQualified, *description;
  };
  const Row rows[] = {
      {Appearance::base, "base", "Base", "Base", "Base Appearance", ".base"},
      {Appearance::light, "light", "Default", "Default", "Default", ".light"},
      {Appearance::dark, "dark", "Dark", "Dark", "Dark", ".dark"},
      {Appearance::tinted, "tinted", "Mono", "Mono", "Mono", ".tinted"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.raw);
    EXPECT_EQ(rawValue(row.appearance), row.raw);
    EXPECT_EQ(fileNameComponent(row.appearance), row.file);
    EXPECT_EQ(displayName(row.appearance), row.display);
    EXPECT_EQ(semiQualifiedDisplayName(row.appearance), row.semiQualified);
    EXPECT_EQ(description(row.appearance), row.description);
    EXPECT_EQ(appearanceFromFileNameComponent(row.file), row.appearance);
    EXPECT_EQ(parent(row.appearance), row.appearance == Appearance::base ? std::nullopt
                                                                         : std::optional(Appearance::base));
  }
  EXPECT_EQ(SlotComponentTraits<Appearance>::slotName, "Appearance");
  EXPECT_EQ(concreteAppearances, (std::array{Appearance::light, Appearance::dark, Appearance::tinted}));
}

TEST(Idiom, ChildrenAreAbsentForLeavesAndAgreeWithParents) {
  for (Idiom idiom : EnumTraits<Idiom>::allCases) {
    SCOPED_TRACE(rawValue(idiom));
    const auto kids = children(idiom);
    const bool isLeaf = std::find(concreteIdioms.begin(), concreteIdioms.end(), idiom) != concreteIdioms.end();
    EXPECT_EQ(!kids.has_value(), isLeaf);
    if (kids) {
      EXPECT_FALSE(kids->empty());
      for (Idiom child : *kids) EXPECT_EQ(parent(child), idiom);
    }
  }
}

TEST(SlotAxes, FileNameLookupIsExactWithOneAppearanceAlias) {
  EXPECT_EQ(appearanceFromFileNameComponent("Light"), Appearance::light);
  EXPECT_EQ(fileNameComponent(Appearance::light), "Default");
  for (const char* text : {"light", "default", "base", "", "Default ", "LIGHT"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(appearanceFromFileNameComponent(text), std::nullopt);
  }
  for (const char* text : {"ios", "square", "Light", "iOS-or-macOS ", "base"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(idiomFromFileNameComponent(text), std::nullopt);
  }
  EXPECT_EQ(requiredIdiomFromFileNameComponent("iOS-or-macOS"), Idiom::square);
  EXPECT_EQ(requiredAppearanceFromFileNameComponent("Light"), Appearance::light);
}

TEST(SlotAxes, RequiredLookupNamesEveryAlternative) {
  EXPECT_THROW_MESSAGE(requiredIdiomFromFileNameComponent("tvOS"), MessageError,
                       "Unknown idiom name: tvOS. Should be one of “Base”, “iOS-or-macOS”, “iOS”, “macOS” or "
                       "“watchOS”");
  EXPECT_THROW_MESSAGE(requiredAppearanceFromFileNameComponent("light"), MessageError,
                       "Unknown appearance name: light. Should be one of “Base”, “Default”, “Dark” or “Mono”");
}

TEST(SlotAxes, JSONIsTheRawValue) {
  for (Idiom idiom : EnumTraits<Idiom>::allCases) {
    const JSONValue json = encodeJSON(idiom);
    EXPECT_EQ(json, JSONValue(rawValue(idiom)));
    EXPECT_EQ(Decoder(json).decode<Idiom>(), idiom);
  }
  for (Appearance appearance : EnumTraits<Appearance>::allCases) {
    EXPECT_EQ(Decoder(encodeJSON(appearance)).decode<Appearance>(), appearance);
  }
  const JSONValue document = parseJSON(R"({"idiom": "Base", "appearance": 3})");
  EXPECT_THROW_MESSAGE((void)Decoder(document).decode<Idiom>("idiom"), DecodingError,
                       "Cannot initialize Idiom from invalid String value Base at idiom.");
  try {
    (void)Decoder(document).decode<Appearance>("appearance");
    ADD_FAILURE() << "a number is not an appearance";
  } catch (const DecodingError& error) {
    EXPECT_EQ(error.kind(), DecodingError::Kind::typeMismatch);
  }
}

TEST(SlotAxes, CanUseValuesOnlyFromItselfAndAncestors) {
  struct Row {
    Idiom idiom, other;
    bool expected;
  };
  const Row rows[] = {
      {Idiom::watchOS, Idiom::square, false}, {Idiom::iOS, Idiom::square, true}, {Idiom::iOS, Idiom::base, true},
      {Idiom::base, Idiom::iOS, false},       {Idiom::iOS, Idiom::iOS, true},    {Idiom::iOS, Idiom::macOS, false},
      {Idiom::square, Idiom::iOS, false},     {Idiom::watchOS, Idiom::base, true},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(description(row.idiom) + " from " + description(row.other));
    EXPECT_EQ(canUseValues(row.idiom, row.other), row.expected);
  }
  EXPECT_TRUE(canUseValues(Appearance::dark, Appearance::base));
  EXPECT_FALSE(canUseValues(Appearance::dark, Appearance::light));
  EXPECT_FALSE(canUseValues(Appearance::base, Appearance::tinted));
}

TEST(SlotAxes, PathRunsFromAncestorToDescendant) {
  using Path = std::optional<std::vector<Idiom>>;
  EXPECT_EQ(path(Idiom::base, Idiom::macOS), (Path{{Idiom::base, Idiom::square, Idiom::macOS}}));
  EXPECT_EQ(path(Idiom::iOS, Idiom::watchOS), Path{});
  EXPECT_EQ(path(Idiom::macOS, Idiom::base), Path{});
  EXPECT_EQ(path(Idiom::square, Idiom::square), (Path{{Idiom::square}}));
  EXPECT_EQ(pathFrom(Idiom::iOS, Idiom::base), (Path{{Idiom::base, Idiom::square, Idiom::iOS}}));
  EXPECT_EQ(pathTo(Idiom::base, Idiom::watchOS), (Path{{Idiom::base, Idiom::watchOS}}));
  EXPECT_EQ(path(Appearance::base, Appearance::tinted), (std::optional<std::vector<Appearance>>{
                                                            {Appearance::base, Appearance::tinted}}));
}

TEST(SlotAxes, GenericAccessReachesTheRightField) {
  SpecializationSlot slot;
  set(Idiom::macOS, slot);
  set(Appearance::tinted, slot);
  EXPECT_EQ(slot, (SpecializationSlot{Idiom::macOS, Appearance::tinted}));
  EXPECT_EQ(value<Idiom>(slot), Idiom::macOS);
  EXPECT_EQ(value<Appearance>(slot), Appearance::tinted);
  EXPECT_TRUE(isSet(Idiom::macOS, slot));
  EXPECT_FALSE(isSet(Idiom::square, slot));
  EXPECT_TRUE(isBase(Appearance::base));
  EXPECT_FALSE(isBase(Idiom::watchOS));
}

}  // namespace
}  // namespace iconwright
