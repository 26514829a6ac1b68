// GeometryResolutionContext: the key with which geometry questions reach layers and assets —
// the slot whose values apply, the platform whose canvas the answer is on, and the
// localization whose asset variants are measured. Logical geometry ignores the language, so
// its lookups use the base localization; visual geometry of a localized asset keeps it.
#pragma once

#include <functional>

#include "foundation/graphics/Geometry.hpp"
#include "foundation/platforms/Localization.hpp"
#include "foundation/platforms/Platform.hpp"
#include "foundation/specialization/SpecializationSlot.hpp"

namespace iconwright {

struct GeometryResolutionContext {
  SpecializationSlot slot;
  Platform platform = Platform::iOS;
  Localization localization = Localization::base();

  /// The platform's outset of the canvas around the icon: 0 x 0, and 32 x 32 on watchOS.
  [[nodiscard]] Size chicletOutset() const { return iconwright::chicletOutset(platform); }

  /// For questions of placement alone: the base localization.
  [[nodiscard]] static GeometryResolutionContext logicalGeometryLookup(const SpecializationSlot& slot,
                                                                       Platform platform) {
    return {slot, platform, Localization::base()};
  }
  /// For questions that also look at the visible content of a localized asset.
  [[nodiscard]] static GeometryResolutionContext visualAndLogicalGeometryLookup(const SpecializationSlot& slot,
                                                                                Platform platform,
                                                                                Localization localization) {
    return {slot, platform, std::move(localization)};
  }

  friend bool operator==(const GeometryResolutionContext&, const GeometryResolutionContext&) = default;
};

}  // namespace iconwright

template <>
struct std::hash<iconwright::GeometryResolutionContext> {
  std::size_t operator()(const iconwright::GeometryResolutionContext& context) const noexcept {
    return iconwright::hashFields(context.slot, context.platform, context.localization);
  }
};
