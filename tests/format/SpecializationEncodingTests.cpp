#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "foundation/format/SpecializationEncoding.hpp"
#include "foundation/json/JSONReader.hpp"
#include "foundation/json/JSONWriter.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

using Slot = SpecializationSlot;
using Property = SpecializableProperty<double>;
using Snapshot = Property::Snapshot;
using Record = Snapshot::Specialization;

constexpr JSONWritingOptions compact{false, false, false};

Property propertyWith(const std::vector<Property::Specialization>& records, double defaultValue = 1) {
  Property property(defaultValue);
  for (const auto& record : records) property.add(record);
  return property;
}

std::string written(const std::optional<Snapshot>& snapshot) {
  JSONValue::Object object;
  encodeSpecializableProperty(object, snapshot, "opacity", "opacity-specializations");
  return writeJSON(JSONValue(std::move(object)), compact);
}

std::optional<Snapshot> read(const std::string& text) {
  const JSONValue json = parseJSON(text);
  return decodeSpecializableProperty<double>(Decoder(json), "opacity", "opacity-specializations");
}

TEST(SpecializationEncoding, PropertyChoosesItsFormAndKey) {
  struct Row {
    const char* label;
    std::vector<Property::Specialization> records;
    std::string json;
    std::size_t count;
  };
  const std::vector<Row> rows{
      {"no records write nothing", {}, "{}", 0},
      {"one base record is the plain value", {{Slot::base, 0.5}}, R"({"opacity":0.5})", 1},
      {"one dark record is a list", {{Slot::dark, 0.5}}, R"({"opacity-specializations":[{"appearance":"dark","value":0.5}]})", 1},
      {"base record among others writes only its value",
       {{{Idiom::iOS, Appearance::tinted}, 0.25}, {Slot::base, 1}},
       R"({"opacity-specializations":[{"value":1},{"appearance":"tinted","idiom":"iOS","value":0.25}]})", 2},
      {"idiom alone", {{{Idiom::watchOS, Appearance::base}, 0}}, R"({"opacity-specializations":[{"idiom":"watchOS","value":0}]})", 1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    const Property property = propertyWith(row.records, 7);
    const auto snapshot = property.snapshot();
    EXPECT_EQ(written(snapshot), row.json);
    EXPECT_EQ(snapshot ? snapshot->specializationsCount() : 0, row.count);
    // Reading gives the same snapshot back, and applying it the same property.
    const auto again = read(row.json);
    EXPECT_EQ(again, snapshot);
    Property restored(7);
    if (again) again->apply(restored);
    EXPECT_EQ(restored, property);
  }
}

TEST(SpecializationEncoding, ReadingPicksTheSingularKeyFirst) {
  struct Row {
    const char* label;
    std::string json;
    std::optional<Snapshot> expected;
  };
  const std::vector<Row> rows{
      {"neither key", R"({"hidden": true})", std::nullopt},
      {"singular", R"({"opacity": 0.5})", Snapshot::universal(0.5)},
      {"both keys: the list is dropped", R"({"opacity-specializations": [{"value": 1}], "opacity": 0.5})",
       Snapshot::universal(0.5)},
      {"plural, records kept in file order",
       R"({"opacity-specializations": [{"idiom": "iOS", "value": 2}, {"value": 1}, {"idiom": null, "value": 3}]})",
       Snapshot::specialized({{{Idiom::iOS, Appearance::base}, 2}, {Slot::base, 1}, {Slot::base, 3}})},
      {"empty list", R"({"opacity-specializations": []})", Snapshot::specialized({})},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(read(row.json), row.expected);
  }
}

TEST(SpecializationEncoding, NullUnderTheSingularKeyIsAValue) {
  const JSONValue json = parseJSON(R"({"image-name": null, "image-name-specializations": [{"value": "a.png"}]})");
  const auto snapshot =
      decodeSpecializableProperty<std::optional<std::string>>(Decoder(json), "image-name", "image-name-specializations");
  ASSERT_TRUE(snapshot && snapshot->isUniversal());
  EXPECT_EQ(*snapshot->universalValue(), std::nullopt);
  // A type that has no null form fails instead of reading as absent.
  EXPECT_THROW_MESSAGE(read(R"({"opacity": null})"), DecodingError,
                       "Cannot get value of type Double -- found null value instead at opacity.");
}

TEST(SpecializationEncoding, BadRecordsFailWithTheirPath) {
  EXPECT_THROW_MESSAGE(read(R"({"opacity-specializations": [{"value": 1}, {"appearance": "dark"}]})"), DecodingError,
                       "No value associated with key “value” at opacity-specializations[1].");
  for (const char* json : {R"({"opacity-specializations": [{"idiom": "tvOS", "value": 1}]})",
                           R"({"opacity-specializations": [{"appearance": "sepia", "value": 1}]})",
                           R"({"opacity-specializations": {"value": 1}})", R"({"opacity": "0.5"})"}) {
    SCOPED_TRACE(json);
    EXPECT_THROW((void)read(json), DecodingError);
  }
}

TEST(SpecializationEncoding, ApplySortsReplacesAndKeepsTheDefault) {
  const Slot iOS{Idiom::iOS, Appearance::base};
  const Slot squareDark{Idiom::square, Appearance::dark};
  Property property = propertyWith({{Slot::tinted, 9}}, 4);
  Snapshot::specialized({{iOS, 1}, {Slot::base, 2}, {squareDark, 3}, {iOS, 5}}).apply(property);
  EXPECT_EQ(property, Property({{Slot::base, 2}, {squareDark, 3}, {iOS, 5}}, 4));

  // universal and a list of one base record differ as snapshots but apply alike.
  const auto universal = Snapshot::universal(6);
  const auto list = Snapshot::specialized({{Slot::base, 6}});
  EXPECT_NE(universal, list);
  Property fromUniversal = property;
  Property fromList = property;
  universal.apply(fromUniversal);
  list.apply(fromList);
  EXPECT_EQ(fromUniversal, fromList);
  EXPECT_EQ(fromUniversal, Property({{Slot::base, 6}}, 4));
  EXPECT_EQ(list.list(), universal.list());
}

TEST(SpecializationEncoding, ApplyFirstSpecializationMovesTheFirstValueToTheSlot) {
  const Slot macOSDark{Idiom::macOS, Appearance::dark};
  const Property start = propertyWith({{Slot::base, 1}, {Slot::dark, 2}});
  struct Row {
    const char* label;
    Snapshot snapshot;
    Property expected;
  };
  const std::vector<Row> rows{
      {"universal", Snapshot::universal(8), propertyWith({{Slot::base, 1}, {Slot::dark, 2}, {macOSDark, 8}})},
      {"first record's own slot is ignored", Snapshot::specialized({{Slot::tinted, 5}, {Slot::base, 6}}),
       propertyWith({{Slot::base, 1}, {Slot::dark, 2}, {macOSDark, 5}})},
      {"empty list does nothing", Snapshot::specialized({}), start},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    Property property = start;
    row.snapshot.applyFirstSpecialization(property, macOSDark);
    EXPECT_EQ(property, row.expected);
  }
}

}  // namespace
}  // namespace iconwright
