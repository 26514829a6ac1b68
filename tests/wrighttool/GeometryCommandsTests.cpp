// End-to-end tests of the commands that read a document's geometry: `--inspect` places each
// layer on the canvas, `--hit-test` finds the frontmost layer at a point or under a rectangle.
// The test writes its own document: one 1024-pixel PNG, opaque but for a transparent hole.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "foundation/graphics/PNGEncoding.hpp"
#include "foundation/json/JSONReader.hpp"
#include "foundation/json/JSONValue.hpp"
#include "tests/common/TestSupport.hpp"
#include "tests/wrighttool/WrighttoolRunner.hpp"

namespace iconwright {
namespace {

namespace fs = std::filesystem;
using testing::ProgramRun;
using testing::readFile;
using testing::TemporaryDirectory;
using testing::writeFile;

// The asset's transparent hole, in pixels: x 0 ..< 256, y 400 ..< 600.
constexpr int holeRight = 256, holeTop = 400, holeBottom = 600;

std::string squarePNG() {
  constexpr int side = 1024;
  std::vector<std::uint8_t> grayAlpha(std::size_t(side) * side * 2, 0);
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) {
      const bool hole = x < holeRight && y >= holeTop && y < holeBottom;
      grayAlpha[(std::size_t(y) * side + x) * 2] = 200;
      grayAlpha[(std::size_t(y) * side + x) * 2 + 1] = hole ? 0 : 255;
    }
  }
  const auto png = encodeGrayAlphaPNG(grayAlpha, side, side);
  return std::string(png->begin(), png->end());
}

struct Placement {
  double groupScale = 1;
  double layerX = 0, layerY = 0;
  bool groupHidden = false;
};

// Group 0 holds a hidden layer over everything; group 1 holds the visible one.
fs::path writeDocument(const fs::path& path, const Placement& placement = {}) {
  fs::create_directories(path / "Assets");
  static const std::string png = squarePNG();
  writeFile(path / "Assets" / "Square.png", png);
  const auto number = [](double value) {
    std::ostringstream text;
    text << value;
    return text.str();
  };
  writeFile(path / "icon.json",
            R"({"supported-platforms": {"circles": ["watchOS"], "squares": "shared"}, "groups": [)"
            R"({"name": "Front", "layers": [{"name": "Veil", "image-name": "Square.png", "hidden": true}]},)"
            R"({"name": "Main", "hidden": )" + std::string(placement.groupHidden ? "true" : "false") +
                R"(, "position": {"scale": )" + number(placement.groupScale) +
                R"(, "translation-in-points": [0, 0]}, "layers": [{"name": "Square", "image-name": "Square.png",)"
                R"( "position": {"scale": 1, "translation-in-points": [)" +
                number(placement.layerX) + ", " + number(placement.layerY) + "]}}]}]}");
  return path;
}

std::map<std::string, std::string> treeOf(const fs::path& root) {
  std::map<std::string, std::string> tree;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    tree[fs::relative(entry.path(), root).string()] = entry.is_directory() ? "/" : readFile(entry.path());
  }
  return tree;
}

struct Answer {
  ProgramRun run;
  JSONValue json;
};

Answer wrighttool(const std::vector<std::string>& arguments) {
  Answer answer{testing::runWrighttool(arguments), nullptr};
  if (answer.run.status == 0) answer.json = parseJSON(answer.run.out);
  return answer;
}

const JSONValue& at(const JSONValue& value, std::string_view key) {
  static const JSONValue null;
  const JSONValue* member = value.find(key);
  return member ? *member : null;
}

JSONValue rect(double x, double y, double width, double height) {
  return JSONValue::Object{{"x", x}, {"y", y}, {"width", width}, {"height", height}};
}

const JSONValue& mainLayer(const JSONValue& inspection) {
  return at(inspection, "groups").arrayValue().at(1).find("layers")->arrayValue().at(0);
}

