// Documents for the renderer's tests: groups and layers with every effect off unless a test
// turns it on, and a layer painter that fills a rectangle per layer in one colour, so that
// the compositing model can be checked without any asset.
#pragma once

#include <map>
#include <memory>

#include "foundation/document/IconComposition.hpp"
#include "kit/render/IconRenderer.hpp"

namespace iconwright::kit::testing {

struct Shape {
  Rect rect;
  RGBA color;
};

struct Scene {
  std::shared_ptr<IconComposition> icon = IconComposition::create();
  std::map<const Layer*, Shape> shapes;

  /// A group with no shadow, translucency, blur or specular highlight, appended at the back.
  std::shared_ptr<Group> addGroup() {
    auto group = Group::create();
    group->setShadow(SpecializableProperty<Shadow>(Shadow{Shadow::Kind::none, 0}));
    group->setTranslucency(SpecializableProperty<Translucency>(Translucency{false, 0}));
    group->setBlurMaterial(SpecializableProperty<BlurMaterial>(BlurMaterial::zero));
    group->setSpecular(SpecializableProperty<bool>(false));
    group->setLighting(SpecializableProperty<Lighting>(Lighting::combined));
    icon->append(group);
    return group;
  }
  /// A layer without glass painting `rect` (canvas points) in `color`, appended at the back.
  std::shared_ptr<Layer> addLayer(const std::shared_ptr<Group>& group, Rect rect, RGBA color) {
    auto layer = Layer::create();
    layer->setIsGlass(SpecializableProperty<bool>(false));
    group->append(layer);
    shapes[layer.get()] = {rect, color};
    return layer;
  }
  void setBackdrop(const Fill& fill) { icon->setFill(SpecializableProperty<Fill>(fill)); }

  [[nodiscard]] LayerPainter painter() const {
    return [this](Painter& painter, const Layer& layer) -> std::optional<Rect> {
      const auto shape = shapes.find(&layer);
      if (shape == shapes.end()) return std::nullopt;
      painter.fillRect(shape->second.rect, Paint::solid(shape->second.color));
      return shape->second.rect;
    };
  }
  [[nodiscard]] Raster render(int side, Rendition rendition = Rendition::lightColor, Platform platform = Platform::iOS,
                              RenderStyle style = {}) const {
    const SpecializationSlot slot{platform == Platform::watchOS ? Idiom::watchOS : Idiom::square,
                                  sourceAppearance(rendition)};
    return *IconRenderer(*icon, {platform, rendition, slot, Localization::base()}, style, painter()).render(side, side);
  }
};

/// Straight colour of a pixel as bytes-over-255, for readable failures.
inline std::string describe(const RGBA& c) {
  return "(" + std::to_string(c.red) + ", " + std::to_string(c.green) + ", " + std::to_string(c.blue) + ", " +
         std::to_string(c.alpha) + ")";
}

}  // namespace iconwright::kit::testing
