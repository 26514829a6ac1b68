// The export commands end to end: wrighttool with the real IconwrightKit (no
// DYLD_FRAMEWORK_PATH, so the plugin beside the Foundation framework is loaded), on documents
// the tests write, looked at through the PNG files they produce.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "foundation/graphics/ColorManagement.hpp"
#include "foundation/graphics/ImageDecoding.hpp"
#include "foundation/graphics/PNGEncoding.hpp"
#include "foundation/json/JSONReader.hpp"
#include "tests/common/TestSupport.hpp"
#include "tests/wrighttool/WrighttoolRunner.hpp"

namespace iconwright {
namespace {

namespace fs = std::filesystem;
using testing::runWrighttool;
using testing::TemporaryDirectory;

struct Pixel {
  int r, g, b, a;
};

std::vector<std::uint8_t> readBytes(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// A decoded export, its pixels straight and in the space it was written in.
struct Picture {
  Image image;
  [[nodiscard]] Pixel at(int x, int y) const {
    const std::uint8_t* p = image.row(y) + 4 * x;
    const unsigned a = p[3];
    return {unpremultiplyComponent(p[2], a), unpremultiplyComponent(p[1], a), unpremultiplyComponent(p[0], a), int(a)};
  }
};

Picture decodePicture(const fs::path& path) {
  auto image = decodeImage(readBytes(path));
  if (!image) throw std::runtime_error("not an image: " + path.string());
  return {*image};
}

// A 64 × 64 PNG: an opaque square of `color` over the middle 32 × 32, transparent around it,
// and a dot in the top left quarter of the square to tell left from right.
void writeSquarePNG(const fs::path& path, Pixel color) {
  std::vector<std::uint8_t> rgba(64 * 64 * 4, 0);
  for (int y = 16; y < 48; ++y) {
    for (int x = 16; x < 48; ++x) {
      const bool dot = x < 24 && y < 24;
      std::uint8_t* p = &rgba[4 * (y * 64 + x)];
      p[0] = std::uint8_t(dot ? 255 - color.r : color.r);
      p[1] = std::uint8_t(dot ? 255 - color.g : color.g);
      p[2] = std::uint8_t(dot ? 255 - color.b : color.b);
      p[3] = 255;
    }
  }
  const auto bytes = encodeRGBAPNG(rgba, 64, 64);
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes->data()), bytes->size());
}

// One group with every effect off, one layer of Square.png at `layer` (a JSON fragment of
// extra layer members), over a solid backdrop.
fs::path writeDocument(const fs::path& directory, const std::string& layer = "", const std::string& extra = "",
                       Pixel color = {255, 0, 0, 255}) {
  const fs::path package = directory / "Doc.icon";
  fs::create_directories(package / "Assets");
  writeSquarePNG(package / "Assets" / "Square.png", color);
  testing::writeFile(package / "icon.json", R"({
  "fill-specializations": [
    {"value": {"solid": "srgb:0.00000,0.00000,1.00000,1.00000"}},
    {"appearance": "dark", "value": {"solid": "srgb:0.00000,1.00000,0.00000,1.00000"}}
  ],
  "groups": [{
    "shadow": {"kind": "none", "opacity": 0}, "translucency": {"enabled": false, "value": 0},
    "specular": false, "lighting": "combined",
    "layers": [{"image-name": "Square.png", "glass": false)" + layer + R"(}]
  }])" + extra + R"(
})");
  return package;
}

testing::ProgramRun exportImage(const fs::path& package, const fs::path& output, std::vector<std::string> more = {}) {
  std::vector<std::string> arguments{package.string(), "--export-image", "--platform", "iOS",    "--rendition",
                                     "Default",        "--width",        "256",        "--height", "256",
                                     "--scale",        "1",              "--output-file", output.string()};
  // Extra arguments replace the value of one already there, or are added.
  for (std::size_t i = 0; i + 1 < more.size(); i += 2) {
    const auto existing = std::find(arguments.begin(), arguments.end(), more[i]);
    if (existing != arguments.end()) {
      *(existing + 1) = more[i + 1];
    } else {
      arguments.insert(arguments.end(), {more[i], more[i + 1]});
    }
  }
  return runWrighttool(arguments);
}

