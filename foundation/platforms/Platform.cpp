#include "foundation/platforms/Platform.hpp"

#include <ostream>
#include <string>

#include "foundation/platforms/ContinuousCorners.hpp"
#include "foundation/support/ListJoining.hpp"
#include "foundation/support/MessageError.hpp"

namespace iconwright {

namespace {

Path makeChicletBoundingPath(Platform platform) {
  if (platform == Platform::watchOS) return Path::makeEllipse(extendedCanvasBounds(platform));
  const Rect canvas{Point::zero(), logicalCanvasSize(platform)};
  return continuousCornerRoundedRect(canvas, canvas.width() * cornerRadiusPercentage(platform));
}

}  // namespace

const Path& chicletBoundingPath(Platform platform) {
  static const std::array<Path, 3> paths = {makeChicletBoundingPath(Platform::iOS),
                                            makeChicletBoundingPath(Platform::macOS),
                                            makeChicletBoundingPath(Platform::watchOS)};
  return paths[caseIndex(platform)];
}

std::span<const Idiom> compatibleIdioms(Platform platform) {
  static constexpr std::array iOS{Idiom::base, Idiom::square, Idiom::iOS};
  static constexpr std::array macOS{Idiom::base, Idiom::square, Idiom::macOS};
  static constexpr std::array watchOS{Idiom::base, Idiom::watchOS};
  switch (platform) {
    case Platform::iOS: return iOS;
    case Platform::macOS: return macOS;
    case Platform::watchOS: return watchOS;
  }
  return {};
}

std::vector<Appearance> concreteValidAppearances(Platform platform) {
  std::vector<Appearance> result;
  for (Appearance appearance : EnumTraits<Appearance>::allCases) {
    if (isValidAppearance(platform, appearance)) result.push_back(appearance);
  }
  return result;
}

std::vector<Rendition> validRenditions(Platform platform) {
  std::vector<Rendition> result;
  for (Rendition rendition : EnumTraits<Rendition>::allCases) {
    if (isValidAppearance(platform, sourceAppearance(rendition))) result.push_back(rendition);
  }
  return result;
}

std::vector<Platform> platformsWithCustomCanvases() {
  std::vector<Platform> result;
  for (Platform platform : EnumTraits<Platform>::allCases) {
    if (logicalCanvasFrame(platform) != Rect::makeXYWH(0, 0, 1024, 1024)) result.push_back(platform);
  }
  return result;
}

std::vector<std::pair<Platform, Rendition>> exportableVariants() {
  std::vector<std::pair<Platform, Rendition>> result;
  for (Platform platform : exportablePlatforms) {
    for (Rendition rendition : EnumTraits<Rendition>::allCases) {
      const Appearance appearance = sourceAppearance(rendition);
      if (platform == Platform::watchOS && appearance != Appearance::light && appearance != Appearance::base) {
        continue;
      }
      result.emplace_back(platform, rendition);
    }
  }
  return result;
}

std::optional<Platform> platformFromFileNameComponent(std::string_view text) {
  for (Platform platform : EnumTraits<Platform>::allCases) {
    if (fileNameComponent(platform) == text) return platform;
  }
  return std::nullopt;
}

Platform requiredPlatformFromFileNameComponent(std::string_view text) {
  if (auto platform = platformFromFileNameComponent(text)) return *platform;
  std::vector<std::string> names;
  for (Platform platform : EnumTraits<Platform>::allCases) names.emplace_back(fileNameComponent(platform));
  throw MessageError("Unknown platform name: " + quoted(text) + ". Should be one of " + quotedAlternatives(names));
}

Platform JSONCoding<Platform>::decode(const Decoder& decoder) {
  return requiredPlatformFromFileNameComponent(decoder.decodeString());
}

std::ostream& operator<<(std::ostream& out, Platform platform) { return out << rawValue(platform); }

}  // namespace iconwright
