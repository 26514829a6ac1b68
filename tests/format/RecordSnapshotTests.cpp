#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "foundation/format/IconCompositionSnapshot.hpp"
#include "foundation/json/JSONReader.hpp"
#include "foundation/json/JSONWriter.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

using Slot = SpecializationSlot;

constexpr JSONWritingOptions compact{false, false, false};

std::shared_ptr<IconComposition> open(const std::string& manifest) {
  return createFromFileWrapper<IconComposition>(
      FileWrapper::directory({{"icon.json", FileWrapper::regularFile(manifest)}}));
}

// The manifest of a document in one line, for comparing with a short expectation.
std::string compactManifest(const IconComposition& document) {
  return writeJSON(document.snapshot().jsonContent().encodeJSON(), compact);
}

Layer::Snapshot readLayer(const std::string& json) {
  const JSONValue value = parseJSON(json);
  return Layer::Snapshot::decodeJSON(Decoder(value));
}

TEST(LayerSnapshot, EmptyObjectIsALayerOfDefaults) {
  const Layer::Snapshot snapshot = readLayer("{}");
  EXPECT_EQ(snapshot, Layer::Snapshot{});
  const auto layer = Layer::create(snapshot);
  const auto fresh = Layer::create();
  EXPECT_EQ(layer->name(), std::nullopt);
  EXPECT_EQ(layer->imageName(), fresh->imageName());
  EXPECT_EQ(layer->fill(), fresh->fill());
  EXPECT_EQ(layer->isGlass(), fresh->isGlass());
  EXPECT_EQ(writeJSON(layer->snapshot().encodeJSON(), compact), "{}");
  // "kind" and "material" are declared but read as if they were not there.
  EXPECT_EQ(readLayer(R"({"kind": "image", "material": {"x": 1}})"), Layer::Snapshot{});
  // The singular key wins over the plural one.
  EXPECT_EQ(readLayer(R"({"fill": "none", "fill-specializations": [{"value": "automatic"}]})").fill,
            SpecializableProperty<Fill>::Snapshot::universal(Fill::none));
}

TEST(LayerSnapshot, EveryPropertyReachesTheLiveLayerAndBack) {
  const std::string json =
      R"({"asset-mirroring":{"mirrorable":true},"blend-mode-specializations":[{"appearance":"dark","value":"multiply"}],)"
      R"("fill":"none","glass":false,"hidden":true,"image-name-specializations":[{"value":"a.svg"},)"
      R"({"appearance":"dark","value":null}],"name":"Ring","opacity":0.25,)"
      R"("position":{"scale":2,"translation-in-points":[3,-4]}})";
  const auto layer = Layer::create(readLayer(json));
  EXPECT_EQ(layer->name(), "Ring");
  EXPECT_EQ(layer->opacity().effectiveValue(Slot::base), 0.25);
  EXPECT_EQ(layer->blendMode().effectiveValue(Slot::dark), BlendMode::multiply);
  EXPECT_EQ(layer->blendMode().effectiveValue(Slot::base), BlendMode::normal);
  EXPECT_EQ(layer->imageName().effectiveValue(Slot::base), AssetName("a.svg"));
  EXPECT_EQ(layer->imageName().effectiveValue(Slot::dark), std::nullopt);
  EXPECT_EQ(layer->position().effectiveValue(Slot::tinted), Position(3, -4, 2));
  EXPECT_EQ(writeJSON(layer->snapshot().encodeJSON(), compact), json);
}

TEST(GroupSnapshot, CloneIsAFreeCopyWithEverySpecialization) {
  const auto document = open(R"({"groups": [{"name": "Front", "layers": [{"name": "a"}, {"name": "b"}],
      "lighting-specializations": [{"value": "combined"}, {"idiom": "watchOS", "appearance": "tinted", "value": "individual"}],
      "shadow": {"kind": "layer-color", "opacity": 1.62}, "blur-material": null, "refractivity": {"depth": 1}}]})");
  const auto& group = document->groups().front();
  const auto clone = group->clone();
  EXPECT_NE(clone, group);
  EXPECT_EQ(clone->iconComposition(), nullptr);
  EXPECT_EQ(clone->document(), nullptr);
  ASSERT_EQ(clone->layers().size(), 2U);
  EXPECT_NE(clone->layers()[0], group->layers()[0]);
  EXPECT_EQ(clone->layers()[0]->group(), clone);
  EXPECT_EQ(clone->snapshot(), group->snapshot());
  EXPECT_EQ(clone->lighting().specializations().size(), 2U);

  const auto layerClone = group->layers()[1]->clone();
  EXPECT_EQ(layerClone->group(), nullptr);
  EXPECT_EQ(layerClone->name(), "b");
}

