// A document drawn for one platform and rendition, as the export commands ask for it: the
// wishes are validated against the document's supported platforms (a rendition the platform
// does not have becomes the light colour one), every property is read for the validated slot,
// and each layer's asset is drawn through its geometry at the output resolution.
#pragma once

#include <optional>

#include "foundation/document/IconComposition.hpp"
#include "kit/render/IconRenderer.hpp"

namespace iconwright::kit {

/// The validated platform, rendition and slot for the wishes, through the document's
/// rendering configuration.
[[nodiscard]] ResolvedRendering resolveRendering(const IconComposition& icon, Platform platform, Rendition rendition,
                                                 const Localization& localization);

/// The icon in `pixelWidth` × `pixelHeight` pixels, centred and fitted; absent when no raster
/// of that size can be made.
[[nodiscard]] std::optional<Raster> renderDocument(const IconComposition& icon, const ResolvedRendering& rendering,
                                                   const RenderStyle& style, int pixelWidth, int pixelHeight);

}  // namespace iconwright::kit