void expectNear(Pixel actual, Pixel expected, int tolerance, const std::string& label) {
  SCOPED_TRACE(label + ": (" + std::to_string(actual.r) + ", " + std::to_string(actual.g) + ", " +
               std::to_string(actual.b) + ", " + std::to_string(actual.a) + ")");
  EXPECT_NEAR(actual.r, expected.r, tolerance);
  EXPECT_NEAR(actual.g, expected.g, tolerance);
  EXPECT_NEAR(actual.b, expected.b, tolerance);
  EXPECT_NEAR(actual.a, expected.a, tolerance);
}

TEST(ExportImage, ALayerOverItsBackdropInsideTheRoundedShape) {
  TemporaryDirectory directory;
  const fs::path package = writeDocument(directory.path(), R"(, "position": {"translation-in-points": [0, 0], "scale": 16})");
  const fs::path output = directory.path() / "out" / "icon.png";
  const auto run = exportImage(package, output, {"--color-space", "srgb"});
  ASSERT_EQ(run.status, 0) << run.err;
  const JSONValue printed = parseJSON(run.out);
  EXPECT_EQ(printed.find("output-file")->stringValue(), output.string());
  EXPECT_EQ(printed.find("pixel-width")->numberValue(), 256);
  EXPECT_EQ(printed.find("pixel-height")->numberValue(), 256);

  const Picture picture = decodePicture(output);
  ASSERT_EQ(picture.image.width(), 256);
  // The 64-pixel asset at scale 16 covers 1024 points; its opaque middle half is 128 pixels.
  expectNear(picture.at(128, 128), {255, 0, 0, 255}, 3, "the layer's colour in the middle");
  expectNear(picture.at(128, 20), {0, 0, 255, 255}, 3, "the backdrop where the layer is transparent");
  EXPECT_EQ(picture.at(1, 1).a, 0) << "outside the rounded corner";
}

TEST(ExportImage, WritesAnRGBAPNGWithTheProfileOfItsColourSpace) {
  TemporaryDirectory directory;
  const fs::path package = writeDocument(directory.path());
  for (const auto& [space, profile] :
       {std::pair{std::string("display-p3"), ColorSpace::displayP3()}, std::pair{std::string("srgb"), ColorSpace::sRGB()}}) {
    SCOPED_TRACE(space);
    const fs::path output = directory.path() / (space + ".png");
    ASSERT_EQ(exportImage(package, output, {"--color-space", space}).status, 0);
    const auto bytes = readBytes(output);
    ASSERT_GT(bytes.size(), 33u);
    EXPECT_EQ(bytes[25], 6) << "colour type: RGB with alpha";
    EXPECT_EQ(bytes[24], 8) << "8 bits a channel";
    const Picture picture = decodePicture(output);
    ASSERT_EQ(picture.image.colorSpace().kind(), ColorSpace::Kind::iccProfile);
    const auto embedded = picture.image.colorSpace().iccProfileBytes();
    // The same profile, apart from the moment it was made (bytes 24 to 35 of the header).
    const auto expected = iccProfileData(profile);
    ASSERT_EQ(embedded.size(), expected.size());
    EXPECT_TRUE(std::equal(embedded.begin(), embedded.begin() + 24, expected.begin()));
    EXPECT_TRUE(std::equal(embedded.begin() + 36, embedded.end(), expected.begin() + 36));
  }
  // Display P3 holds the sRGB blue backdrop in smaller numbers than sRGB does.
  const Picture p3 = decodePicture(directory.path() / "display-p3.png");
  const Picture srgb = decodePicture(directory.path() / "srgb.png");
  EXPECT_NEAR(srgb.at(128, 20).b, 255, 2);
  EXPECT_LT(p3.at(128, 20).b, 250);
}

