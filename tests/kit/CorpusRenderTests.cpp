// Every corpus package renders on every platform it offers, in every rendition that platform
// has, without failing, and a clone made through its snapshot draws the same pixels; no
// rendered file is kept.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "foundation/tool/IconMutatingCommand.hpp"
#include "kit/render/DocumentRendering.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright::kit {
namespace {

TEST(CorpusRendering, EveryPackagePlatformAndRendition) {
  ICONWRIGHT_REQUIRE_SHARED_DIRECTORY(shared);
  const std::filesystem::path packages = shared / "corpus" / "packages";
  ASSERT_TRUE(std::filesystem::is_directory(packages));
  int rendered = 0;
  for (const auto& entry : std::filesystem::directory_iterator(packages)) {
    SCOPED_TRACE(entry.path().filename().string());
    ToolCommand::Arguments arguments;
    arguments.inputDocumentPath = FilePath::make(entry.path().string());
    const auto icon = readInputIcon(arguments);
    const auto clone = icon->cloneBySnapshot();
    for (const Platform platform : icon->supportedPlatforms().selectablePlatforms()) {
      for (const Rendition rendition : validRenditions(platform)) {
        SCOPED_TRACE(std::string(rawValue(platform)) + " " + std::string(rawValue(rendition)));
        const auto raster = renderDocument(*icon, resolveRendering(*icon, platform, rendition, Localization::base()),
                                           {}, 96, 96);
        ASSERT_TRUE(raster.has_value());
        const auto cloned = renderDocument(*clone, resolveRendering(*clone, platform, rendition, Localization::base()),
                                           {}, 96, 96);
        ASSERT_TRUE(cloned.has_value());
        EXPECT_TRUE(std::ranges::equal(raster->pixels(), cloned->pixels())) << "a clone draws the same pixels";
        EXPECT_EQ(raster->colorAt(0, 0).alpha, 0) << "the corner is outside the shape";
        ++rendered;
      }
    }
  }
  EXPECT_GT(rendered, 13);
}

}  // namespace
}  // namespace iconwright::kit
