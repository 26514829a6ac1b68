// --hit-test: which layer a canvas would pick at a point, or under a rectangle when a size is
// given, for one platform and rendition: the frontmost hit layer (groups and layers from
// index 0, the front) by its group and layer index, and whether the icon's shape itself is
// hit. Nothing is written.
//   wrighttool Icon.icon --hit-test --platform iOS --x 512 --y 512
//     → {"hit" : {"group" : 0, "layer" : 1, "name" : "Glyph"}, "icon" : true}
//   wrighttool Icon.icon --hit-test --platform watchOS --x 0 --y 0 --width 64 --height 64
// No layer hit gives "hit" : null. Hidden layers are never hit; at a point, neither is
// anything outside the icon's shape.
#include "foundation/document/Group.hpp"
#include "foundation/document/IconComposition.hpp"
#include "foundation/document/Layer.hpp"
#include "foundation/tool/IconReadingCommand.hpp"

namespace iconwright {

class WrighttoolHitTestCommand final : public IconReadingCommand {
 public:
  using IconReadingCommand::IconReadingCommand;

  static Grammar argumentGrammar() {
    return {{"platform", ArgumentKind::value}, {"rendition", ArgumentKind::value}, {"x", ArgumentKind::value},
            {"y", ArgumentKind::value},        {"width", ArgumentKind::value},     {"height", ArgumentKind::value}};
  }
  static std::string_view helpLine() {
    return "--platform P --x X --y Y [--width W --height H] [--rendition R]: the frontmost layer hit there";
  }

  void inspect(const std::shared_ptr<IconComposition>& icon) override {
    const GeometryResolutionContext context = requestedRenderingConfiguration(arguments(), *icon, true).geometryContext();
    const Point point{arguments().requiredDouble("x"), arguments().requiredDouble("y")};
    std::optional<Rect> rect;
    if (arguments().optionalArgument("width") || arguments().optionalArgument("height")) {
      rect = Rect{point, {arguments().requiredDouble("width"), arguments().requiredDouble("height")}};
    }
    const auto hits = [&](const Layer& layer) {
      return rect ? layer.hitTest(*rect, context) : layer.hitTest(point, context);
    };
    JSONValue hit = nullptr;
    const auto& groups = icon->groups();
    for (std::size_t g = 0; g < groups.size() && hit.isNull(); ++g) {
      const auto& layers = groups[g]->layers();
      for (std::size_t l = 0; l < layers.size(); ++l) {
        if (!hits(*layers[l])) continue;
        hit = JSONValue::Object{{"group", static_cast<std::int64_t>(g)},
                                {"layer", static_cast<std::int64_t>(l)},
                                {"name", layers[l]->inspectedName()}};
        break;
      }
    }
    output("hit", std::move(hit));
    output("icon", rect ? icon->hitTest(*rect, context) : icon->hitTest(point, context));
  }
};

ICONWRIGHT_REGISTER_COMMAND(WrighttoolHitTestCommand);

}  // namespace iconwright
