// Opens an icon document and lists its groups and layers with the images they show: the
// start of a program that embeds IconwrightFoundation.
//   embed-example Icon.icon
// README.md beside this file says how to build it against the installed library.
#include <cstddef>
#include <exception>
#include <iostream>
#include <memory>
#include <string>

#include "foundation/document/IconComposition.hpp"
#include "foundation/format/IconCompositionSnapshot.hpp"

namespace {

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

void listLayer(const Layer& layer, std::size_t index) {
  std::cout << "  layer " << index + 1 << ": " << layer.inspectedName() << "\n";
  std::cout << "    image: " << describeImages(layer) << "\n";
}

void listGroup(const Group& group, std::size_t index) {
  std::cout << "group " << index + 1 << ": " << group.inspectedName() << "\n";
  for (std::size_t i = 0; i < group.layers().size(); ++i) listLayer(*group.layers()[i], i);
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
    for (std::size_t i = 0; i < groups.size(); ++i) listGroup(*groups[i], i);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "error: " << error.what() << "\n";
    return 1;
  }
}