TEST(InspectCommand, PlacesA1024PixelAssetOnEachPlatformsCanvas) {
  TemporaryDirectory directory;
  const fs::path document = writeDocument(directory.path() / "Icon.icon");
  const auto before = treeOf(directory.path());
  struct Row {
    const char* platform;
    double canvas;
    JSONValue frame;
  };
  const Row rows[] = {{"iOS", 1024, rect(0, 0, 1024, 1024)},
                      {"macOS", 1024, rect(0, 0, 1024, 1024)},
                      {"watchOS", 1088, rect(32, 32, 1024, 1024)}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.platform);
    const Answer answer = wrighttool({document.string(), "--inspect", "--platform", row.platform});
    ASSERT_EQ(answer.run.status, 0) << answer.run.err;
    EXPECT_EQ(answer.run.err, "");
    EXPECT_EQ(at(answer.json, "platform"), JSONValue(row.platform));
    EXPECT_EQ(at(answer.json, "canvas-size"), (JSONValue(JSONValue::Object{{"width", row.canvas}, {"height", row.canvas}})));
    const JSONValue& layer = mainLayer(answer.json);
    EXPECT_EQ(at(layer, "name"), JSONValue("Square"));
    EXPECT_EQ(at(layer, "image-name"), JSONValue("Square.png"));
    EXPECT_EQ(at(layer, "asset-kind"), JSONValue("bitmap"));
    EXPECT_EQ(at(layer, "asset-size"), (JSONValue(JSONValue::Object{{"width", 1024}, {"height", 1024}})));
    EXPECT_EQ(at(layer, "frame"), row.frame);
    // Every row and column has a covered pixel, so the visual box is the whole asset.
    EXPECT_EQ(at(layer, "visual-frame"), row.frame);
    EXPECT_EQ(at(layer, "alignment-frame"), row.frame);
    EXPECT_EQ(at(layer, "hidden"), JSONValue(false));
    const JSONValue& front = at(answer.json, "groups").arrayValue().at(0);
    EXPECT_EQ(at(front.find("layers")->arrayValue().at(0), "hidden"), JSONValue(true));
    EXPECT_EQ(at(front, "bounding-frame"), row.frame) << "a hidden layer still counts";
  }
  EXPECT_EQ(treeOf(directory.path()), before) << "inspecting writes nothing";
}

TEST(InspectCommand, AGroupScaleOfTwoDoublesTheLayersTranslationAndSize) {
  TemporaryDirectory directory;
  const fs::path single = writeDocument(directory.path() / "Single.icon", {1, 10, 20});
  const fs::path twice = writeDocument(directory.path() / "Twice.icon", {2, 10, 20});
  const Answer one = wrighttool({single.string(), "--inspect", "--platform", "iOS"});
  const Answer two = wrighttool({twice.string(), "--inspect", "--platform", "iOS"});
  ASSERT_EQ(one.run.status, 0) << one.run.err;
  ASSERT_EQ(two.run.status, 0) << two.run.err;
  EXPECT_EQ(at(mainLayer(one.json), "frame"), rect(10, 20, 1024, 1024));
  // Centre at 512 + 2 × (10, 20), side 2 × 1024.
  EXPECT_EQ(at(mainLayer(two.json), "frame"), rect(532 - 1024, 552 - 1024, 2048, 2048));
  EXPECT_EQ(at(at(two.json, "groups").arrayValue().at(1), "bounding-frame"), rect(-492, -472, 2048, 2048));
}

TEST(InspectCommand, ValidatesTheRequestAgainstTheSupportedPlatforms) {
  TemporaryDirectory directory;
  const fs::path document = writeDocument(directory.path() / "Icon.icon");
  const Answer defaults = wrighttool({document.string(), "--inspect"});
  ASSERT_EQ(defaults.run.status, 0) << defaults.run.err;
  EXPECT_EQ(at(defaults.json, "platform"), JSONValue("iOS"));
  EXPECT_EQ(at(defaults.json, "rendition"), JSONValue("light-color"));
  EXPECT_EQ(at(defaults.json, "language"), JSONValue("base"));
  EXPECT_EQ(at(defaults.json, "slot"), (JSONValue(JSONValue::Object{{"idiom", "square"}, {"appearance", "light"}})));

  const Answer watch =
      wrighttool({document.string(), "--inspect", "--platform", "watchOS", "--rendition", "dark-tint", "--language", "he"});
  ASSERT_EQ(watch.run.status, 0) << watch.run.err;
  EXPECT_EQ(at(watch.json, "rendition"), JSONValue("light-color")) << "watchOS shows only the light icon";
  EXPECT_EQ(at(watch.json, "slot"), (JSONValue(JSONValue::Object{{"idiom", "watchOS"}, {"appearance", "light"}})));
  EXPECT_EQ(at(watch.json, "language"), JSONValue("he"));

  const Answer byFileName = wrighttool({document.string(), "--inspect", "--rendition", "TintedDark"});
  ASSERT_EQ(byFileName.run.status, 0) << byFileName.run.err;
  EXPECT_EQ(at(byFileName.json, "rendition"), JSONValue("dark-tint"));
}

