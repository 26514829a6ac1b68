// Flattening to one platform. The central test checks the rule behind it over the whole
// corpus: on every slot of the platform, every member that takes part in rendering keeps
// each property's effective value, the background keeps its fill, and nothing else starts
// or stops showing; only asset names of mirrored uses may change, to a copy of the same file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "foundation/document/IconComposition.hpp"
#include "foundation/format/IconCompositionSnapshot.hpp"
#include "tests/common/TestSupport.hpp"
#include "tests/document/DocumentTestSupport.hpp"

namespace iconwright {
namespace {

namespace fs = std::filesystem;
using ::testing::UnorderedElementsAre;
using testing::DocumentTest;

using Results = IconComposition::SpecializationResults;


// Every corpus document that opens: the manifests alone and the whole packages.
std::vector<std::pair<std::string, FileWrapper>> corpusDocuments(const fs::path& shared) {
  std::vector<std::pair<std::string, FileWrapper>> documents;
  for (const char* folder : {"manifests", "manifests-other"}) {
    for (const auto& path : testing::sortedEntries(shared / "corpus" / folder)) {
      documents.emplace_back(std::string(folder) + "/" + path.filename().string(),
                             FileWrapper::directory({{"icon.json", FileWrapper::regularFile(testing::readFile(path))}}));
    }
  }
  for (const auto& path : testing::sortedEntries(shared / "corpus" / "packages")) {
    documents.emplace_back("packages/" + path.filename().string(), FileWrapper::read(FilePath::make(fs::absolute(path).string())));
  }
  return documents;
}

// Each specializable property of `before` resolved on `beforeSlot` equals that of `after` on
// `afterSlot`; image names are compared by the file they name instead.
template <class Member>
void expectSameEffectiveValues(const Member& before, const SpecializationSlot& beforeSlot, const Member& after,
                               const SpecializationSlot& afterSlot) {
  Member::forEachPropertyKeyPath([&](const auto& keyPath) {
    if constexpr (std::is_same_v<typename std::remove_cvref_t<decltype(keyPath)>::Value, Layer::ImageName>) {
      return;
    } else {
      const auto& was = (before.*keyPath.storage).effectiveValue(beforeSlot);
      const auto& is = (after.*keyPath.storage).effectiveValue(afterSlot);
      EXPECT_TRUE(was == is) << keyPath.name << " on " << afterSlot.description();
    }
  });
}

void expectSameLayer(const Layer& before, const SpecializationSlot& beforeSlot, const Layer& after,
                     const SpecializationSlot& afterSlot, const Results& results) {
  expectSameEffectiveValues(before, beforeSlot, after, afterSlot);
  expectSameEffectiveValues(*before.group(), beforeSlot, *after.group(), afterSlot);
  EXPECT_EQ(before.effectiveIsMirrorable(beforeSlot), after.effectiveIsMirrorable(afterSlot));
  const auto& wasName = before.imageName().effectiveValue(beforeSlot);
  const auto& isName = after.imageName().effectiveValue(afterSlot);
  ASSERT_EQ(wasName.has_value(), isName.has_value());
  if (!wasName) return;
  if (*wasName != *isName) {
    EXPECT_TRUE(after.effectiveIsMirrorable(afterSlot));
    EXPECT_TRUE(results.mirrorableAssetNames.contains(*isName));
  }
  const auto wasAsset = before.asset(beforeSlot);
  const auto isAsset = after.asset(afterSlot);
  EXPECT_EQ(wasAsset.has_value(), isAsset.has_value());
  if (wasAsset && isAsset) {
    EXPECT_TRUE(*wasAsset == *isAsset) << wasName->fileName();
  }
}

void expectFlatteningKeepsWhatIsShown(const FileWrapper& package, Platform platform) {
  const auto before = createFromFileWrapper<IconComposition>(package);
  const auto after = createFromFileWrapper<IconComposition>(package);
  const auto beforeLayers = before->flattenedLayers();
  const auto afterLayers = after->flattenedLayers();  // the same objects after flattening
  const Results results = after->fullySpecialize(platform);

  EXPECT_EQ(after->supportedPlatforms().selectablePlatforms(), std::vector<Platform>{platform});
  for (const Appearance appearance : concreteValidAppearances(platform)) {
    const SpecializationSlot beforeSlot{idiom(platform, before->supportedPlatforms()), appearance};
    const SpecializationSlot afterSlot{idiom(platform, after->supportedPlatforms()), appearance};
    SCOPED_TRACE(afterSlot.description());
    EXPECT_EQ(before->fill().effectiveValue(beforeSlot), after->fill().effectiveValue(afterSlot));
    for (std::size_t index = 0; index < beforeLayers.size(); ++index) {
      const Layer& was = *beforeLayers[index];
      const Layer& is = *afterLayers[index];
      const bool wasShown = was.shouldParticipateInRendering(beforeSlot);
      const bool isShown = is.iconComposition() == after && is.shouldParticipateInRendering(afterSlot);
      ASSERT_EQ(wasShown, isShown) << "layer " << index;
      if (wasShown) expectSameLayer(was, beforeSlot, is, afterSlot, results);
    }
  }
  // The results name exactly what the document refers to, and the store holds all of it.
  EXPECT_EQ(results.referencedAssetNames, after->assetReferences());
  for (const auto& name : results.mirrorableAssetNames) EXPECT_TRUE(results.referencedAssetNames.contains(name));
}

TEST(Flattening, EveryCorpusDocumentShowsTheSameOnEverySlotOfEachPlatform) {
  ICONWRIGHT_REQUIRE_SHARED_DIRECTORY(shared);
  int flattened = 0;
  for (const auto& [name, package] : corpusDocuments(shared)) {
    try {
      (void)createFromFileWrapper<IconComposition>(package);
    } catch (const std::exception&) {
      continue;  // a hand-written manifest that is refused has nothing to flatten
    }
    for (const Platform platform : EnumTraits<Platform>::allCases) {
      SCOPED_TRACE(name + " for " + std::string(rawValue(platform)));
      expectFlatteningKeepsWhatIsShown(package, platform);
      ++flattened;
    }
  }
  EXPECT_GT(flattened, 400);
}

// A composition of groups of layers, each layer showing `name` from the store on the base slot.
std::shared_ptr<Layer> layerShowing(const std::string& name) {
  auto layer = Layer::create(name);
  auto imageName = layer->imageName();
  imageName.setExplicitValue(AssetName(name), SpecializationSlot::base);
  layer->setImageName(imageName);
  return layer;
}

AssetStore storeWith(const std::vector<std::string>& names) {
  AssetStore store;
  std::uint8_t byte = 0;
  for (const auto& name : names) store.set(AssetName(name), AssetFile(std::vector<std::uint8_t>{byte++, 1, 2, 3}));
  return store;
}

void setMirrorable(SharedGroupAndLayerProperties& member, bool mirrorable) {
  auto mirroring = member.assetMirroring();
  mirroring.setExplicitValue(AssetMirroring{mirrorable}, SpecializationSlot::base);
  member.setAssetMirroring(mirroring);
}

AssetReferenceSet names(std::initializer_list<const char*> texts) {
  AssetReferenceSet set;
  for (const char* text : texts) set.insert(AssetName(text));
  return set;
}

TEST(Flattening, EveryLayerMirrorableKeepsItsNames) {
  auto composition = IconComposition::create({Group::create("G", {layerShowing("mark.png"), layerShowing("a.svg")})},
                                             storeWith({"mark.png", "a.svg"}));
  composition->setImplicitAssetMirroring(true);
  const Results results = composition->fullySpecialize(Platform::iOS);
  EXPECT_EQ(results.referencedAssetNames, names({"mark.png", "a.svg"}));
  EXPECT_EQ(results.mirrorableAssetNames, names({"mark.png", "a.svg"}));
  EXPECT_EQ(composition->assetStore().assets().size(), 2U);
}

TEST(Flattening, AnAssetUsedMirroredAndFixedGainsOneMirrorableCopy) {
  auto mirrored = layerShowing("mark.png");
  auto fixed = layerShowing("mark.png");
  setMirrorable(*mirrored, true);
  auto composition = IconComposition::create({Group::create("G", {mirrored, fixed})}, storeWith({"mark.png"}));
  const Results results = composition->fullySpecialize(Platform::macOS);

  EXPECT_EQ(results.referencedAssetNames, names({"mark.png", "mark.mirrorable.png"}));
  EXPECT_EQ(results.mirrorableAssetNames, names({"mark.mirrorable.png"}));
  ASSERT_EQ(composition->assetStore().assets().size(), 2U);
  EXPECT_TRUE(*composition->assetStore()[AssetName("mark.png")] ==
              *composition->assetStore()[AssetName("mark.mirrorable.png")]);
  for (const Appearance appearance : concreteValidAppearances(Platform::macOS)) {
    const SpecializationSlot slot{Idiom::macOS, appearance};
    EXPECT_EQ(mirrored->imageName().explicitValue(slot), std::optional(Layer::ImageName(AssetName("mark.mirrorable.png"))));
    EXPECT_EQ(fixed->imageName().explicitValue(slot), std::optional(Layer::ImageName(AssetName("mark.png"))));
  }
}

TEST(Flattening, TheMirrorableCopyTakesAFreeName) {
  auto mirrored = layerShowing("mark.png");
  setMirrorable(*mirrored, true);
  AssetStore store = storeWith({"mark.png"});
  store.set(AssetName("mark.mirrorable.png"), AssetFile(std::vector<std::uint8_t>{9, 9}));
  auto other = layerShowing("mark.mirrorable.png");
  auto composition = IconComposition::create({Group::create("G", {mirrored, layerShowing("mark.png"), other})}, store);
  const Results results = composition->fullySpecialize(Platform::iOS);
  EXPECT_EQ(results.mirrorableAssetNames, names({"mark.mirrorable 2.png"}));
  EXPECT_EQ(results.referencedAssetNames, names({"mark.png", "mark.mirrorable.png", "mark.mirrorable 2.png"}));
}

TEST(Flattening, AGroupHiddenOnEveryAppearanceGoesWithItsAssets) {
  auto hidden = Group::create("Hidden", {layerShowing("gone.png")});
  hidden->setIsHidden(SpecializableProperty<bool>(true));
  auto darkOnly = Group::create("DarkHidden", {layerShowing("kept.png")});
  auto isHidden = darkOnly->isHidden();
  isHidden.setExplicitValue(true, SpecializationSlot::dark);
  darkOnly->setIsHidden(isHidden);
  auto composition = IconComposition::create({hidden, darkOnly}, storeWith({"gone.png", "kept.png"}));

  const Results results = composition->fullySpecialize(Platform::iOS);
  ASSERT_EQ(composition->groups().size(), 1U);
  EXPECT_EQ(composition->groups()[0], darkOnly);
  EXPECT_EQ(results.referencedAssetNames, names({"kept.png"}));
  // On watchOS there is no dark appearance, so the same group would show everywhere.
}

TEST(Flattening, AnInvisibleGlassLayerSurvivesAndLosesGlassWhereHidden) {
  auto glass = layerShowing("glass.png");
  glass->setOpacity(SpecializableProperty<double>(0.0));
  auto isHidden = glass->isHidden();
  isHidden.setExplicitValue(true, SpecializationSlot::tinted);
  glass->setIsHidden(isHidden);
  auto clear = layerShowing("clear.png");
  clear->setOpacity(SpecializableProperty<double>(0.0));
  clear->setIsGlass(SpecializableProperty<bool>(false));
  auto composition = IconComposition::create({Group::create("G", {glass, clear})}, storeWith({"glass.png", "clear.png"}));

  composition->fullySpecialize(Platform::iOS);
  ASSERT_EQ(composition->groups()[0]->layers().size(), 1U);
  EXPECT_EQ(composition->groups()[0]->layers()[0], glass);
  for (const Appearance appearance : concreteValidAppearances(Platform::iOS)) {
    SCOPED_TRACE(std::string(rawValue(appearance)));
    EXPECT_EQ(glass->isGlass().explicitValue({Idiom::iOS, appearance}), std::optional(appearance != Appearance::tinted));
  }
}

TEST(Flattening, SharedSquaresShowTheSquareValuesNotTheUnusedIOSOnes) {
  auto layer = layerShowing("a.png");
  auto opacity = layer->opacity();
  opacity.setExplicitValue(0.25, {Idiom::square, Appearance::base});
  opacity.setExplicitValue(0.75, {Idiom::iOS, Appearance::base});  // never shown while the squares are shared
  layer->setOpacity(opacity);
  auto composition = IconComposition::create({Group::create("G", {layer})}, storeWith({"a.png"}));
  composition->fullySpecialize(Platform::iOS);
  EXPECT_EQ(layer->opacity().effectiveValue({Idiom::iOS, Appearance::dark}), 0.25);
  EXPECT_EQ(composition->supportedPlatforms(), SupportedPlatforms::only(Platform::iOS));
}

using FlatteningUndoTest = DocumentTest;

TEST_F(FlatteningUndoTest, UndoingEveryStepRestoresTheDocument) {
  auto mirrored = layerShowing("mark.png");
  setMirrorable(*mirrored, true);
  auto hidden = Group::create("Hidden", {layerShowing("gone.png")});
  hidden->setIsHidden(SpecializableProperty<bool>(true));
  auto composition = IconComposition::create({Group::create("G", {mirrored, layerShowing("mark.png")}), hidden},
                                             storeWith({"mark.png", "gone.png"}));
  composition->associateWithDocument(document);
  const auto original = composition->snapshot();
  composition->fullySpecialize(Platform::watchOS);
  EXPECT_NE(composition->snapshot(), original);
  undoAll();
  EXPECT_EQ(composition->snapshot(), original);
}

TEST(Flattening, AbstractIdiomsBecomeConcreteWithTheSameValues) {
  auto layer = layerShowing("a.png");
  auto opacity = layer->opacity();
  opacity.setExplicitValue(0.25, {Idiom::square, Appearance::dark});
  opacity.setExplicitValue(0.5, SpecializationSlot::base);
  layer->setOpacity(opacity);
  auto composition = IconComposition::create({Group::create("G", {layer})}, storeWith({"a.png"}));
  const auto before = composition->cloneBySnapshot();

  composition->makeAbstractIdiomsConcrete();
  for (const auto& entry : layer->opacity().specializations()) {
    EXPECT_NE(entry.slot.idiom, Idiom::base);
    EXPECT_NE(entry.slot.idiom, Idiom::square);
  }
  const auto& beforeLayer = *before->flattenedLayers()[0];
  for (const Platform platform : EnumTraits<Platform>::allCases) {
    for (const Appearance appearance : EnumTraits<Appearance>::allCases) {
      const SpecializationSlot wasSlot{idiom(platform, before->supportedPlatforms()), appearance};
      const SpecializationSlot isSlot{idiom(platform, composition->supportedPlatforms()), appearance};
      SCOPED_TRACE(isSlot.description());
      EXPECT_EQ(isSlot.idiom, idiomIgnoringSupportedPlatforms(platform));
      EXPECT_EQ(beforeLayer.opacity().effectiveValue(wasSlot), layer->opacity().effectiveValue(isSlot));
    }
  }
}

TEST(Flattening, NoneFillsArePromotedOnlyWhereTheyShow) {
  auto layer = layerShowing("a.png");
  auto fill = layer->fill();
  fill.setExplicitValue(Fill::none, {Idiom::iOS, Appearance::base});
  fill.setExplicitValue(Fill::solid(Color::extendedGray(0.5, 1.0)), {Idiom::iOS, Appearance::dark});
  layer->setFill(fill);
  auto composition = IconComposition::create({Group::create("G", {layer})}, storeWith({"a.png"}));
  composition->promoteNoneFillsToEachAppearance();
  std::vector<SpecializationSlot> slots;
  for (const auto& entry : layer->fill().specializations()) slots.push_back(entry.slot);
  EXPECT_THAT(slots, ::testing::ElementsAre(SpecializationSlot{Idiom::iOS, Appearance::base},
                                            SpecializationSlot{Idiom::iOS, Appearance::light},
                                            SpecializationSlot{Idiom::iOS, Appearance::dark},
                                            SpecializationSlot{Idiom::iOS, Appearance::tinted}));
  EXPECT_EQ(layer->fill().effectiveValue({Idiom::iOS, Appearance::dark}).kind, Fill::Kind::solid);
  EXPECT_EQ(layer->fill().effectiveValue({Idiom::iOS, Appearance::tinted}).kind, Fill::Kind::none);
}

TEST(Flattening, CompactNamedAssetsKeepsTheOrderOfTheNamesItHolds) {
  auto composition = IconComposition::create({}, storeWith({"a.png", "b.png"}));
  const auto files = composition->compactNamedAssets({AssetName("b.png"), AssetName("missing.png"), AssetName("a.png")});
  ASSERT_EQ(files.size(), 2U);
  EXPECT_EQ(files[0].name, AssetName("b.png"));
  EXPECT_EQ(files[1].name, AssetName("a.png"));
}

}  // namespace
}  // namespace iconwright