TEST(GroupSnapshot, MembersTheFormatDoesNotDeclareTravelAlong) {
  const auto document = open(
      R"({"features": ["refractivity"], "groups": [{"layers": [{"kind": "x", "zeta": [1, 2], "alpha": {}}], "refractivity": {"depth": 0.5}}]})");
  EXPECT_EQ(document->unknownManifestMembers().size(), 1U);
  EXPECT_EQ(document->groups()[0]->unknownManifestMembers().size(), 1U);
  EXPECT_EQ(document->groups()[0]->layers()[0]->unknownManifestMembers().size(), 2U);
  EXPECT_EQ(compactManifest(*document),
            R"({"features":["refractivity"],"groups":[{"layers":[{"alpha":{},"zeta":[1,2]}],"refractivity":{"depth":0.5}}],)"
            R"("supported-platforms":{"circles":["watchOS"],"squares":"shared"}})");
}

TEST(GroupSnapshot, UnknownFeaturesKeepUndecodableMembersRaw) {
  struct Row {
    const char* label;
    const char* group;
    const char* written;
  };
  const std::vector<Row> rows{
      {"a string where a Boolean belongs", R"({"layers": [], "specular": "inside"})", R"("specular":"inside")"},
      {"a bad record in a list", R"({"layers": [], "opacity-specializations": [{"value": 1}, {"idiom": "visionOS", "value": 0}]})",
       R"("opacity-specializations":[{"value":1},{"idiom":"visionOS","value":0}])"},
      {"a name that is not text", R"({"layers": [], "name": 7})", R"("name":7)"},
      {"a layer list that is not a list", R"({"layers": "all"})", R"("layers":"all")"},
      {"a value's own error", R"({"layers": [{"blend-mode": "dissolve"}]})", R"("blend-mode":"dissolve")"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    // Without a feature the read fails.
    EXPECT_THROW(open(std::string(R"({"groups": [)") + row.group + "]}"), std::exception);
    const auto document = open(std::string(R"({"features": ["specular-location"], "groups": [)") + row.group + "]}");
    const std::string manifest = compactManifest(*document);
    EXPECT_NE(manifest.find(row.written), std::string::npos) << manifest;
    EXPECT_EQ(open(manifest)->snapshot(), document->snapshot());
  }
}

TEST(GroupSnapshot, PropertyOnceSetWinsOverItsKeptValue) {
  const auto document = open(R"({"features": ["specular-location"], "groups": [{"layers": [], "specular": "inside"}]})");
  const auto& group = document->groups().front();
  EXPECT_TRUE(group->specular().specializations().empty());

  SpecializableProperty<bool> specular = group->specular();
  specular.setExplicitValue(false, Slot::dark);
  group->setSpecular(specular);
  EXPECT_EQ(compactManifest(*document),
            R"({"features":["specular-location"],"groups":[{"layers":[],"specular-specializations":[{"appearance":"dark","value":false}]}],)"
            R"("supported-platforms":{"circles":["watchOS"],"squares":"shared"}})");

  // Removing the override again lets the kept value back out.
  specular.removeAllSpecializations();
  group->setSpecular(specular);
  EXPECT_NE(compactManifest(*document).find(R"("specular":"inside")"), std::string::npos);
}

// The manifest key a property's observed name calls for: kebab case, without an "is" prefix.
std::string kebabKey(std::string_view name) {
  if (name.size() > 2 && name.starts_with("is") && std::isupper(static_cast<unsigned char>(name[2]))) name.remove_prefix(2);
  std::string key;
  for (const char c : name) {
    if (std::isupper(static_cast<unsigned char>(c))) {
      if (!key.empty()) key += '-';
      key += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    } else {
      key += c;
    }
  }
  return key;
}

// Each row of the member type's property table names its keys after its property, and its
// property, given an override of its own, is written under the row's plural key and comes
// back to the same live property: a misspelt key, or two rows sharing one snapshot field,
// fails here.
template <class Member>
void expectEveryTablePropertyTravelsUnderItsKeys(const std::shared_ptr<Member>& member) {
  const Slot slot{Idiom::watchOS, Appearance::tinted};
  member->updateProperties([&](std::string_view, auto& property) { property.makeValueExplicit(slot); });
  const JSONValue json = member->snapshot().encodeJSON();
  const auto back = Member::create(Member::Snapshot::decodeJSON(Decoder(json)));
  std::size_t rows = 0;
  Member::forEachPropertyKeyPath([&](const auto& row) {
    SCOPED_TRACE(row.name);
    ++rows;
    EXPECT_EQ(row.keys.key, kebabKey(row.name));
    EXPECT_EQ(row.keys.pluralKey, std::string(row.keys.key) + "-specializations");
    EXPECT_NE(json.find(row.keys.pluralKey), nullptr);
    EXPECT_TRUE((*back).*row.storage == (*member).*row.storage);
  });
  EXPECT_EQ(json.objectValue().size(), rows + (std::is_same_v<Member, Group> ? 1 : 0));  // and "layers"
}

TEST(PropertyTable, EveryRowTravelsThroughTheManifestUnderItsOwnKeys) {
  expectEveryTablePropertyTravelsUnderItsKeys(Group::create());
  expectEveryTablePropertyTravelsUnderItsKeys(Layer::create());
  EXPECT_EQ(IconComposition::fillKeyPath.keys.key, kebabKey(IconComposition::fillKeyPath.name));
}

}  // namespace
}  // namespace iconwright
