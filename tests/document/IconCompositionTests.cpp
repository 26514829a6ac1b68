#include "foundation/document/IconComposition.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/document/AssetReferencing.hpp"
#include "tests/document/DocumentTestSupport.hpp"

namespace iconwright {
namespace {

using ::testing::ElementsAre;
using testing::DocumentTest;
using testing::EventLog;
using testing::namesOf;
using Groups = IconComposition::Groups;

const std::string missingGroupLine =
    "IconwrightFoundation/CoreAdditions:15: Assertion Failure: Unreachable code has been reached\n";

using IconCompositionTest = DocumentTest;

TEST_F(IconCompositionTest, InsertAtTheCountAppends) {
  auto composition = IconComposition::create({Group::create("A")});
  composition->insert(Group::create("B"), 1);
  composition->prepend(Group::create("C"));
  composition->insert(Groups{Group::create("D"), Group::create("E")}, 1);
  EXPECT_THAT(namesOf(composition->groups()), ElementsAre("C", "D", "E", "A", "B"));
  for (const auto& group : composition->groups()) EXPECT_EQ(group->iconComposition(), composition);
}

TEST(IconCompositionDeathTest, InsertPastTheCountTraps) {
  auto composition = IconComposition::create({Group::create("A")});
  EXPECT_DEATH(composition->insert(Group::create("B"), 2), "Assertion Failure: Index out of range");
  auto group = Group::create();
  EXPECT_DEATH(group->insert(Layer::create(), 1), "Assertion Failure: Index out of range");
}

TEST_F(IconCompositionTest, UndoAndRedoOfInsertRestoreOrderAndDocument) {
  auto front = Group::create("Front");
  auto inserted = Group::create("Inserted", {Layer::create("Leaf")});
  auto composition = IconComposition::create({front});
  composition->associateWithDocument(document);
  ASSERT_EQ(front->document(), document);

  composition->insert(inserted, 0);
  EXPECT_EQ(inserted->document(), document);
  EXPECT_EQ(inserted->layers()[0]->document(), document);
  ASSERT_EQ(document->undoCount(), 1U);
  EXPECT_EQ(document->undoSteps()[0].modifiedMember, nullptr);

  ASSERT_TRUE(document->undo());
  EXPECT_THAT(namesOf(composition->groups()), ElementsAre("Front"));
  EXPECT_EQ(inserted->iconComposition(), nullptr);
  EXPECT_EQ(inserted->document(), nullptr);
  EXPECT_EQ(inserted->layers()[0]->document(), nullptr);

  ASSERT_TRUE(document->redo());
  EXPECT_THAT(namesOf(composition->groups()), ElementsAre("Inserted", "Front"));
  EXPECT_EQ(inserted->iconComposition(), composition);
  EXPECT_EQ(inserted->layers()[0]->document(), document);
  EXPECT_EQ(document->undoCount(), 1U);
}

TEST_F(IconCompositionTest, UndoAndRedoOfRemoveRestoreOrderAndDocument) {
  auto a = Group::create("A");
  auto b = Group::create("B", {Layer::create("b1")});
  auto c = Group::create("C");
  auto composition = IconComposition::create({a, b, c});
  composition->associateWithDocument(document);

  composition->remove(Groups{c, a, c});
  EXPECT_THAT(namesOf(composition->groups()), ElementsAre("B"));
  EXPECT_EQ(a->iconComposition(), nullptr);
  EXPECT_EQ(c->document(), nullptr);
  ASSERT_EQ(document->undoCount(), 2U);
  EXPECT_EQ(document->undoSteps()[0].modifiedMember, composition);

  undoAll();
  EXPECT_THAT(namesOf(composition->groups()), ElementsAre("A", "B", "C"));
  EXPECT_EQ(a->iconComposition(), composition);
  EXPECT_EQ(c->document(), document);

  redoAll();
  EXPECT_THAT(namesOf(composition->groups()), ElementsAre("B"));
  EXPECT_EQ(b->layers()[0]->document(), document);
  EXPECT_EQ(a->document(), nullptr);
}

TEST_F(IconCompositionTest, RemovingAnAbsentGroupReportsAndCarriesOn) {
  auto a = Group::create("A");
  auto stranger = Group::create("Stranger");
  auto other = IconComposition::create({stranger});
  auto composition = IconComposition::create({a});
  composition->associateWithDocument(document);

  ::testing::internal::CaptureStderr();
  composition->remove(Groups{stranger});
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), missingGroupLine);
  EXPECT_THAT(namesOf(composition->groups()), ElementsAre("A"));
  EXPECT_EQ(stranger->iconComposition(), other);
  EXPECT_EQ(document->undoCount(), 0U);

