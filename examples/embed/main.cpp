// Opens an icon document, lists its groups and layers with the images they show, their image
// sizes and where they land on the canvas of the document's first platform, and hit-tests the
// canvas centre: the start of a program that embeds IconwrightFoundation.
//   embed-example Icon.icon
// README.md beside this file says how to build it against the installed library.
#include <cstddef>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>

#include "foundation/assets/RenderingConfiguration.hpp"
#include "foundation/document/IconComposition.hpp"
#include "foundation/format/IconCompositionSnapshot.hpp"

namespace {

using iconwright::GeometryResolutionContext;
using iconwright::Group;
using iconwright::IconComposition;
using iconwright::Layer;

std::string imageText(const Layer::ImageName& image) { return image ? image->fileName() : "(none)"; }

/// The image a layer shows in the base slot, then each other slot that has its own:
/// "Glyph.svg, Dark: Glyph-dark.svg".
std::string describeImages(const Layer& layer) {
  const auto& images = layer.imageName();
  std::string text = imageText(images.effectiveValue(iconwright::SpecializationSlot::base));
  for (const auto& specialization : images.specializations()) {
    if (specialization.slot.isBaseSlot()) continue;
    text += ", " + specialization.slot.displayName() + ": " + imageText(specialization.value);
  }
  return text;
}

std::string rectText(const std::optional<iconwright::Rect>& rect) {
  if (!rect) return "(none)";
  std::ostringstream text;
  text << "(" << rect->origin.x << ", " << rect->origin.y << ", " << rect->size.width << " x " << rect->size.height << ")";
  return text.str();
}

void listLayer(const Layer& layer, std::size_t index, const GeometryResolutionContext& context) {
  std::cout << "  layer " << index + 1 << ": " << layer.inspectedName() << "\n";
  std::cout << "    image: " << describeImages(layer) << "\n";
  if (const auto size = layer.contentSize(context.slot)) {
    std::cout << "    image size: " << size->width << " x " << size->height << "\n";
  }
  std::cout << "    visual frame: " << rectText(layer.visualFrame(context)) << "\n";
}

void listGroup(const Group& group, std::size_t index, const GeometryResolutionContext& context) {
  std::cout << "group " << index + 1 << ": " << group.inspectedName() << "\n";
  for (std::size_t i = 0; i < group.layers().size(); ++i) listLayer(*group.layers()[i], i, context);
}

/// The frontmost layer whose image covers the point: the first group is frontmost, and within
/// a group the first layer.
const Layer* layerHit(const IconComposition& icon, iconwright::Point point, const GeometryResolutionContext& context) {
  for (const auto& group : icon.groups()) {
    for (const auto& layer : group->layers()) {
      if (layer->hitTest(point, context)) return layer.get();
    }
  }
  return nullptr;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: embed-example DOCUMENT\n";
    return 2;
  }
  try {
    // Reads the package, icon.json and Assets/, into a live document.
    const std::shared_ptr<IconComposition> icon = iconwright::createFromFilePath<IconComposition>(argv[1]);
    const auto& groups = icon->groups();
    std::cout << argv[1] << ": " << groups.size() << (groups.size() == 1 ? " group\n" : " groups\n");
    // Geometry is asked for one platform and rendition: here the document's first platform
    // in its light appearance.
    const auto platforms = icon->supportedPlatforms().selectablePlatforms();
    const auto platform = platforms.empty() ? iconwright::Platform::iOS : platforms.front();
    const GeometryResolutionContext context =
        iconwright::RenderingConfiguration::make(platform, icon->supportedPlatforms(), iconwright::Rendition::lightColor)
            .geometryContext();
    std::cout << "on " << iconwright::displayName(platform) << ":\n";
    for (std::size_t i = 0; i < groups.size(); ++i) listGroup(*groups[i], i, context);
    const iconwright::Size canvas = iconwright::extendedCanvasSize(platform);
    const iconwright::Point centre{canvas.width / 2, canvas.height / 2};
    const Layer* hit = layerHit(*icon, centre, context);
    std::cout << "the centre hits: " << (hit ? hit->inspectedName() : std::string("nothing")) << "\n";
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "error: " << error.what() << "\n";
    return 1;
  }
}
