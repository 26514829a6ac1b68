#include "foundation/assets/RenderingConfiguration.hpp"

namespace iconwright {

namespace {

Idiom idiomOfValidPlatform(std::optional<Platform> platform, const SupportedPlatforms& supported) {
  return idiom(platform.value_or(Platform::iOS), supported);
}

}  // namespace

RenderingConfiguration RenderingConfiguration::make(Platform platform, const SupportedPlatforms& supportedPlatforms,
                                                    Rendition rendition, Options options) {
  RenderingConfiguration configuration;
  configuration.unvalidatedPlatform = platform;
  configuration.localization = std::move(options.localization);
  configuration.shouldApplyPreTahoeEffects = options.shouldApplyPreTahoeEffects;
  configuration.lightAngle = options.lightAngle;
  configuration.globalEffectsEnabled = options.globalEffectsEnabled;
  configuration.drawMitigatedVersion = options.drawMitigatedVersion;
  configuration.previewSize = options.previewSize;
  configuration.unvalidatedRendition = rendition;
  configuration.background = std::move(options.background);
  configuration.supportedPlatforms = supportedPlatforms;
  return configuration;
}

std::optional<Platform> RenderingConfiguration::validPlatform() const {
  return supportedPlatforms.nearestValidPlatform(unvalidatedPlatform);
}

Platform RenderingConfiguration::platform() const { return validPlatform().value_or(unvalidatedPlatform); }

Rendition RenderingConfiguration::validatedRendition() const {
  const auto valid = validPlatform();
  if (valid == Platform::iOS || valid == Platform::macOS) return unvalidatedRendition;
  const Appearance appearance = sourceAppearance(unvalidatedRendition);
  if (appearance == Appearance::light || appearance == Appearance::base) return unvalidatedRendition;
  return Rendition::lightColor;
}

SpecializationSlot RenderingConfiguration::validatedSpecializationSlot() const {
  return {idiomOfValidPlatform(validPlatform(), supportedPlatforms), sourceAppearance(validatedRendition())};
}

SpecializationSlot RenderingConfiguration::unvalidatedSpecializationSlot() const {
  return {idiomOfValidPlatform(validPlatform(), supportedPlatforms), sourceAppearance(unvalidatedRendition)};
}

}  // namespace iconwright