  // The miss does not stop the removal of the groups after it.
  ::testing::internal::CaptureStderr();
  composition->remove(Groups{stranger, a});
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), missingGroupLine);
  EXPECT_TRUE(composition->groups().empty());
}

TEST_F(IconCompositionTest, SetGroupsTakesGroupsFromTheirOldCompositionUndoably) {
  auto a = Group::create("A");
  auto b = Group::create("B");
  auto c = Group::create("C", {Layer::create("c1")});
  auto d = Group::create("D");
  auto composition = IconComposition::create({a, b});
  auto source = IconComposition::create({c, d});
  composition->associateWithDocument(document);

  composition->setGroups({c, a});
  EXPECT_THAT(namesOf(composition->groups()), ElementsAre("C", "A"));
  EXPECT_THAT(namesOf(source->groups()), ElementsAre("D"));
  EXPECT_EQ(c->iconComposition(), composition);
  EXPECT_EQ(c->layers()[0]->document(), document);
  EXPECT_EQ(b->iconComposition(), nullptr);

  // The source had no document, so only this composition's steps are undone.
  undoAll();
  EXPECT_THAT(namesOf(composition->groups()), ElementsAre("A", "B"));
  EXPECT_EQ(c->iconComposition(), nullptr);
  EXPECT_EQ(c->document(), nullptr);
  redoAll();
  EXPECT_THAT(namesOf(composition->groups()), ElementsAre("C", "A"));

  // A source with the same document gets its group back on undo.
  source->associateWithDocument(document);
  composition->groupsLenseForUndo().set({d});
  EXPECT_TRUE(source->groups().empty());
  undoAll();
  EXPECT_THAT(namesOf(composition->groups()), ElementsAre("A", "B"));
  EXPECT_THAT(namesOf(source->groups()), ElementsAre("D"));
  EXPECT_EQ(d->iconComposition(), source);
}

TEST_F(IconCompositionTest, ObserversHearEachChangeOnce) {
  auto group = Group::create("G");
  auto composition = IconComposition::create();
  composition->associateWithDocument(document);
  EventLog compositionEvents(*composition);
  EventLog groupEvents(*group);

  composition->append(group);
  EXPECT_THAT(compositionEvents.properties, ElementsAre("groups"));
  EXPECT_EQ(compositionEvents.members[0], composition.get());
  EXPECT_THAT(groupEvents.properties, ElementsAre("iconComposition"));

  compositionEvents.clear();
  composition->setFill(composition->fill());
  composition->setImplicitAssetMirroring(false);
  EXPECT_TRUE(compositionEvents.properties.empty());
  EXPECT_EQ(document->undoCount(), 1U);

  composition->setImplicitAssetMirroring(true);
  composition->setAssumedSVGColorSpace(AssumedSVGColorSpace::displayP3);
  composition->setSupportedPlatforms(SupportedPlatforms::uniqueWatchOS());
  composition->setSpecializableLanguageIDs({Localization::LanguageID("de")}, false);
  EXPECT_THAT(compositionEvents.properties, ElementsAre("implicitAssetMirroring", "assumedSVGColorSpace",
                                                        "supportedPlatforms", "specializableLanguageIDs"));
  // The language list is not undoable; the other three are.
  EXPECT_EQ(document->undoCount(), 4U);
  EXPECT_EQ(document->undoSteps().back().modifiedMember, composition);

  compositionEvents.clear();
  undoAll();
  EXPECT_THAT(compositionEvents.properties,
              ElementsAre("supportedPlatforms", "assumedSVGColorSpace", "implicitAssetMirroring", "groups"));
  EXPECT_FALSE(composition->implicitAssetMirroring());
  EXPECT_EQ(composition->supportedPlatforms(), SupportedPlatforms::defaultValue());
}

