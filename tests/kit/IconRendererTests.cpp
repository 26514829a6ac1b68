// The compositing model, looked at through pixels: backdrop and clip, group and layer order,
// hiding, opacity, blend modes, the effects and the tinted renditions.
#include <gtest/gtest.h>

#include <cmath>

#include "kit/render/FillPaint.hpp"
#include "tests/kit/RenderTestSupport.hpp"

namespace iconwright::kit {
namespace {

using testing::Scene;

constexpr RGBA red{1, 0, 0, 1};
constexpr RGBA green{0, 1, 0, 1};
constexpr RGBA white{1, 1, 1, 1};
constexpr RGBA black{0, 0, 0, 1};

void expectColor(const RGBA& actual, const RGBA& expected, double tolerance, const std::string& label) {
  SCOPED_TRACE(label + ": got " + testing::describe(actual) + ", expected " + testing::describe(expected));
  EXPECT_NEAR(actual.red, expected.red, tolerance);
  EXPECT_NEAR(actual.green, expected.green, tolerance);
  EXPECT_NEAR(actual.blue, expected.blue, tolerance);
  EXPECT_NEAR(actual.alpha, expected.alpha, tolerance);
}

double hueDegrees(const RGBA& c) {
  const double mx = std::max({c.red, c.green, c.blue}), mn = std::min({c.red, c.green, c.blue});
  const double delta = mx - mn;
  if (delta <= 0) return 0;
  double h = mx == c.red ? std::fmod((c.green - c.blue) / delta, 6.0)
             : mx == c.green ? (c.blue - c.red) / delta + 2
                             : (c.red - c.green) / delta + 4;
  h *= 60;
  return h < 0 ? h + 360 : h;
}

TEST(IconRenderer, BackdropFillsTheChicletAndNothingOutsideIt) {
  struct Case {
    const char* label;
    Platform platform;
  };
  for (const Case& c : {Case{"iOS", Platform::iOS}, Case{"macOS", Platform::macOS}, Case{"watchOS", Platform::watchOS}}) {
    SCOPED_TRACE(c.label);
    Scene scene;
    scene.setBackdrop(Fill::solid(Color::displayP3(1, 0, 0, 1)));
    const Raster raster = scene.render(128, Rendition::lightColor, c.platform);
    expectColor(raster.colorAt(64, 64), red, 0.01, "centre");
    EXPECT_EQ(raster.colorAt(0, 0).alpha, 0) << "top left corner";
    EXPECT_EQ(raster.colorAt(127, 127).alpha, 0) << "bottom right corner";
    EXPECT_EQ(raster.colorAt(64, 1).alpha, 1) << "middle of the top edge";
  }
}

TEST(IconRenderer, BackdropKindsAndGradientDirections) {
  Scene scene;
  const Color p3Red = Color::displayP3(1, 0, 0, 1), p3Blue = Color::displayP3(0, 0, 1, 1);
  scene.setBackdrop(Fill::linearGradient(p3Red, p3Blue, Fill::Orientation::topToBottom));
  Raster raster = scene.render(100);
  EXPECT_GT(raster.colorAt(50, 5).red, 0.9);
  EXPECT_GT(raster.colorAt(50, 94).blue, 0.9);

  scene.setBackdrop(Fill::linearGradient(p3Red, p3Blue, Fill::Orientation::leftToRight));
  raster = scene.render(100);
  EXPECT_GT(raster.colorAt(5, 50).red, 0.9);
  EXPECT_GT(raster.colorAt(94, 50).blue, 0.9);

  // An automatic gradient runs from a lighter primary at the start to the primary itself.
  scene.setBackdrop(Fill::automaticGradient(p3Red, Fill::Orientation::topToBottom));
  raster = scene.render(100);
  expectColor(raster.colorAt(50, 97), red, 0.05, "bottom of the automatic gradient");
  EXPECT_GT(raster.colorAt(50, 3).green, 0.15);

  // Automatic follows the rendition's appearance; the system kinds are fixed.
  scene.setBackdrop(Fill::automatic);
  EXPECT_GT(scene.render(64).colorAt(32, 32).red, 0.9);
  EXPECT_LT(scene.render(64, Rendition::darkColor).colorAt(32, 32).red, 0.2);
  scene.setBackdrop(Fill::systemDark);
  EXPECT_LT(scene.render(64).colorAt(32, 32).red, 0.2);
  scene.setBackdrop(Fill::none);
  EXPECT_EQ(scene.render(64).colorAt(32, 32).alpha, 0);
}

TEST(IconRenderer, DarkRenditionsReadTheDarkSpecializations) {
  Scene scene;
  SpecializableProperty<Fill> fill(Fill::solid(Color::displayP3(1, 0, 0, 1)));
  fill.setExplicitValue(Fill::solid(Color::displayP3(0, 1, 0, 1)), SpecializationSlot::dark);
  scene.icon->setFill(fill);
  expectColor(scene.render(64).colorAt(32, 32), red, 0.01, "light");
  expectColor(scene.render(64, Rendition::darkColor).colorAt(32, 32), green, 0.01, "dark");
}

TEST(IconRenderer, TheFirstGroupIsFrontmostAndLayersLikewise) {
  Scene scene;
  scene.setBackdrop(Fill::solid(Color::black));
  const auto front = scene.addGroup();
  const auto back = scene.addGroup();
  scene.addLayer(front, Rect::makeXYWH(200, 200, 400, 400), red);
  scene.addLayer(back, Rect::makeXYWH(400, 400, 400, 400), green);
  const Raster raster = scene.render(256);
  // 1024 points onto 256 pixels: a quarter.
  EXPECT_GT(raster.colorAt(125, 125).red, 0.8) << "the overlap shows the first group";
  EXPECT_LT(raster.colorAt(125, 125).green, 0.1);
  EXPECT_GT(raster.colorAt(175, 175).green, 0.8) << "the back group where it is alone";

  Scene layers;
  const auto group = layers.addGroup();
  layers.addLayer(group, Rect::makeXYWH(200, 200, 400, 400), red);
  layers.addLayer(group, Rect::makeXYWH(400, 400, 400, 400), green);
  EXPECT_GT(layers.render(256).colorAt(125, 125).red, 0.8) << "the first layer is frontmost";
}

TEST(IconRenderer, LayersAndGroupsReachTheirPartlyCoveredEdges) {
  // At 128 pixels a point is an eighth of a pixel. A front group whose white square (100 to 164
  // points) ends half way through pixels 12 and 20; behind it a group with a red square (300 to
  // 700 points, half way through pixels 37 and 87) over a green layer. Every partly covered
  // edge pixel mixes the two colours.
  Scene scene;
  scene.setBackdrop(Fill::solid(Color::black));
  scene.addLayer(scene.addGroup(), Rect::makeXYWH(100, 100, 64, 64), white);
  const auto group = scene.addGroup();
  scene.addLayer(group, Rect::makeXYWH(300, 300, 400, 400), red);
  scene.addLayer(group, Rect::makeXYWH(0, 0, 1024, 1024), green);
  const Raster raster = scene.render(128);
  for (auto [x, y] : {std::pair{37, 64}, {87, 64}, {64, 37}, {64, 87}}) {
    SCOPED_TRACE(::testing::Message() << "red square " << x << ", " << y);
    const RGBA edge = raster.colorAt(x, y);
    EXPECT_NEAR(edge.red, 0.5, 0.05);
    EXPECT_NEAR(edge.green, 0.5, 0.05);
  }
  expectColor(raster.colorAt(86, 64), red, 0.01, "inside the red square");
  // The group's lighting darkens its far edge a little.
  for (auto [x, y] : {std::pair{12, 16}, {20, 16}, {16, 12}, {16, 20}}) {
    SCOPED_TRACE(::testing::Message() << "white square " << x << ", " << y);
    const RGBA edge = raster.colorAt(x, y);
    EXPECT_NEAR(edge.blue, 0.5, 0.1);
    EXPECT_GT(edge.green, 0.9);
  }
}

TEST(IconRenderer, HiddenMembersLeaveNoTrace) {
  const auto render = [](bool withHiddenMembers) {
    Scene scene;
    scene.setBackdrop(Fill::solid(Color::displayP3(0.2, 0.3, 0.4, 1)));
    const auto group = scene.addGroup();
    scene.addLayer(group, Rect::makeXYWH(100, 100, 300, 300), red);
    if (withHiddenMembers) {
      scene.addLayer(group, Rect::makeXYWH(0, 0, 1024, 1024), green)->setIsHidden(SpecializableProperty<bool>(true));
      const auto hiddenGroup = scene.addGroup();
      scene.addLayer(hiddenGroup, Rect::makeXYWH(0, 0, 1024, 1024), green);
      hiddenGroup->setIsHidden(SpecializableProperty<bool>(true));
    }
    return scene.render(128);
  };
  const Raster expected = render(false), actual = render(true);
  EXPECT_TRUE(std::equal(actual.pixels().begin(), actual.pixels().end(), expected.pixels().begin()));
}

TEST(IconRenderer, OpacityScalesALayersContribution) {
  for (double opacity : {1.0, 0.5, 0.25}) {
    SCOPED_TRACE(opacity);
    Scene scene;
    scene.setBackdrop(Fill::solid(Color::black));
    const auto layer = scene.addLayer(scene.addGroup(), Rect::makeXYWH(256, 256, 512, 512), white);
    layer->setOpacity(SpecializableProperty<double>(opacity));
    const RGBA centre = scene.render(128).colorAt(64, 64);
    EXPECT_NEAR(centre.red, opacity, 0.02);
    EXPECT_NEAR(centre.blue, opacity, 0.02);
  }
}

TEST(IconRenderer, LayerBlendModesComposite) {
  struct Case {
    BlendMode mode;
    RGBA expected;
  };
  // A half-gray layer over a white layer: multiply darkens, screen lightens.
  for (const Case& c : {Case{BlendMode::normal, {0.5, 0.5, 0.5, 1}}, Case{BlendMode::multiply, {0.5, 0.5, 0.5, 1}},
                        Case{BlendMode::screen, {1, 1, 1, 1}}, Case{BlendMode::darken, {0.5, 0.5, 0.5, 1}},
                        Case{BlendMode::lighten, {1, 1, 1, 1}}, Case{BlendMode::plusLighter, {1, 1, 1, 1}}}) {
    SCOPED_TRACE(std::string(rawValue(c.mode)));
    Scene scene;
    scene.setBackdrop(Fill::solid(Color::black));
    const auto group = scene.addGroup();
    const auto top = scene.addLayer(group, Rect::makeXYWH(256, 256, 512, 512), {0.5, 0.5, 0.5, 1});
    scene.addLayer(group, Rect::makeXYWH(256, 256, 512, 512), white);
    top->setBlendMode(SpecializableProperty<BlendMode>(c.mode));
    expectColor(scene.render(128).colorAt(64, 64), c.expected, 0.02, "centre");
  }
}

TEST(IconRenderer, LayerFillReplacesColoursInsideItsAlpha) {
  Scene scene;
  scene.setBackdrop(Fill::solid(Color::black));
  const auto layer = scene.addLayer(scene.addGroup(), Rect::makeXYWH(256, 256, 512, 512), white);
  layer->setFill(SpecializableProperty<Fill>(Fill::solid(Color::displayP3(0, 1, 0, 1))));
  const Raster raster = scene.render(128);
  expectColor(raster.colorAt(64, 64), green, 0.02, "inside");
  expectColor(raster.colorAt(10, 64), black, 0.01, "outside");
}

TEST(IconRenderer, EffectsDoWhatTheirNamesSay) {
  const auto base = [] {
    Scene scene;
    scene.setBackdrop(Fill::solid(Color::displayP3(0.2, 0.4, 0.8, 1)));
    scene.addLayer(scene.addGroup(), Rect::makeXYWH(312, 312, 400, 400), white);
    return scene;
  };
  const Scene plain = base();
  const Raster reference = plain.render(256);
  // Below the shape, away from the light at the top.
  const int belowX = 128, belowY = 182;

  Scene shadowed = base();
  shadowed.icon->groups()[0]->setShadow(SpecializableProperty<Shadow>(Shadow{Shadow::Kind::neutral, 0.8}));
  const Raster shadow = shadowed.render(256);
  EXPECT_LT(shadow.colorAt(belowX, belowY).blue, reference.colorAt(belowX, belowY).blue - 0.1) << "darker below";
  EXPECT_NEAR(shadow.colorAt(belowX, 60).blue, reference.colorAt(belowX, 60).blue, 0.03) << "not far above";

  Scene translucent = base();
  translucent.icon->groups()[0]->setTranslucency(SpecializableProperty<Translucency>(Translucency{true, 1}));
  const RGBA through = translucent.render(256).colorAt(128, 128);
  EXPECT_NEAR(through.red, 0.6, 0.03) << "half of white over the backdrop's 0.2";

  const auto grayScene = [](bool specular, bool glass) {
    Scene scene;
    scene.setBackdrop(Fill::solid(Color::displayP3(0.2, 0.4, 0.8, 1)));
    const auto group = scene.addGroup();
    group->setSpecular(SpecializableProperty<bool>(specular));
    scene.addLayer(group, Rect::makeXYWH(312, 312, 400, 400), {0.5, 0.5, 0.5, 1})
        ->setIsGlass(SpecializableProperty<bool>(glass));
    return scene.render(256);
  };
  const Raster unlit = grayScene(false, false), lit = grayScene(true, false), glassy = grayScene(false, true);
  EXPECT_GT(lit.colorAt(128, 79).red, unlit.colorAt(128, 79).red + 0.1) << "top edge, facing the light";
  EXPECT_NEAR(lit.colorAt(128, 176).red, unlit.colorAt(128, 176).red, 0.02) << "bottom edge, turned away";
  EXPECT_GT(glassy.colorAt(128, 79).red, unlit.colorAt(128, 79).red + 0.05) << "rim light on the lit edge";
  EXPECT_NEAR(glassy.colorAt(128, 128).red, unlit.colorAt(128, 128).red, 0.01) << "centre untouched";
}

TEST(IconRenderer, BlurMaterialSoftensTheBackdropBehindTheGroup) {
  Scene scene;
  scene.setBackdrop(Fill::linearGradient(Color::black, Color::white, {{0.5, 0.5}, {0.5, 0.5001}}));
  const auto group = scene.addGroup();
  group->setTranslucency(SpecializableProperty<Translucency>(Translucency{true, 1}));
  scene.addLayer(group, Rect::makeXYWH(212, 212, 600, 600), white);
  const Raster sharp = scene.render(256);
  group->setBlurMaterial(SpecializableProperty<BlurMaterial>(BlurMaterial(1.0)));
  const Raster soft = scene.render(256);
  // Just above the hard edge of the backdrop, inside the group: the blur brings white up.
  EXPECT_GT(soft.colorAt(128, 124).red, sharp.colorAt(128, 124).red + 0.05);
  EXPECT_LT(soft.colorAt(128, 132).red, sharp.colorAt(128, 132).red - 0.05);
}

TEST(IconRenderer, TintedRenditionsTakeTheTintsHue) {
  Scene scene;
  scene.setBackdrop(Fill::solid(Color::displayP3(0, 0.8, 0, 1)));
  scene.addLayer(scene.addGroup(), Rect::makeXYWH(256, 256, 512, 512), white);
  for (Rendition rendition : {Rendition::lightTint, Rendition::darkTint}) {
    SCOPED_TRACE(std::string(rawValue(rendition)));
    RenderStyle style;
    style.tintColor = Color::displayP3(1, 0.5, 0, 1);
    const RGBA centre = scene.render(128, rendition, Platform::iOS, style).colorAt(64, 64);
    EXPECT_NEAR(hueDegrees(centre), 30, 2);
    style.tintColor = Color::systemBlue;
    EXPECT_NEAR(hueDegrees(scene.render(128, rendition, Platform::iOS, style).colorAt(64, 64)),
                hueDegrees(workingColor(Color::systemBlue)), 2);
  }
  const RGBA clear = scene.render(128, Rendition::lightClear).colorAt(64, 64);
  EXPECT_NEAR(clear.red, clear.blue, 0.01) << "clear renditions are neutral";
}

TEST(IconRenderer, FitsAndCentresOnNonSquareSizes) {
  Scene scene;
  scene.setBackdrop(Fill::solid(Color::displayP3(1, 0, 0, 1)));
  Raster raster = *IconRenderer(*scene.icon, {}, {}, scene.painter()).render(200, 100);
  EXPECT_EQ(raster.width(), 200);
  EXPECT_EQ(raster.colorAt(49, 50).alpha, 0) << "left of the centred square";
  EXPECT_EQ(raster.colorAt(100, 50).alpha, 1);
  EXPECT_EQ(raster.colorAt(151, 50).alpha, 0) << "right of it";
}

TEST(IconRenderer, SameInputSameBytes) {
  Scene scene;
  scene.setBackdrop(Fill::automaticGradient(Color::systemBlue, Fill::Orientation::topToBottom));
  const auto group = scene.addGroup();
  group->setShadow(SpecializableProperty<Shadow>(Shadow::initial));
  group->setTranslucency(SpecializableProperty<Translucency>(Translucency::initial));
  group->setBlurMaterial(SpecializableProperty<BlurMaterial>(BlurMaterial(0.5)));
  group->setSpecular(SpecializableProperty<bool>(true));
  scene.addLayer(group, Rect::makeXYWH(300, 280, 420, 500), {0.9, 0.3, 0.2, 1})->setIsGlass(
      SpecializableProperty<bool>(true));
  const Raster first = scene.render(300), second = scene.render(300);
  EXPECT_TRUE(std::equal(first.pixels().begin(), first.pixels().end(), second.pixels().begin()));
}

}  // namespace
}  // namespace iconwright::kit