TEST(ExportImage, HiddenAndHalfOpaqueLayers) {
  TemporaryDirectory directory;
  const std::string placed = R"(, "position": {"translation-in-points": [0, 0], "scale": 16})";
  const auto render = [&](const std::string& name, const std::string& layer, bool missingImage = false) {
    const fs::path package = writeDocument(directory.path() / name, layer);
    if (missingImage) {
      std::string manifest = testing::readFile(package / "icon.json");
      manifest.replace(manifest.find("Square.png"), 10, "Missing.png");
      testing::writeFile(package / "icon.json", manifest);
    }
    const fs::path output = directory.path() / (name + ".png");
    EXPECT_EQ(exportImage(package, output).status, 0);
    return output;
  };
  const Picture full = decodePicture(render("full", placed));
  const Picture half = decodePicture(render("half", placed + R"(, "opacity": 0.5)"));
  // Composited in the output space, so half opacity gives the mean of layer and backdrop there.
  const Pixel layer = full.at(128, 128), backdrop = full.at(128, 20);
  expectNear(half.at(128, 128), {(layer.r + backdrop.r) / 2, (layer.g + backdrop.g) / 2, (layer.b + backdrop.b) / 2, 255},
             2, "half");
  // A hidden layer gives the bytes of a layer whose image is missing.
  const auto hidden = readBytes(render("hidden", placed + R"(, "hidden": true)"));
  const auto absent = readBytes(render("absent", placed, true));
  EXPECT_EQ(hidden, absent);
  EXPECT_NE(hidden, readBytes(directory.path() / "full.png"));
}

TEST(ExportImage, PositionAndScalePlaceTheLayerWhereInspectSaysItsFrameIs) {
  TemporaryDirectory directory;
  const fs::path package =
      writeDocument(directory.path(), R"(, "position": {"translation-in-points": [-200, 150], "scale": 4})");
  const auto inspected = runWrighttool({package.string(), "--inspect", "--platform", "iOS"});
  ASSERT_EQ(inspected.status, 0) << inspected.err;
  const JSONValue inspection = parseJSON(inspected.out);
  const JSONValue* frame = inspection.find("groups")->arrayValue()[0].find("layers")->arrayValue()[0].find("frame");
  ASSERT_TRUE(frame != nullptr && frame->isObject());
  const double x = frame->find("x")->numberValue(), y = frame->find("y")->numberValue();
  const double width = frame->find("width")->numberValue();
  ASSERT_EQ(exportImage(package, directory.path() / "placed.png", {"--color-space", "srgb"}).status, 0);
  const Picture picture = decodePicture(directory.path() / "placed.png");
  // 1024 points onto 256 pixels; the opaque square is the middle half of the asset.
  const double scale = 0.25;
  const double left = (x + width / 4) * scale, right = (x + width * 3 / 4) * scale;
  const double top = (y + width / 4) * scale, bottom = (y + width * 3 / 4) * scale;
  const auto isRed = [&](double px, double py) {
    const Pixel p = picture.at(int(px), int(py));
    return p.r > 200 && p.b < 50;
  };
  // Just inside and just outside each edge (the top left corner holds the dot).
  EXPECT_TRUE(isRed(right - 1.5, top + 1.5));
  EXPECT_TRUE(isRed(left + 1.5, bottom - 1.5));
  EXPECT_TRUE(isRed(right - 1.5, bottom - 1.5));
  EXPECT_FALSE(isRed(left - 1.5, bottom - 10));
  EXPECT_FALSE(isRed(right + 1.5, bottom - 10));
  EXPECT_FALSE(isRed(right - 10, top - 1.5));
  EXPECT_FALSE(isRed(right - 10, bottom + 1.5));
}