TEST_F(IconCompositionTest, DelegateHearsEachInsertedGroupAfterItsUndoStep) {
  struct Recorder : IconCompositionDelegate {
    std::shared_ptr<UndoManagerDocument> document;
    std::vector<std::string> names;
    std::vector<std::size_t> undoCounts;
    void iconCompositionDidInsertGroup(const std::shared_ptr<Group>& group) override {
      names.push_back(group->inspectedName());
      undoCounts.push_back(document->undoCount());
    }
  };
  auto recorder = std::make_shared<Recorder>();
  recorder->document = document;
  auto composition = IconComposition::create({Group::create("Before")});
  composition->setDelegate(recorder);
  composition->associateWithDocument(document);

  composition->insert(Groups{Group::create("X"), Group::create("Y")}, 0);
  EXPECT_THAT(recorder->names, ElementsAre("X", "Y"));
  EXPECT_THAT(recorder->undoCounts, ElementsAre(1U, 2U));
  EXPECT_THAT(namesOf(composition->groups()), ElementsAre("X", "Y", "Before"));
  composition->setDelegate(nullptr);
  recorder->document.reset();
}

TEST(IconCompositionLayers, FlattenedLayersFollowGroupsAndSkipNothing) {
  EXPECT_TRUE(IconComposition::create()->flattenedLayers().empty());
  auto hidden = Layer::create("a2");
  hidden->setIsHidden(SpecializableProperty<bool>({{SpecializationSlot::base, true}}, false));
  auto composition = IconComposition::create(
      {Group::create("A", {Layer::create("a1"), hidden}), Group::create("Empty"), Group::create("B", {Layer::create("b1")})});
  EXPECT_THAT(namesOf(composition->flattenedLayers()), ElementsAre("a1", "a2", "b1"));
  EXPECT_THAT(namesOf(composition->deprecatedFlattenedLayersBackToFront()), ElementsAre("b1", "a2", "a1"));
  EXPECT_EQ(composition->children().size(), 3U);
}

TEST(IconCompositionText, CopyManifestDescriptionReplacesThePasteboardContents) {
  auto composition = IconComposition::create({Group::create("G")});
  MemoryPasteboard pasteboard;
  pasteboard.setData({1, 2}, "com.example.other");
  composition->copyManifestDescription(pasteboard);
  EXPECT_THAT(pasteboard.types(), ElementsAre(std::string(Pasteboard::stringType)));
  EXPECT_EQ(pasteboard.stringForType(), composition->description());
  EXPECT_NE(composition->description().find("\"name\" : \"G\""), std::string::npos);
}

TEST(IconCompositionAppearance, OnlyAnAutomaticFillAdaptsWhereItWasAuthored) {
  auto composition = IconComposition::create();
  const SpecializationSlot light{Idiom::iOS, Appearance::light};
  const SpecializationSlot dark{Idiom::iOS, Appearance::dark};
  EXPECT_FALSE(composition->shouldAutoAdaptAppearance(light));
  EXPECT_TRUE(composition->shouldAutoAdaptAppearance(dark));
  composition->setFill(SpecializableProperty<Fill>({{SpecializationSlot::base, Fill::automatic}}, composition->fill().defaultValue()));
  EXPECT_TRUE(composition->shouldAutoAdaptAppearance(light));
}

std::vector<std::uint8_t> bytes(std::initializer_list<std::uint8_t> values) { return values; }

TEST(IconCompositionAssets, MakeLayerRegistersTheFileAndNamesTheLayerAfterIt) {
  AssetStore store;
  store.set(AssetName("icon.png"), AssetFile(bytes({1, 2, 3})));
  auto composition = IconComposition::create({}, store);
  EventLog events(*composition);

  auto colliding = composition->makeLayer(IncomingImageAsset(AssetData(bytes({9})), "icon.png"));
  EXPECT_EQ(colliding->name(), "icon 2");
  EXPECT_EQ(colliding->imageName().explicitValue(SpecializationSlot::base), AssetName("icon 2.png"));
  EXPECT_EQ(colliding->group(), nullptr);
  EXPECT_EQ(composition->assetStore()[AssetName("icon 2.png")], AssetFile(bytes({9})));
  EXPECT_EQ(composition->assetStore()[AssetName("icon.png")], AssetFile(bytes({1, 2, 3})));
  EXPECT_THAT(events.properties, ElementsAre("assetStore"));

  // An equal file shares the name that holds it; the store does not change.
  auto same = composition->makeLayer(IncomingImageAsset(AssetData(bytes({1, 2, 3})), "icon.png"));
  EXPECT_EQ(same->name(), "icon");
  EXPECT_EQ(composition->assetStore().assets().size(), 2U);
  EXPECT_EQ(events.properties.size(), 1U);
}

