#include "foundation/document/Group.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "foundation/document/IconComposition.hpp"
#include "tests/document/DocumentTestSupport.hpp"

namespace iconwright {
namespace {

using ::testing::ElementsAre;
using testing::DocumentTest;
using testing::EventLog;
using testing::namesOf;
using Layers = Group::Layers;

const SpecializationSlot iOSLight{Idiom::iOS, Appearance::light};
const SpecializationSlot iOSDark{Idiom::iOS, Appearance::dark};

using GroupTest = DocumentTest;

TEST_F(GroupTest, InsertingALayerOfAnotherGroupReportsAndStillInserts) {
  auto layer = Layer::create("Shared");
  auto first = Group::create("First", {layer});
  auto second = Group::create("Second", {Layer::create("Other")});

  ::testing::internal::CaptureStderr();
  second->insert(layer, 0);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            "IconwrightFoundation/IconComposition.Group:118: Assertion Failure: Layer is already in another group\n");
  EXPECT_THAT(namesOf(second->layers()), ElementsAre("Shared", "Other"));
  EXPECT_THAT(namesOf(first->layers()), ElementsAre("Shared"));
  EXPECT_EQ(layer->group(), second);
  EXPECT_EQ(layer->positionInGroup(), 0U);
}

TEST_F(GroupTest, LayerInsertAndRemoveAreUndoableAndFollowTheDocument) {
  auto a = Layer::create("a");
  auto b = Layer::create("b");
  auto group = Group::create("G", {a});
  auto composition = IconComposition::create({group});
  composition->associateWithDocument(document);
  EventLog events(*group);

  group->insert(b, 0);
  EXPECT_EQ(b->document(), document);
  EXPECT_EQ(b->iconComposition(), composition);
  b->removeFromGroup();
  EXPECT_EQ(b->group(), nullptr);
  EXPECT_EQ(b->document(), nullptr);
  EXPECT_EQ(b->positionInGroup(), std::nullopt);
  EXPECT_THAT(events.properties, ElementsAre("layers", "layers"));
  ASSERT_EQ(document->undoCount(), 2U);
  EXPECT_EQ(document->undoSteps()[1].modifiedMember, group);

  ASSERT_TRUE(document->undo());
  EXPECT_THAT(namesOf(group->layers()), ElementsAre("b", "a"));
  EXPECT_EQ(b->document(), document);
  undoAll();
  EXPECT_THAT(namesOf(group->layers()), ElementsAre("a"));
  redoAll();
  EXPECT_THAT(namesOf(group->layers()), ElementsAre("a"));
  EXPECT_EQ(b->group(), nullptr);
}

TEST_F(GroupTest, SetLayersMovesLayersOutOfTheirGroups) {
  auto a = Layer::create("a");
  auto b = Layer::create("b");
  auto c = Layer::create("c");
  auto group = Group::create("G", {a, b});
  auto other = Group::create("H", {c});
  auto composition = IconComposition::create({group, other});
  composition->associateWithDocument(document);

  ::testing::internal::CaptureStderr();
  group->layersLenseForUndo().set({c, a});
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
  EXPECT_THAT(namesOf(group->layers()), ElementsAre("c", "a"));
  EXPECT_TRUE(other->layers().empty());
  EXPECT_EQ(c->group(), group);
  EXPECT_EQ(b->group(), nullptr);

  undoAll();
  EXPECT_THAT(namesOf(group->layers()), ElementsAre("a", "b"));
  EXPECT_THAT(namesOf(other->layers()), ElementsAre("c"));
  EXPECT_EQ(c->group(), other);
  EXPECT_EQ(c->document(), document);
}

TEST(GroupNames, InspectedNameFallsBackToTheDefault) {
  auto group = Group::create("Back");
  EXPECT_EQ(group->inspectedName(), "Back");
  group->setInspectedName("");
  EXPECT_EQ(group->name(), std::nullopt);
  EXPECT_EQ(group->inspectedName(), "Group");
  auto layer = Layer::create();
  EXPECT_EQ(layer->inspectedName(), "Layer");
  layer->setInspectedName("Glyph");
  EXPECT_EQ(layer->name(), "Glyph");

  const auto address = [](const void* pointer) {
    char text[32];
    std::snprintf(text, sizeof text, "%p", pointer);
    return std::string(text);
  };
  EXPECT_EQ(group->description(), "<group name=\"Group\" id=\"" + address(group.get()) + "\">");
  EXPECT_EQ(layer->description(), "<layer name=\"Glyph\" id=\"" + address(layer.get()) + "\">");
  EXPECT_EQ(address(layer.get()).substr(0, 2), "0x");
}

TEST(GroupMirroring, ExplicitValueThenCompositionThenFalse) {
  auto group = Group::create("G", {Layer::create()});
  EXPECT_FALSE(group->effectiveIsMirrorable(SpecializationSlot::base));

  auto composition = IconComposition::create({group});
  composition->setImplicitAssetMirroring(true);
  EXPECT_TRUE(group->effectiveIsMirrorable(SpecializationSlot::base));
  EXPECT_TRUE(group->layers()[0]->effectiveIsMirrorable(SpecializationSlot::base));

  // An explicit false wins over the composition, for the slots it provides.
  group->setAssetMirroring(SpecializableProperty<AssetMirroring>({{SpecializationSlot::dark, AssetMirroring{false}}}, {}));
  EXPECT_FALSE(group->effectiveIsMirrorable(iOSDark));
  EXPECT_TRUE(group->effectiveIsMirrorable(iOSLight));
  // An override that leaves mirrorable absent inherits too.
  group->setAssetMirroring(SpecializableProperty<AssetMirroring>({{SpecializationSlot::base, AssetMirroring{}}}, {}));
  EXPECT_TRUE(group->effectiveIsMirrorable(iOSDark));
}

TEST(GroupAppearance, BlendModeThenOpacityMustBothAdapt) {
  auto group = Group::create();
  EXPECT_FALSE(group->shouldAutoAdaptAppearance(iOSLight));
  EXPECT_TRUE(group->shouldAutoAdaptAppearance(iOSDark));
  group->setOpacity(SpecializableProperty<double>({{SpecializationSlot::dark, 0.5}}, 1.0));
  EXPECT_FALSE(group->shouldAutoAdaptAppearance(iOSDark));
  EXPECT_TRUE(group->shouldAutoAdaptAppearance({Idiom::iOS, Appearance::tinted}));
  group->setBlendMode(SpecializableProperty<BlendMode>({{SpecializationSlot::tinted, BlendMode::multiply}}, BlendMode::normal));
  EXPECT_FALSE(group->shouldAutoAdaptAppearance({Idiom::iOS, Appearance::tinted}));
}

TEST_F(GroupTest, EveryEnumeratedPropertyChangesUndoablyUnderItsOwnName) {
  auto group = Group::create();
  auto layer = Layer::create();
  auto composition = IconComposition::create({Group::create("G", {layer}), group});
  composition->associateWithDocument(document);
  const SpecializationSlot slot{Idiom::watchOS, Appearance::tinted};

  const auto check = [&](IconwrightDocumentMember& member, auto update, std::vector<std::string> expected) {
    EventLog events(member);
    std::vector<std::string> visited;
    update([&](std::string_view name, auto& property) {
      visited.emplace_back(name);
      property.makeValueExplicit(slot);
    });
    EXPECT_EQ(visited, expected);
    EXPECT_EQ(events.properties, expected);
    EXPECT_EQ(document->undoCount(), expected.size());
    undoAll();
    document->removeAllSteps();
  };
  check(*group, [&](auto visitor) { group->updateProperties(visitor); },
        {"isHidden", "lighting", "assetMirroring", "blendMode", "blurMaterial", "shadow", "translucency", "specular",
         "opacity", "position"});
  check(*layer, [&](auto visitor) { layer->updateProperties(visitor); },
        {"imageName", "position", "fill", "blendMode", "opacity", "isGlass", "assetMirroring", "isHidden"});
  check(*composition, [&](auto visitor) { composition->updateProperties(visitor); }, {"fill"});
  EXPECT_FALSE(composition->anyPropertyHasValueWith(Idiom::watchOS));

  // A lense reads and writes without undo; change() through it records the step.
  EventLog events(*layer);
  auto lense = layer->lense(Layer::opacityKeyPath);
  lense.set(SpecializableProperty<double>({{slot, 0.25}}, 1.0));
  EXPECT_EQ(layer->opacity().effectiveValue(slot), 0.25);
  EXPECT_EQ(lense.get(), layer->opacity());
  EXPECT_EQ(document->undoCount(), 0U);
  layer->change(lense, SpecializableProperty<double>(1.0), true);
  layer->change(lense, SpecializableProperty<double>(1.0), true);
  EXPECT_THAT(events.properties, ElementsAre("opacity", "opacity"));
  ASSERT_EQ(document->undoCount(), 1U);
  EXPECT_EQ(document->undoSteps()[0].modifiedMember, layer);
  ASSERT_TRUE(document->undo());
  EXPECT_EQ(layer->opacity().effectiveValue(slot), 0.25);
  ASSERT_TRUE(document->redo());
  EXPECT_EQ(layer->opacity().effectiveValue(slot), 1.0);
}

}  // namespace
}  // namespace iconwright
