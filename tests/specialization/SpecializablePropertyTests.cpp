#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <unordered_set>
#include <vector>

#include "foundation/specialization/SpecializableProperty.hpp"

namespace iconwright {
namespace {

using Slot = SpecializationSlot;
using Property = SpecializableProperty<double>;

std::vector<Slot> slotsOf(const Property& property) {
  std::vector<Slot> slots;
  for (const auto& specialization : property.specializations()) slots.push_back(specialization.slot);
  return slots;
}

std::vector<Slot> everySlot() {
  std::vector<Slot> slots;
  for (Idiom idiom : EnumTraits<Idiom>::allCases) {
    for (Appearance appearance : EnumTraits<Appearance>::allCases) slots.push_back({idiom, appearance});
  }
  return slots;
}

TEST(SpecializableProperty, EmptyListAnswersWithTheDefault) {
  const Property property(7.0);
  for (const Slot& slot : everySlot()) {
    SCOPED_TRACE(slot.description());
    EXPECT_EQ(property.effectiveValue(slot), 7.0);
    EXPECT_EQ(property.effectiveSpecialization(slot), (Property::Specialization{Slot::base, 7.0}));
    EXPECT_EQ(property.slotProvidingValue(slot), std::nullopt);
    EXPECT_EQ(property.explicitValue(slot), std::nullopt);
    EXPECT_FALSE(property.hasSpecializationExactly(slot));
  }
  EXPECT_TRUE(property.onlyUsesBaseOrDefaultValue());
  EXPECT_TRUE(property.allValues().empty());
  EXPECT_FALSE(property.hasValueWith(Idiom::base));
}

TEST(SpecializableProperty, SetEffectiveValueWritesThroughToTheProvider) {
  Property property(0.0);
  property.setEffectiveValue(1.0, {Idiom::iOS, Appearance::dark});
  EXPECT_EQ(slotsOf(property), std::vector<Slot>{Slot::base});
  EXPECT_EQ(property.slotProvidingValue({Idiom::watchOS, Appearance::tinted}), Slot::base);
  EXPECT_EQ(property.defaultValue(), 0.0);

  property.setExplicitValue(2.0, {Idiom::square, Appearance::dark});
  property.setEffectiveValue(3.0, {Idiom::macOS, Appearance::dark});  // provided by (square, dark)
  property.setEffectiveValue(4.0, {Idiom::iOS, Appearance::light});   // provided by (base, base)
  EXPECT_EQ(property.specializations(),
            (std::vector<Property::Specialization>{{Slot::base, 4.0}, {{Idiom::square, Appearance::dark}, 3.0}}));
  EXPECT_EQ(property.effectiveValue({Idiom::watchOS, Appearance::dark}), 4.0);
}

TEST(SpecializableProperty, ExplicitValuesStayInPrecedenceOrder) {
  Property property(0.0);
  property.setExplicitValue(1.0, {Idiom::iOS, Appearance::dark});
  property.setExplicitValue(2.0, Slot::base);
  property.setExplicitValue(3.0, {Idiom::square, Appearance::tinted});
  EXPECT_EQ(slotsOf(property), (std::vector<Slot>{Slot::base, {Idiom::square, Appearance::tinted}, {Idiom::iOS, Appearance::dark}}));
  property.setExplicitValue(5.0, {Idiom::iOS, Appearance::dark});
  EXPECT_EQ(property.allValues(), (std::vector<double>{2.0, 3.0, 5.0}));

  // Any order of inserts leaves the list strictly ascending, one record per slot.
  std::mt19937 random(12345);
  for (int round = 0; round < 50; ++round) {
    Property shuffled(0.0);
    std::vector<Slot> slots = everySlot();
    std::shuffle(slots.begin(), slots.end(), random);
    slots.resize(1 + random() % slots.size());
    for (const Slot& slot : slots) shuffled.setExplicitValue(precedent(slot.idiom), slot);
    for (const Slot& slot : slots) shuffled.setExplicitValue(precedent(slot.appearance), slot);
    const std::vector<Slot> stored = slotsOf(shuffled);
    ASSERT_EQ(stored.size(), slots.size());
    for (std::size_t i = 1; i < stored.size(); ++i) EXPECT_LT(stored[i - 1].precedent(), stored[i].precedent());
    for (const Slot& slot : slots) EXPECT_EQ(shuffled.explicitValue(slot), precedent(slot.appearance));
  }
}

TEST(SpecializableProperty, IdiomAxisOutranksAppearanceAxis) {
  Property property(0.0);
  property.setExplicitValue(1.0, {Idiom::square, Appearance::dark});
  property.setExplicitValue(2.0, {Idiom::iOS, Appearance::base});
  EXPECT_EQ(property.slotProvidingValue({Idiom::iOS, Appearance::dark}), (Slot{Idiom::iOS, Appearance::base}));
  EXPECT_EQ(property.effectiveValue({Idiom::macOS, Appearance::dark}), 1.0);
  EXPECT_EQ(property.effectiveValue({Idiom::watchOS, Appearance::dark}), 0.0);

  Property other(0.0);
  other.setExplicitValue(1.0, Slot::dark);
  other.setExplicitValue(2.0, {Idiom::square, Appearance::base});
  struct Row {
    Slot target;
    std::optional<Slot> provider;
  };
  const Row rows[] = {
      {{Idiom::iOS, Appearance::dark}, Slot{Idiom::square, Appearance::base}},
      {{Idiom::watchOS, Appearance::dark}, Slot::dark},
      {{Idiom::iOS, Appearance::light}, Slot{Idiom::square, Appearance::base}},
      {{Idiom::watchOS, Appearance::light}, std::nullopt},
      {{Idiom::base, Appearance::tinted}, std::nullopt},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.target.description());
    EXPECT_EQ(other.slotProvidingValue(row.target), row.provider);
    EXPECT_EQ(other.effectiveValue(row.target), row.provider ? *other.explicitValue(*row.provider) : 0.0);
  }
}

TEST(SpecializableProperty, ExactOperationsIgnoreInheritance) {
  Property property(0.0);
  property.setExplicitValue(1.0, Slot::dark);
  const Slot inheriting{Idiom::iOS, Appearance::dark};
  EXPECT_FALSE(property.hasSpecializationExactly(inheriting));
  EXPECT_EQ(property.explicitSpecialization(inheriting), std::nullopt);
  EXPECT_FALSE(property.removeSpecialization(inheriting));
  EXPECT_EQ(slotsOf(property), std::vector<Slot>{Slot::dark});
  EXPECT_TRUE(property.hasValueWith(Appearance::dark));
  EXPECT_TRUE(property.hasValueWith(Idiom::base));
  EXPECT_FALSE(property.hasValueWith(Idiom::iOS));
  EXPECT_FALSE(property.onlyUsesBaseOrDefaultValue());

  EXPECT_TRUE(property.removeSpecialization(Slot::dark));
  EXPECT_TRUE(property.specializations().empty());
  property.setExplicitValue(2.0, Slot::base);
  EXPECT_TRUE(property.onlyUsesBaseOrDefaultValue());
  property.removeAllSpecializations();
  EXPECT_EQ(property, Property(0.0));
}

TEST(SpecializableProperty, MakingAValueExplicitDetachesItFromTheAncestor) {
  Property property(0.0);
  property.setExplicitValue(1.0, {Idiom::square, Appearance::base});
  property.makeValueExplicit({Idiom::iOS, Appearance::dark});
  property.addSpecialization({Idiom::watchOS, Appearance::base});
  property.setExplicitValue(9.0, {Idiom::square, Appearance::base});
  EXPECT_EQ(property.effectiveValue({Idiom::iOS, Appearance::dark}), 1.0);
  EXPECT_EQ(property.explicitValue({Idiom::watchOS, Appearance::base}), 0.0);
  EXPECT_EQ(property.effectiveValue({Idiom::macOS, Appearance::dark}), 9.0);
}

TEST(SpecializableProperty, ShouldAutoAdaptAppearance) {
  const Property fromDefault(0.5);
  struct Row {
    Appearance rendered;
    bool expected;
  };
  for (const Row& row : {Row{Appearance::light, false}, Row{Appearance::dark, true}, Row{Appearance::tinted, true},
                         Row{Appearance::base, true}}) {
    SCOPED_TRACE(description(row.rendered));
    EXPECT_EQ(fromDefault.shouldAutoAdaptAppearance({Idiom::iOS, row.rendered}), row.expected);
  }

  Property dark(0.5);
  dark.setExplicitValue(0.25, Slot::dark);
  EXPECT_FALSE(dark.shouldAutoAdaptAppearance({Idiom::iOS, Appearance::dark}));
  EXPECT_TRUE(dark.shouldAutoAdaptAppearance({Idiom::iOS, Appearance::tinted}));
  // The special values are compared with the value shown, and "always" is asked first.
  EXPECT_TRUE(dark.shouldAutoAdaptAppearance(Slot::dark, 0.25));
  EXPECT_FALSE(dark.shouldAutoAdaptAppearance(Slot::tinted, std::nullopt, 0.5));
  EXPECT_TRUE(dark.shouldAutoAdaptAppearance(Slot::tinted, std::nullopt, 0.25));
  EXPECT_TRUE(dark.shouldAutoAdaptAppearance(Slot::dark, 0.25, 0.25));
}

TEST(SpecializableProperty, MapTransformsInOrderWithTheDefaultLast) {
  Property property(1.0);
  property.setExplicitValue(2.0, {Idiom::macOS, Appearance::tinted});
  property.setExplicitValue(3.0, Slot::dark);
  std::vector<std::optional<Slot>> seen;
  const SpecializableProperty<std::string> mapped = property.map([&](std::optional<Slot> slot, double value) {
    seen.push_back(slot);
    return description(value * 10);
  });
  EXPECT_EQ(seen, (std::vector<std::optional<Slot>>{Slot::dark, Slot{Idiom::macOS, Appearance::tinted}, std::nullopt}));
  EXPECT_EQ(mapped.defaultValue(), "10.0");
  EXPECT_EQ(mapped.explicitValue(Slot::dark), "30.0");
  EXPECT_EQ(mapped.specializations().front().description(), "(.base, .dark) = 30.0");

  // Values need neither a default, nor equality, nor a hash.
  struct Opaque {
    explicit Opaque(double number) : value(number) {}
    double value;
  };
  static_assert(!std::default_initializable<SpecializableProperty<Opaque>>);
  auto opaque = property.map([](std::optional<Slot>, double value) { return Opaque(value); });
  opaque.setEffectiveValue(Opaque(8.0), {Idiom::iOS, Appearance::dark});
  EXPECT_EQ(opaque.explicitValue(Slot::dark)->value, 8.0);
  EXPECT_EQ(opaque.effectiveValue(Slot::base).value, 1.0);

  int calls = 0;
  EXPECT_THROW((void)property.map([&](std::optional<Slot>, double value) {
    ++calls;
    if (value == 3.0) throw std::runtime_error("stop");
    return value;
  }),
               std::runtime_error);
  EXPECT_EQ(calls, 1);
}

// A value that names assets, as images and fills do.
struct AssetNames {
  std::vector<std::string> names;
  void collectAssetReferences(std::set<std::string>& references) const { references.insert(names.begin(), names.end()); }
  void updateAssetReferences(const std::map<std::string, std::string>& renames) {
    for (auto& name : names) {
      if (auto found = renames.find(name); found != renames.end()) name = found->second;
    }
  }
  friend bool operator==(const AssetNames&, const AssetNames&) = default;
};

TEST(SpecializableProperty, AssetReferencesSkipTheDefault) {
  SpecializableProperty<AssetNames> property(AssetNames{{"default.png"}});
  property.setExplicitValue({{"a.png", "b.svg"}}, Slot::base);
  property.setExplicitValue({{"a.png"}}, Slot::dark);
  std::set<std::string> references;
  property.collectAssetReferences(references);
  EXPECT_EQ(references, (std::set<std::string>{"a.png", "b.svg"}));

  property.updateAssetReferences(std::map<std::string, std::string>{{"a.png", "c.png"}, {"default.png", "x.png"}});
  EXPECT_EQ(property.explicitValue(Slot::base), (AssetNames{{"c.png", "b.svg"}}));
  EXPECT_EQ(property.explicitValue(Slot::dark), (AssetNames{{"c.png"}}));
  EXPECT_EQ(property.defaultValue(), (AssetNames{{"default.png"}}));
}

TEST(SpecializableProperty, BindingsEditThePropertyBehindThem) {
  Property stored(0.0);
  stored.setExplicitValue(1.0, Slot::dark);
  const Binding<Property> binding{[&] { return stored; }, [&](const Property& value) { stored = value; }};
  const Slot iOSDark{Idiom::iOS, Appearance::dark};

  const Binding<double> effective = effectiveValueBinding(binding, iOSDark);
  EXPECT_EQ(effective(), 1.0);
  effective.set(2.0);
  EXPECT_EQ(slotsOf(stored), std::vector<Slot>{Slot::dark});
  EXPECT_EQ(stored.explicitValue(Slot::dark), 2.0);

  const Binding<std::optional<double>> exact = explicitValueBinding(binding, iOSDark);
  EXPECT_EQ(exact(), std::nullopt);
  exact.set(3.0);
  EXPECT_EQ(stored.explicitValue(iOSDark), 3.0);
  EXPECT_EQ(effective(), 3.0);
  exact.set(std::nullopt);
  EXPECT_FALSE(stored.hasSpecializationExactly(iOSDark));
  EXPECT_EQ(effective(), 2.0);
}

TEST(SpecializableProperty, EqualityAndHashCoverOverridesAndDefault) {
  Property a(1.0), b(1.0);
  a.setExplicitValue(2.0, Slot::dark);
  b.setExplicitValue(2.0, Slot::dark);
  EXPECT_EQ(a, b);
  EXPECT_EQ(std::hash<Property>{}(a), std::hash<Property>{}(b));
  b.setExplicitValue(2.0, Slot::tinted);
  EXPECT_NE(a, b);
  EXPECT_NE(a, Property({{Slot::dark, 2.0}}, 0.0));
  EXPECT_NE(a, Property({{Slot::tinted, 2.0}}, 1.0));
  const std::unordered_set<Property> set{a, b, Property(1.0), Property({{Slot::dark, 2.0}}, 1.0)};
  EXPECT_EQ(set.size(), 3u);
}

}  // namespace
}  // namespace iconwright