TEST_F(IconCompositionTest, AssetReferencesWalkTheTreeAndRenamesAreUndoable) {
  auto first = Layer::create();
  auto second = Layer::create();
  SpecializableProperty<Layer::ImageName> names;
  names.setExplicitValue(AssetName("a.png"), SpecializationSlot::base);
  names.setExplicitValue(std::nullopt, {Idiom::iOS, Appearance::base});
  names.setExplicitValue(AssetName("b.svg"), SpecializationSlot::dark);
  first->setImageName(names);
  second->setImageName(SpecializableProperty<Layer::ImageName>({{SpecializationSlot::base, AssetName("c.png")}}, {}));
  auto composition = IconComposition::create({Group::create("G", {first}), Group::create("H", {second})});
  composition->associateWithDocument(document);

  EXPECT_EQ(composition->assetReferences(),
            (AssetReferenceSet{AssetName("a.png"), AssetName("b.svg"), AssetName("c.png")}));
  EXPECT_EQ(assetReferences(composition->groups()[1]), AssetReferenceSet{AssetName("c.png")});

  composition->updateAssetReferences({{AssetName("b.svg"), AssetName("b 2.svg")}, {AssetName("c.png"), AssetName("d.png")}});
  EXPECT_EQ(first->imageName().explicitValue(SpecializationSlot::dark), AssetName("b 2.svg"));
  EXPECT_EQ(first->imageName().explicitValue(SpecializationSlot::base), AssetName("a.png"));
  EXPECT_EQ(first->imageName().specializations().size(), 3U);
  EXPECT_EQ(second->assetReferences(), AssetReferenceSet{AssetName("d.png")});
  EXPECT_EQ(document->undoCount(), 2U);
  undoAll();
  EXPECT_EQ(first->imageName(), names);
}

TEST(IconCompositionProperties, InferenceSeesOverridesAnywhereInTheTree) {
  auto layer = Layer::create();
  auto group = Group::create("G", {layer});
  auto composition = IconComposition::create({group});
  EXPECT_FALSE(composition->anyPropertyHasValueWith(Idiom::iOS));

  auto fill = layer->fill();
  fill.setExplicitValue(Fill::none, {Idiom::macOS, Appearance::dark});
  layer->setFill(fill);
  EXPECT_TRUE(composition->anyPropertyHasValueWith(Idiom::macOS));
  EXPECT_TRUE(composition->anyPropertyHasValueWith(Appearance::dark));
  EXPECT_FALSE(composition->anyPropertyHasValueWith(Idiom::iOS));
  // The parents on an axis do not count: square is not macOS.
  EXPECT_FALSE(composition->anyPropertyHasValueWith(Idiom::square));
  EXPECT_TRUE(composition->anyPropertyHasValueWith(Idiom::iOS, Idiom::macOS));
  EXPECT_FALSE(composition->anyPropertyHasValueWith(Idiom::iOS, Idiom::square));

  auto opacity = group->opacity();
  opacity.setExplicitValue(0.5, {Idiom::iOS, Appearance::base});
  group->setOpacity(opacity);
  EXPECT_TRUE(composition->anyPropertyHasValueWith(Idiom::iOS));

  std::vector<std::string> visited;
  composition->enumerateDocumentProperties([&](const IconwrightDocumentMember& member, std::string_view name, const auto&) {
    if (&member == composition.get()) visited.push_back(std::string(name));
  });
  EXPECT_THAT(visited, ElementsAre("fill"));
}

}  // namespace
}  // namespace iconwright

namespace iconwright {
namespace {

TEST(AssetReferencesOfBaseValues, TheBaseValueIsCollectedAndRenamed) {
  // A property whose base value itself names an asset, with and without overrides.
  auto plain = Layer::create();
  plain->setImageName(SpecializableProperty<Layer::ImageName>(AssetName("a.png")));
  auto overridden = Layer::create();
  overridden->setImageName(SpecializableProperty<Layer::ImageName>(
      {{SpecializationSlot::dark, AssetName("b.png")}}, AssetName("a.png")));
  auto composition = IconComposition::create({Group::create("G", {plain, overridden})});

  EXPECT_EQ(plain->assetReferences(), AssetReferenceSet{AssetName("a.png")});
  EXPECT_EQ(composition->assetReferences(), (AssetReferenceSet{AssetName("a.png"), AssetName("b.png")}));

  composition->updateAssetReferences({{AssetName("a.png"), AssetName("a 2.png")}});
  EXPECT_EQ(plain->imageName().defaultValue(), AssetName("a 2.png"));
  EXPECT_EQ(overridden->imageName().defaultValue(), AssetName("a 2.png"));
  EXPECT_EQ(overridden->imageName().explicitValue(SpecializationSlot::dark), AssetName("b.png"));
}

}  // namespace
}  // namespace iconwright
