#include "foundation/tool/IconReadingCommand.hpp"

#include <string>
#include <vector>

#include "foundation/support/Assertions.hpp"
#include "foundation/support/ListJoining.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/tool/ClassRegistry.hpp"

namespace iconwright {

std::optional<Rendition> optionalRendition(const ToolCommand::Arguments& arguments, std::string_view name) {
  const auto text = arguments.optionalArgument(name);
  if (!text) return std::nullopt;
  if (const auto rendition = enumFromRawValue<Rendition>(*text)) return rendition;
  if (const auto rendition = renditionFromFileNameComponent(*text)) return rendition;
  std::vector<std::string> names;
  for (Rendition rendition : EnumTraits<Rendition>::allCases) names.emplace_back(rawValue(rendition));
  throw MessageError("Unknown rendition name: " + iconwright::quoted(*text) + ". Should be one of " + quotedAlternatives(names));
}

std::optional<Localization> optionalLocalization(const ToolCommand::Arguments& arguments, std::string_view name) {
  const auto text = arguments.optionalArgument(name);
  if (!text) return std::nullopt;
  return Localization::fromCodableString(*text);
}

RenderingConfiguration requestedRenderingConfiguration(const ToolCommand::Arguments& arguments,
                                                       const IconComposition& icon, bool requirePlatform) {
  const SupportedPlatforms& supported = icon.supportedPlatforms();
  Platform platform = Platform::iOS;
  if (requirePlatform || arguments.optionalArgument("platform")) {
    platform = requiredPlatform(arguments, "platform");
  } else if (const auto selectable = supported.selectablePlatforms(); !selectable.empty()) {
    platform = selectable.front();
  }
  RenderingConfiguration::Options options;
  if (auto localization = optionalLocalization(arguments, "language")) options.localization = std::move(*localization);
  return RenderingConfiguration::make(platform, supported,
                                      optionalRendition(arguments, "rendition").value_or(Rendition::lightColor),
                                      std::move(options));
}

JSONValue rectJSON(const std::optional<Rect>& rect) {
  if (!rect) return nullptr;
  return JSONValue::Object{{"x", rect->origin.x},
                           {"y", rect->origin.y},
                           {"width", rect->size.width},
                           {"height", rect->size.height}};
}

JSONValue sizeJSON(const std::optional<Size>& size) {
  if (!size) return nullptr;
  return JSONValue::Object{{"width", size->width}, {"height", size->height}};
}

void IconReadingCommand::inspect(const std::shared_ptr<IconComposition>&) {
  ICONWRIGHT_FATAL("ToolCommand.IconReadingCommand",
                   unqualifiedTypeName(typeid(*this)) + " has not overridden required method");
}

void IconReadingCommand::run() { inspect(readInputIcon(arguments())); }

}  // namespace iconwright
