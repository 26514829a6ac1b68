// Platform: the three platforms an icon is made for, and what each one's canvas is. All
// geometry of a document is in points on these canvases: 1024 square for iOS and macOS; on
// watchOS the canvas grows by an outset of 32 on each side for the round icon's backdrop.
// Also which idioms, appearances and renditions each platform knows, and the variants an
// export produces.
#pragma once

#include <array>
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/json/JSONCoding.hpp"
#include "foundation/graphics/Geometry.hpp"
#include "foundation/graphics/Path.hpp"
#include "foundation/platforms/Rendition.hpp"
#include "foundation/specialization/Appearance.hpp"
#include "foundation/specialization/Idiom.hpp"
#include "foundation/support/Enumeration.hpp"

namespace iconwright {

enum class Platform : std::uint8_t { iOS, macOS, watchOS };

template <>
struct EnumTraits<Platform> {
  static constexpr std::array allCases{Platform::iOS, Platform::macOS, Platform::watchOS};
  [[nodiscard]] static constexpr std::string_view rawValue(Platform platform) {
    constexpr std::array<std::string_view, 3> texts{"iOS", "macOS", "watchOS"};
    return texts[caseIndex(platform)];
  }
};

// The three texts are the same: "iOS", "macOS", "watchOS".
[[nodiscard]] constexpr std::string_view rawValue(Platform platform) { return EnumTraits<Platform>::rawValue(platform); }
[[nodiscard]] constexpr std::string_view fileNameComponent(Platform platform) { return rawValue(platform); }
[[nodiscard]] constexpr std::string_view displayName(Platform platform) { return rawValue(platform); }

/// 1024 x 1024 on every platform.
[[nodiscard]] constexpr Size logicalCanvasSize(Platform) { return {1024, 1024}; }
/// 0 x 0, and 32 x 32 on watchOS.
[[nodiscard]] constexpr Size chicletOutset(Platform platform) {
  return platform == Platform::watchOS ? Size{32, 32} : Size{0, 0};
}
/// The logical canvas grown by the outset on each side: 1088 x 1088 on watchOS.
[[nodiscard]] constexpr Size extendedCanvasSize(Platform platform) {
  const Size outset = chicletOutset(platform);
  return {logicalCanvasSize(platform).width + 2 * outset.width, logicalCanvasSize(platform).height + 2 * outset.height};
}
/// Origin (outset, outset) and side 1024 + 2 * outset. On watchOS this is (32, 32, 1088, 1088),
/// which reaches 32 past extendedCanvasBounds at the far edges; that is intended.
[[nodiscard]] constexpr Rect logicalCanvasFrame(Platform platform) {
  const double outset = chicletOutset(platform).width;
  const double side = logicalCanvasSize(platform).width + 2 * outset;
  return Rect::makeXYWH(outset, outset, side, side);
}
/// Origin (0, 0) and the extended canvas size.
[[nodiscard]] constexpr Rect extendedCanvasBounds(Platform platform) {
  return {Point::zero(), extendedCanvasSize(platform)};
}
/// The corner radius of the chiclet as a share of its width: 0.26, and 0.5 (a circle) on watchOS.
[[nodiscard]] constexpr double cornerRadiusPercentage(Platform platform) {
  return platform == Platform::watchOS ? 0.5 : 0.26;
}
/// False on watchOS, which shows its icon in one appearance.
[[nodiscard]] constexpr bool supportsMultipleAppearances(Platform platform) { return platform != Platform::watchOS; }
/// The platform's own idiom, as when iOS and macOS do not share their square icon.
[[nodiscard]] constexpr Idiom idiomIgnoringSupportedPlatforms(Platform platform) {
  switch (platform) {
    case Platform::iOS: return Idiom::iOS;
    case Platform::macOS: return Idiom::macOS;
    case Platform::watchOS: return Idiom::watchOS;
  }
  return Idiom::watchOS;
}

/// The outline of the shaped backdrop: on iOS and macOS a rounded rectangle over (0, 0, 1024,
/// 1024) with continuous corners of radius 1024 * 0.26; on watchOS the ellipse in
/// (0, 0, 1088, 1088). Made once per platform.
[[nodiscard]] const Path& chicletBoundingPath(Platform platform);

/// The idioms whose values the platform can use, in declaration order: base, square and iOS;
/// base, square and macOS; base and watchOS.
[[nodiscard]] std::span<const Idiom> compatibleIdioms(Platform platform);

/// Always true on iOS and macOS; on watchOS only for base and light.
[[nodiscard]] constexpr bool isValidAppearance(Platform platform, Appearance appearance) {
  return platform != Platform::watchOS || appearance == Appearance::base || appearance == Appearance::light;
}
/// Every appearance, in declaration order, that isValidAppearance accepts (base included).
[[nodiscard]] std::vector<Appearance> concreteValidAppearances(Platform platform);
/// The renditions whose source appearance is valid, in declaration order: all six, and on
/// watchOS lightColor alone.
[[nodiscard]] std::vector<Rendition> validRenditions(Platform platform);

/// iOS, macOS, watchOS.
inline constexpr std::array<Platform, 3> exportablePlatforms{Platform::iOS, Platform::macOS, Platform::watchOS};
/// The platforms, in declaration order, whose logicalCanvasFrame is not (0, 0, 1024, 1024):
/// watchOS.
[[nodiscard]] std::vector<Platform> platformsWithCustomCanvases();

/// Every pair an export produces, platforms outside and renditions inside in declaration
/// order, keeping the renditions whose source appearance is light or base: six for iOS, six
/// for macOS and lightColor alone for watchOS, 13 in all.
[[nodiscard]] std::vector<std::pair<Platform, Rendition>> exportableVariants();

/// The first case whose fileNameComponent equals `text` exactly, or absent.
[[nodiscard]] std::optional<Platform> platformFromFileNameComponent(std::string_view text);
/// As platformFromFileNameComponent; throws MessageError
/// "Unknown platform name: “text”. Should be one of “iOS”, “macOS” or “watchOS”".
Platform requiredPlatformFromFileNameComponent(std::string_view text);

/// The name as a JSON string. An unknown string throws the MessageError of
/// requiredPlatformFromFileNameComponent.
template <>
struct JSONCoding<Platform> {
  static Platform decode(const Decoder& decoder);
  static JSONValue encode(Platform platform) { return JSONValue(rawValue(platform)); }
};

/// The raw value, for diagnostics and test failures.
std::ostream& operator<<(std::ostream& out, Platform platform);

}  // namespace iconwright