TEST(HitTestCommand, MissesOutsideTheShapeAndInTheHoleAndHitsTheOpaqueMiddle) {
  TemporaryDirectory directory;
  const fs::path document = writeDocument(directory.path() / "Icon.icon");
  const auto before = treeOf(directory.path());
  const JSONValue square = JSONValue::Object{{"group", 1}, {"layer", 0}, {"name", "Square"}};
  struct Row {
    const char* label;
    std::vector<std::string> arguments;
    JSONValue hit;
    bool icon;
  };
  const Row rows[] = {
      {"corner, outside the rounded shape", {"--platform", "iOS", "--x", "5", "--y", "5"}, nullptr, false},
      {"middle", {"--platform", "iOS", "--x", "512", "--y", "512"}, square, true},
      {"transparent hole", {"--platform", "iOS", "--x", "100", "--y", "500"}, nullptr, true},
      {"watchOS middle", {"--platform", "watchOS", "--x", "544", "--y", "544"}, square, true},
      {"watchOS: the hole moves by the outset", {"--platform", "watchOS", "--x", "132", "--y", "532"}, nullptr, true},
      {"rectangle inside the hole", {"--platform", "iOS", "--x", "90", "--y", "490", "--width", "20", "--height", "20"},
       nullptr, true},
      {"rectangle reaching out of the hole",
       {"--platform", "iOS", "--x", "200", "--y", "490", "--width", "100", "--height", "20"}, square, true},
      {"rectangle in the corner: the shape plays no part for layers",
       {"--platform", "iOS", "--x", "0", "--y", "0", "--width", "4", "--height", "4"}, square, false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    std::vector<std::string> arguments{document.string(), "--hit-test"};
    arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
    const Answer answer = wrighttool(arguments);
    ASSERT_EQ(answer.run.status, 0) << answer.run.err;
    EXPECT_EQ(at(answer.json, "hit"), row.hit);
    EXPECT_EQ(at(answer.json, "icon"), JSONValue(row.icon));
  }
  EXPECT_EQ(treeOf(directory.path()), before);
}

TEST(HitTestCommand, HiddenLayersAreNeverHit) {
  TemporaryDirectory directory;
  // The front layer is hidden itself; here the group of the other one is hidden too.
  const fs::path document = writeDocument(directory.path() / "Icon.icon", {1, 0, 0, true});
  for (const std::vector<std::string>& where :
       {std::vector<std::string>{"--x", "512", "--y", "512"},
        std::vector<std::string>{"--x", "300", "--y", "300", "--width", "400", "--height", "400"}}) {
    std::vector<std::string> arguments{document.string(), "--hit-test", "--platform", "iOS"};
    arguments.insert(arguments.end(), where.begin(), where.end());
    const Answer answer = wrighttool(arguments);
    ASSERT_EQ(answer.run.status, 0) << answer.run.err;
    EXPECT_EQ(at(answer.json, "hit"), JSONValue(nullptr));
    EXPECT_EQ(at(answer.json, "icon"), JSONValue(true));
  }
}

TEST(HitTestCommand, BadRequestsFailWithOneLineAndNoOutput) {
  TemporaryDirectory directory;
  const fs::path document = writeDocument(directory.path() / "Icon.icon");
  struct Row {
    std::vector<std::string> arguments;
    std::string error;
  };
  const Row rows[] = {
      {{document.string(), "--hit-test", "--x", "1", "--y", "1"}, "error: Missing required argument “--platform”\n"},
      {{document.string(), "--hit-test", "--platform", "iOS", "--x", "1", "--y", "1", "--width", "3"},
       "error: Missing required argument “--height”\n"},
      {{document.string(), "--hit-test", "--platform", "tvOS", "--x", "1", "--y", "1"},
       "error: Unknown platform name: “tvOS”. Should be one of “iOS”, “macOS” or “watchOS”\n"},
      {{document.string(), "--inspect", "--rendition", "sepia"},
       "error: Unknown rendition name: “sepia”. Should be one of “light-color”, “dark-color”, “light-tint”, "
       "“dark-tint”, “light-clear” or “dark-clear”\n"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.error);
    const ProgramRun run = testing::runWrighttool(row.arguments);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, row.error);
  }
  const ProgramRun missing = testing::runWrighttool({(directory.path() / "None.icon").string(), "--inspect"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_EQ(missing.out, "");
  EXPECT_TRUE(missing.err.starts_with("error: ")) << missing.err;
}

TEST(GeometryCommands, EveryCorpusPackageAnswersOnEveryPlatform) {
  ICONWRIGHT_REQUIRE_SHARED_DIRECTORY(shared);
  for (const auto& entry : fs::directory_iterator(shared / "corpus" / "packages")) {
    for (const char* platform : {"iOS", "macOS", "watchOS"}) {
      SCOPED_TRACE(entry.path().filename().string() + " " + platform);
      const Answer inspection = wrighttool({entry.path().string(), "--inspect", "--platform", platform});
      ASSERT_EQ(inspection.run.status, 0) << inspection.run.err;
      EXPECT_TRUE(at(inspection.json, "groups").isArray());
      const Answer hit = wrighttool({entry.path().string(), "--hit-test", "--platform", platform, "--x", "512", "--y",
                                     "512"});
      ASSERT_EQ(hit.run.status, 0) << hit.run.err;
      EXPECT_EQ(at(hit.json, "icon"), JSONValue(true));
    }
  }
}

TEST(GeometryCommands, HelpShowsTheirArguments) {
  const ProgramRun run = testing::runWrighttool({"--help"});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find(" DOC [--platform P] [--rendition R] [--language ID]: "), std::string::npos) << run.out;
  EXPECT_NE(run.out.find(" DOC --platform P --x X --y Y [--width W --height H] [--rendition R]: "),
            std::string::npos)
      << run.out;
}

}  // namespace
}  // namespace iconwright