TEST(ExportImage, AMirroredLayerIsTheMirrorImage) {
  TemporaryDirectory directory;
  const fs::path package = writeDocument(
      directory.path(), R"(, "asset-mirroring": {"mirrorable": true}, "position": {"translation-in-points": [0, 0], "scale": 16})");
  ASSERT_EQ(exportImage(package, directory.path() / "base.png").status, 0);
  ASSERT_EQ(exportImage(package, directory.path() / "rtl.png", {"--language", "right-to-left"}).status, 0);
  const Picture base = decodePicture(directory.path() / "base.png");
  const Picture mirrored = decodePicture(directory.path() / "rtl.png");
  // Compared away from the chiclet's edge, whose continuous corners are not exactly symmetric.
  int differences = 0;
  for (int y = 40; y < 216; ++y) {
    for (int x = 40; x < 216; ++x) {
      const Pixel a = base.at(x, y), b = mirrored.at(255 - x, y);
      if (std::abs(a.r - b.r) > 2 || std::abs(a.g - b.g) > 2 || std::abs(a.b - b.b) > 2 || std::abs(a.a - b.a) > 2) {
        ++differences;
      }
    }
  }
  EXPECT_EQ(differences, 0);
  // And it is not symmetric by itself: the dot sits on one side.
  EXPECT_NE(base.at(80, 80).g, base.at(175, 80).g);
}

TEST(ExportImage, DarkAndTintedRenditions) {
  TemporaryDirectory directory;
  const fs::path package = writeDocument(directory.path());
  ASSERT_EQ(exportImage(package, directory.path() / "dark.png", {"--rendition", "Dark", "--color-space", "srgb"}).status, 0);
  expectNear(decodePicture(directory.path() / "dark.png").at(128, 20), {0, 255, 0, 255}, 3, "dark backdrop");
  // An appearance's name stands for its default rendition: "Mono" for the clear light one.
  ASSERT_EQ(exportImage(package, directory.path() / "mono.png", {"--rendition", "Mono"}).status, 0);
  ASSERT_EQ(exportImage(package, directory.path() / "clear.png", {"--rendition", "ClearLight"}).status, 0);
  EXPECT_EQ(readBytes(directory.path() / "mono.png"), readBytes(directory.path() / "clear.png"));
  ASSERT_EQ(exportImage(package, directory.path() / "tint.png",
                        {"--rendition", "TintedDark", "--tint-color", "srgb:1,0.5,0,1", "--color-space", "srgb"})
                .status,
            0);
  const Pixel tinted = decodePicture(directory.path() / "tint.png").at(128, 128);
  EXPECT_GT(tinted.r, tinted.g);
  EXPECT_GT(tinted.g, tinted.b + 10) << "orange, the tint's hue";
}

TEST(ExportImage, TheSameRunGivesTheSameBytesAndTheLegacyLineReachesIt) {
  TemporaryDirectory directory;
  const fs::path package = writeDocument(directory.path());
  ASSERT_EQ(exportImage(package, directory.path() / "a.png", {"--light-angle", "30"}).status, 0);
  ASSERT_EQ(exportImage(package, directory.path() / "b.png", {"--light-angle", "30"}).status, 0);
  const auto legacy = runWrighttool({package.string(), "--export-preview", "iOS", "Default", "256", "256", "1", "30",
                                     (directory.path() / "c.png").string()});
  ASSERT_EQ(legacy.status, 0) << legacy.err;
  const auto a = readBytes(directory.path() / "a.png");
  EXPECT_EQ(a, readBytes(directory.path() / "b.png"));
  EXPECT_EQ(a, readBytes(directory.path() / "c.png"));
}

