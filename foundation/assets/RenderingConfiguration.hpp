// RenderingConfiguration: how an icon is to be shown — platform, rendition, localization,
// size, background and the tint an inspector edits. The platform and the rendition are kept
// as wished; what may be drawn is worked out on each read against the supported platforms,
// so a wish survives a passing narrowing of them. It lives with the assets because its
// background may be an image of the document.
#pragma once

#include "foundation/assets/Background.hpp"
#include "foundation/platforms/ConstrainedPlatform.hpp"
#include "foundation/platforms/GeometryResolutionContext.hpp"
#include "foundation/platforms/InspectedTintMode.hpp"
#include "foundation/platforms/Localization.hpp"
#include "foundation/platforms/Platform.hpp"
#include "foundation/platforms/RasterSize.hpp"
#include "foundation/platforms/Rendition.hpp"
#include "foundation/platforms/SupportedPlatforms.hpp"
#include "foundation/specialization/SpecializationSlot.hpp"

namespace iconwright {

struct RenderingConfiguration {
  using InspectedTintMode = iconwright::InspectedTintMode;
  using Background = iconwright::Background;

  /// What each field starts as, unless given.
  struct Options {
    Localization localization = Localization::base();
    RasterSize previewSize = RasterSize::makeSquare(1024, 1);
    Background background = Background::initial();
    bool shouldApplyPreTahoeEffects = false;
    double lightAngle = 0;
    bool globalEffectsEnabled = true;
    bool drawMitigatedVersion = false;
  };

  Platform unvalidatedPlatform = Platform::iOS;
  Localization localization = Localization::base();
  bool shouldApplyPreTahoeEffects = false;
  double lightAngle = 0;
  bool globalEffectsEnabled = true;
  bool drawMitigatedVersion = false;
  RasterSize previewSize = RasterSize::makeSquare(1024, 1);
  double tintSpectrumPosition = 0.75;
  double tintAlpha = 0.625;
  InspectedTintMode lastTintMode = InspectedTintMode::lightClear;
  Rendition unvalidatedRendition = Rendition::lightColor;
  Background background = Background::initial();
  SupportedPlatforms supportedPlatforms = SupportedPlatforms::defaultValue();

  /// Stores the wishes unchecked; the three tint fields take their creation values.
  [[nodiscard]] static RenderingConfiguration make(Platform platform, const SupportedPlatforms& supportedPlatforms,
                                                   Rendition rendition, Options options);
  [[nodiscard]] static RenderingConfiguration make(Platform platform, const SupportedPlatforms& supportedPlatforms,
                                                   Rendition rendition) {
    return make(platform, supportedPlatforms, rendition, Options());
  }

  /// 0.25 ... 1.0.
  static constexpr ClosedRange<double> tintLogicalAlphaRange = iconwright::tintLogicalAlphaRange;
  [[nodiscard]] static const std::array<Color, 7>& tintLogicalSpectrumColors() {
    return iconwright::tintLogicalSpectrumColors();
  }
  [[nodiscard]] static const std::vector<GradientStop>& tintLogicalSpectrum() { return iconwright::tintLogicalSpectrum(); }

  /// The supported platform nearest the wish; absent when none is supported.
  [[nodiscard]] std::optional<Platform> validPlatform() const;
  /// validPlatform, else the wish.
  [[nodiscard]] Platform platform() const;
  [[nodiscard]] ConstrainedPlatform constrainedPlatform() const { return {platform(), supportedPlatforms}; }
  /// The wish on iOS and macOS. On watchOS, or with no valid platform, a rendition of a dark
  /// or tinted appearance becomes lightColor.
  [[nodiscard]] Rendition validatedRendition() const;
  /// The idiom of the valid platform (square for shared squares; the iOS rule without one)
  /// with the source appearance of validatedRendition.
  [[nodiscard]] SpecializationSlot validatedSpecializationSlot() const;
  /// The same idiom with the source appearance of the wished rendition.
  [[nodiscard]] SpecializationSlot unvalidatedSpecializationSlot() const;
  [[nodiscard]] Appearance inspectedValidatedAppearance() const { return sourceAppearance(validatedRendition()); }
  [[nodiscard]] Rendition inspectedValidatedRendition() const { return validatedRendition(); }
  /// The tint mode of validatedRendition; absent for the two colour renditions.
  [[nodiscard]] std::optional<InspectedTintMode> inspectedValidatedTintMode() const {
    return inspectedTintMode(validatedRendition());
  }

  [[nodiscard]] Size size() const { return previewSize.size; }
  [[nodiscard]] int scale() const { return previewSize.scale; }
  [[nodiscard]] Size pixelSize() const { return previewSize.pixelSize(); }
  /// tintAlpha mapped from the logical alpha range onto 0 ... 1.
  [[nodiscard]] double tintStrength() const { return (tintAlpha - 0.25) / 0.75; }

  /// validatedSpecializationSlot, platform and localization.
  [[nodiscard]] GeometryResolutionContext geometryContext() const {
    return {validatedSpecializationSlot(), platform(), localization};
  }

  friend bool operator==(const RenderingConfiguration&, const RenderingConfiguration&) = default;
};

}  // namespace iconwright
