// Colour texts ("display-p3:1.00000,0.00000,0.00000,1.00000", "named:system-red"), as
// documents and command lines hand them in. A text either reads or throws MessageError;
// what reads prints as text that reads again to a fixed point, the JSON form agrees with the
// text form, and the conversions and HSL operations that drawing applies to any stored
// colour run without stopping the process, whatever numbers the text held.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "foundation/json/JSONCoding.hpp"
#include "foundation/values/Color.hpp"
#include "foundation/support/MessageError.hpp"
#include "fuzz/FuzzSupport.hpp"

using namespace iconwright;

namespace {

bool sameComponents(const Color& a, const Color& b) {
  if (a.kind() != b.kind()) return false;
  const auto pa = a.platformColor().components;
  const auto pb = b.platformColor().components;
  if (pa.size() != pb.size()) return false;
  for (std::size_t i = 0; i < pa.size(); ++i) {
    if (!fuzz::sameDouble(pa[i], pb[i])) return false;
  }
  return true;
}

void exerciseOperations(const Color& color) {
  static const Color others[] = {Color::white, Color::sRGB(0.2, 0.4, 0.6, 1), Color::displayP3(1, 0, 0, 0.5),
                                 Color::gray(0.5, 1), Color::extendedSRGB(-0.5, 1.5, 0.5, 1)};
  (void)color.luminance();
  (void)color.displayP3Components();
  (void)color.rgbaComponents(PlatformColorSpace::sRGB);
  (void)color.rgbaComponents(PlatformColorSpace::extendedSRGB);
  (void)color.grayComponents(PlatformColorSpace::extendedGray);
  for (const Color& other : others) {
    (void)color.mix(other, 0.5);
    (void)other.mix(color, 2);
  }
  for (const Color& changed : {color.hueRotated(90), color.hueRotated(-1e6), color.saturationMultiplied(0.5),
                               color.lightnessMultiplied(3), color.percentageCloserToWhite(2)}) {
    FUZZ_CHECK(fuzz::sameDouble(changed.platformColor().components.back(), color.platformColor().components.back()),
               "an HSL operation changed alpha of " + color.stringRepresentation());
    (void)changed.stringRepresentation();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(fuzz::textOf(data, size));
  std::optional<Color> color;
  try {
    color = Color::fromStringRepresentation(text);
  } catch (const MessageError& error) {
    FUZZ_CHECK(!error.message().empty(), "an empty message");
    // The JSON form must refuse the same text with the same message.
    try {
      (void)Color::decodeJSON(Decoder(JSONValue(text)));
      FUZZ_CHECK(false, "the JSON form accepts what the text form refuses: " + text);
    } catch (const MessageError& again) {
      FUZZ_CHECK(again.message() == error.message(), "the JSON form fails differently: " + again.message());
    }
    return 0;
  }

  const JSONValue json(text);
  const Color decoded = Color::decodeJSON(Decoder(json));
  FUZZ_CHECK(sameComponents(decoded, *color), "the JSON form reads differently: " + text);

  // Five digits are kept, so one write may change the numbers; the second must not.
  const std::string printed = color->stringRepresentation();
  std::optional<Color> reread;
  try {
    reread = Color::fromStringRepresentation(printed);
  } catch (const MessageError& error) {
    FUZZ_CHECK(false, "the printed form does not read: " + printed + " (" + error.message() + ")");
  }
  FUZZ_CHECK(reread->kind() == color->kind(), "the printed form changes the case: " + printed);
  FUZZ_CHECK(reread->stringRepresentation() == printed, "printing is not a fixed point: " + printed);
  FUZZ_CHECK(color->encodeJSON() == JSONValue(printed), "the JSON form is not the text form");

  exerciseOperations(*color);
  return 0;
}
