// --inspect: the document as a canvas sees it for one platform, rendition and language —
// the validated choice, the canvas size, and for each group and layer in document order its
// resolved state and where its asset lands, in canvas points. Nothing is written.
//   wrighttool Icon.icon --inspect                                  first selectable platform
//   wrighttool Icon.icon --inspect --platform watchOS --rendition dark-color --language he
// A rendition is named as in the document ("light-color") or as in file names ("Default");
// a language is "base", "left-to-right", "right-to-left" or a language identifier. Rectangles
// are {"x", "y", "width", "height"}, null when the layer has no image.
#include "foundation/document/Group.hpp"
#include "foundation/document/IconComposition.hpp"
#include "foundation/document/Layer.hpp"
#include "foundation/tool/IconReadingCommand.hpp"

namespace iconwright {

namespace {

JSONValue slotJSON(const SpecializationSlot& slot) {
  return JSONValue::Object{{"idiom", rawValue(slot.idiom)}, {"appearance", rawValue(slot.appearance)}};
}

// What groups and layers share: name, hidden, opacity, blend mode and position for the slot.
template <class Member>
JSONValue::Object memberJSON(const Member& member, const SpecializationSlot& slot, bool hidden) {
  return JSONValue::Object{{"name", member.inspectedName()},
                           {"hidden", hidden},
                           {"opacity", member.opacity().effectiveValue(slot)},
                           {"blend-mode", rawValue(member.blendMode().effectiveValue(slot))},
                           {"position", member.position().effectiveValue(slot).encodeJSON()}};
}

JSONValue layerJSON(const Layer& layer, const GeometryResolutionContext& context) {
  JSONValue::Object object = memberJSON(layer, context.slot, layer.isHiddenOrHasHiddenGroup(context.slot));
  const auto& imageName = layer.imageName().effectiveValue(context.slot);
  object["image-name"] = imageName ? JSONValue(imageName->fileName()) : JSONValue(nullptr);
  const auto image = layer.image(context.slot, context.localization);
  object["asset-kind"] = !image ? "none" : image->isBitmap() ? "bitmap" : "svg";
  object["asset-size"] = sizeJSON(image ? std::optional<Size>(image->size()) : std::nullopt);
  object["frame"] = rectJSON(layer.frame(context));
  object["visual-frame"] = rectJSON(layer.visualFrame(context));
  object["alignment-frame"] = rectJSON(layer.alignmentFrame(context));
  return object;
}

JSONValue groupJSON(const Group& group, const GeometryResolutionContext& context) {
  JSONValue::Object object = memberJSON(group, context.slot, group.isHidden().effectiveValue(context.slot));
  object["bounding-frame"] = rectJSON(group.boundingFrame(context));
  object["bounding-visual-frame"] = rectJSON(group.boundingVisualFrame(context));
  JSONValue::Array layers;
  for (const auto& layer : group.layers()) layers.push_back(layerJSON(*layer, context));
  object["layers"] = std::move(layers);
  return object;
}

}  // namespace

class WrighttoolInspectCommand final : public IconReadingCommand {
 public:
  using IconReadingCommand::IconReadingCommand;

  static Grammar argumentGrammar() {
    return {{"platform", ArgumentKind::value}, {"rendition", ArgumentKind::value}, {"language", ArgumentKind::value}};
  }
  static std::string_view helpLine() {
    return "[--platform P] [--rendition R] [--language ID]: each group and layer as a canvas places it";
  }

  void inspect(const std::shared_ptr<IconComposition>& icon) override {
    const RenderingConfiguration configuration = requestedRenderingConfiguration(arguments(), *icon, false);
    const GeometryResolutionContext context = configuration.geometryContext();
    output("platform", JSONValue(rawValue(context.platform)));
    output("rendition", JSONValue(rawValue(configuration.validatedRendition())));
    output("slot", slotJSON(context.slot));
    output("language", JSONValue(context.localization.codableString()));
    output("canvas-size", sizeJSON(extendedCanvasSize(context.platform)));
    JSONValue::Array groups;
    for (const auto& group : icon->groups()) groups.push_back(groupJSON(*group, context));
    output("groups", JSONValue(std::move(groups)));
  }
};

ICONWRIGHT_REGISTER_COMMAND(WrighttoolInspectCommand);

}  // namespace iconwright