TEST(ExportImage, RefusesBadArgumentsCleanlyAndWritesNothing) {
  TemporaryDirectory directory;
  const fs::path package = writeDocument(directory.path());
  const fs::path output = directory.path() / "never.png";
  struct Case {
    const char* label;
    std::vector<std::string> arguments;
    std::string message;
  };
  const std::vector<Case> cases{
      {"width", {"--width", "abc"}, "The value of “--width” must be a positive number, not “abc”"},
      {"tint", {"--tint-color", "srgb:1,0"}, "Expected four comma separated color components from \"1,0\""},
      {"colour space", {"--color-space", "adobe"}, "Unepxected value for “color-space” argument. Expected one of “display-p3” or “srgb”"},
      {"rendition", {"--rendition", "Sepia"}, "Unknown rendition name: “Sepia”. Should be one of “Default”, “Dark”, “TintedLight”, “TintedDark”, “ClearLight” or “ClearDark”"},
      {"size", {"--width", "100000"}, "An image side of 100000 pixels cannot be exported; it must be from 1 to 8192"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    std::vector<std::string> arguments{package.string(), "--export-image", "--platform", "iOS", "--rendition", "Default",
                                       "--width", "64", "--height", "64", "--scale", "1", "--output-file", output.string()};
    for (std::size_t i = 0; i + 1 < c.arguments.size(); i += 2) {
      auto existing = std::find(arguments.begin(), arguments.end(), c.arguments[i]);
      if (existing != arguments.end()) {
        *(existing + 1) = c.arguments[i + 1];
      } else {
        arguments.insert(arguments.end(), {c.arguments[i], c.arguments[i + 1]});
      }
    }
    const auto run = runWrighttool(arguments);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "error: " + c.message + "\n");
    EXPECT_FALSE(fs::exists(output));
  }
}

TEST(Kit, UnknownCommandsAreReportedOnceTheKitIsLoaded) {
  const auto run = runWrighttool({"--export-nothing"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "error: Unknown command: “export-nothing”\n");
  EXPECT_EQ(run.out, "");
}

TEST(ExportContactSheet, EveryPlatformAndRenditionInOneGrid) {
  TemporaryDirectory directory;
  const fs::path package = writeDocument(directory.path(), "", R"(, "supported-platforms": {"circles": ["watchOS"], "squares": "shared"})");
  const fs::path output = directory.path() / "sheet.png";
  const auto run = runWrighttool({package.string(), "--export-contact-sheet", "--output-file", output.string(), "--size", "64"});
  ASSERT_EQ(run.status, 0) << run.err;
  const JSONValue printed = parseJSON(run.out);
  EXPECT_EQ(printed.find("image-count")->numberValue(), 7) << "six renditions of the shared square, one of the watch";
  const Picture sheet = decodePicture(output);
  EXPECT_EQ(sheet.image.width(), printed.find("pixel-width")->numberValue());
  EXPECT_TRUE(sheet.image.isOpaque());
  EXPECT_GT(sheet.image.width(), 6 * 64);
  EXPECT_GT(sheet.image.height(), 2 * 64);
  EXPECT_LT(sheet.image.height(), 3 * 64 + 200);
}

TEST(ExportRenditions, HeroSizedFilesNamedByPlatformAndRendition) {
  TemporaryDirectory directory;
  const fs::path package = writeDocument(directory.path(), "", R"(, "supported-platforms": {"circles": ["watchOS"], "squares": ["macOS"]})");
  const fs::path output = directory.path() / "renditions";
  const auto run = runWrighttool({package.string(), "--export-renditions", "--output-directory", output.string(), "--scale", "0.25"});
  ASSERT_EQ(run.status, 0) << run.err;
  std::vector<std::string> names;
  const JSONValue printed = parseJSON(run.out);
  for (const auto& file : printed.find("output-files")->arrayValue()) {
    names.push_back(fs::path(file.stringValue()).filename().string());
  }
  EXPECT_EQ(names, (std::vector<std::string>{"macOS-Default.png", "macOS-Dark.png", "macOS-TintedLight.png",
                                             "macOS-TintedDark.png", "macOS-ClearLight.png", "macOS-ClearDark.png",
                                             "watchOS-Default.png"}));
  EXPECT_EQ(decodePicture(output / "macOS-Dark.png").image.width(), 256);
  EXPECT_EQ(decodePicture(output / "watchOS-Default.png").image.width(), 272);
}

}  // namespace
}  // namespace iconwright
