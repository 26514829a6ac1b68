#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <unordered_set>
#include <vector>

#include "foundation/specialization/SpecializationSlotComponent.hpp"

namespace iconwright {
namespace {

using Slot = SpecializationSlot;

static_assert(Slot::base == Slot{} && Slot::baseSlot == Slot::base && Slot::base.isBaseSlot());
static_assert(Slot::dark == Slot{Idiom::base, Appearance::dark} && !Slot::dark.isBaseSlot());
static_assert(Slot::tinted == Slot{Idiom::base, Appearance::tinted});

std::vector<Slot> everySlot() {
  std::vector<Slot> slots;
  for (Idiom idiom : EnumTraits<Idiom>::allCases) {
    for (Appearance appearance : EnumTraits<Appearance>::allCases) slots.push_back({idiom, appearance});
  }
  return slots;
}

TEST(SpecializationSlot, PrecedentOrdersIdiomFirst) {
  const Slot macOSBase{Idiom::macOS, Appearance::base};
  EXPECT_LT(macOSBase.precedent(), (Slot{Idiom::macOS, Appearance::light}.precedent()));
  EXPECT_GT(macOSBase.precedent(), (Slot{Idiom::iOS, Appearance::tinted}.precedent()));
  EXPECT_EQ((Slot{Idiom::watchOS, Appearance::dark}.precedent().components), (std::pair{4, 2}));

  // Every ancestor of a slot on either axis comes before it.
  for (const Slot& slot : everySlot()) {
    for (const Slot& other : everySlot()) {
      if (other == slot) continue;
      const bool isAncestor = canUseValues(slot.idiom, other.idiom) && canUseValues(slot.appearance, other.appearance);
      if (isAncestor) {
        EXPECT_LT(other.precedent(), slot.precedent()) << other << " before " << slot;
      }
    }
  }
}

TEST(SpecializationSlot, DisplayOrderIsAStrictLessThan) {
  std::vector<Slot> slots = everySlot();
  std::reverse(slots.begin(), slots.end());
  std::sort(slots.begin(), slots.end(), Slot::compareDisplayOrder);
  EXPECT_EQ(slots, everySlot());
  EXPECT_FALSE(Slot::compareDisplayOrder(Slot::dark, Slot::dark));
  EXPECT_TRUE(Slot::compareDisplayOrder({Idiom::base, Appearance::tinted}, {Idiom::square, Appearance::base}));
  EXPECT_EQ(displayOrder(Slot::Component::idiom), 0);
  EXPECT_EQ(displayOrder(Slot::Component::appearance), 1);
}

TEST(SpecializationSlot, Texts) {
  struct Row {
    Slot slot;
    const char *displayName, *description;
  };
  const Row rows[] = {
      {Slot::base, "Base", "(.base, .base)"},
      {{Idiom::iOS, Appearance::dark}, "iOS Dark", "(.iOS, .dark)"},
      {{Idiom::square, Appearance::base}, "iOS / macOS", "(.square, .base)"},
      {Slot::tinted, "Mono", "(.base, .tinted)"},
      {{Idiom::watchOS, Appearance::light}, "watchOS Default", "(.watchOS, .light)"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(row.slot.displayName(), row.displayName);
    EXPECT_EQ(row.slot.description(), row.description);
  }
  const Slot slot{Idiom::square, Appearance::tinted};
  EXPECT_EQ(slot.displayName(Slot::Component::idiom), "iOS / macOS");
  EXPECT_EQ(slot.displayName(Slot::Component::appearance), "Mono");
  EXPECT_EQ(singularDisplayName(Slot::Component::idiom), "Platform");
  EXPECT_EQ(singularDisplayName(Slot::Component::appearance), "Appearance");
  EXPECT_EQ(pluralDisplayName(Slot::Component::idiom), "Platforms");
  EXPECT_EQ(pluralDisplayName(Slot::Component::appearance), "Appearances");
}

TEST(SpecializationSlot, SettingAndTakingReplaceOneAxis) {
  const Slot slot{Idiom::iOS, Appearance::dark};
  const Slot other{Idiom::watchOS, Appearance::tinted};
  EXPECT_EQ(slot.setting(Idiom::macOS), (Slot{Idiom::macOS, Appearance::dark}));
  EXPECT_EQ(slot.setting(Appearance::light), (Slot{Idiom::iOS, Appearance::light}));
  EXPECT_EQ(slot.taking(Slot::Component::idiom, other), (Slot{Idiom::watchOS, Appearance::dark}));
  EXPECT_EQ(slot.taking(Slot::Component::appearance, other), (Slot{Idiom::iOS, Appearance::tinted}));
}

TEST(SpecializationSlot, HashesEveryDistinctSlotApart) {
  const std::vector<Slot> all = everySlot();
  const std::unordered_set<Slot> slots(all.begin(), all.end());
  EXPECT_EQ(slots.size(), 20u);
  std::set<std::size_t> hashes;
  for (const Slot& slot : all) hashes.insert(std::hash<Slot>{}(slot));
  EXPECT_EQ(hashes.size(), 20u);
  EXPECT_EQ(std::hash<Slot>{}(Slot::base), std::hash<Slot>{}(Slot::baseSlot));
  EXPECT_TRUE(slots.contains(Slot{Idiom::macOS, Appearance::tinted}));
}

}  // namespace
}  // namespace iconwright
