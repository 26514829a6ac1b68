// Colour syntax of CSS Color 4 as far as SVG files use it, and the paint values.
#include "foundation/graphics/svg/SVGPaint.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <string>
#include <utility>

#include "foundation/graphics/svg/SVGPaintValue.hpp"
#include "foundation/values/Color.hpp"

namespace iconwright {
namespace {

struct NamedColor {
  std::string_view name;
  std::uint32_t rgb;
};

// The CSS named colours, sorted by name.
constexpr std::array<NamedColor, 148> kNamedColors{{
    {"aliceblue", 0xF0F8FF}, {"antiquewhite", 0xFAEBD7}, {"aqua", 0x00FFFF},
    {"aquamarine", 0x7FFFD4}, {"azure", 0xF0FFFF}, {"beige", 0xF5F5DC},
    {"bisque", 0xFFE4C4}, {"black", 0x000000}, {"blanchedalmond", 0xFFEBCD},
    {"blue", 0x0000FF}, {"blueviolet", 0x8A2BE2}, {"brown", 0xA52A2A},
    {"burlywood", 0xDEB887}, {"cadetblue", 0x5F9EA0}, {"chartreuse", 0x7FFF00},
    {"chocolate", 0xD2691E}, {"coral", 0xFF7F50}, {"cornflowerblue", 0x6495ED},
    {"cornsilk", 0xFFF8DC}, {"crimson", 0xDC143C}, {"cyan", 0x00FFFF},
    {"darkblue", 0x00008B}, {"darkcyan", 0x008B8B}, {"darkgoldenrod", 0xB8860B},
    {"darkgray", 0xA9A9A9}, {"darkgreen", 0x006400}, {"darkgrey", 0xA9A9A9},
    {"darkkhaki", 0xBDB76B}, {"darkmagenta", 0x8B008B}, {"darkolivegreen", 0x556B2F},
    {"darkorange", 0xFF8C00}, {"darkorchid", 0x9932CC}, {"darkred", 0x8B0000},
    {"darksalmon", 0xE9967A}, {"darkseagreen", 0x8FBC8F}, {"darkslateblue", 0x483D8B},
    {"darkslategray", 0x2F4F4F}, {"darkslategrey", 0x2F4F4F}, {"darkturquoise", 0x00CED1},
    {"darkviolet", 0x9400D3}, {"deeppink", 0xFF1493}, {"deepskyblue", 0x00BFFF},
    {"dimgray", 0x696969}, {"dimgrey", 0x696969}, {"dodgerblue", 0x1E90FF},
    {"firebrick", 0xB22222}, {"floralwhite", 0xFFFAF0}, {"forestgreen", 0x228B22},
    {"fuchsia", 0xFF00FF}, {"gainsboro", 0xDCDCDC}, {"ghostwhite", 0xF8F8FF},
    {"gold", 0xFFD700}, {"goldenrod", 0xDAA520}, {"gray", 0x808080},
    {"green", 0x008000}, {"greenyellow", 0xADFF2F}, {"grey", 0x808080},
    {"honeydew", 0xF0FFF0}, {"hotpink", 0xFF69B4}, {"indianred", 0xCD5C5C},
    {"indigo", 0x4B0082}, {"ivory", 0xFFFFF0}, {"khaki", 0xF0E68C},
    {"lavender", 0xE6E6FA}, {"lavenderblush", 0xFFF0F5}, {"lawngreen", 0x7CFC00},
    {"lemonchiffon", 0xFFFACD}, {"lightblue", 0xADD8E6}, {"lightcoral", 0xF08080},
    {"lightcyan", 0xE0FFFF}, {"lightgoldenrodyellow", 0xFAFAD2}, {"lightgray", 0xD3D3D3},
    {"lightgreen", 0x90EE90}, {"lightgrey", 0xD3D3D3}, {"lightpink", 0xFFB6C1},
    {"lightsalmon", 0xFFA07A}, {"lightseagreen", 0x20B2AA}, {"lightskyblue", 0x87CEFA},
    {"lightslategray", 0x778899}, {"lightslategrey", 0x778899}, {"lightsteelblue", 0xB0C4DE},
    {"lightyellow", 0xFFFFE0}, {"lime", 0x00FF00}, {"limegreen", 0x32CD32},
    {"linen", 0xFAF0E6}, {"magenta", 0xFF00FF}, {"maroon", 0x800000},
    {"mediumaquamarine", 0x66CDAA}, {"mediumblue", 0x0000CD}, {"mediumorchid", 0xBA55D3},
    {"mediumpurple", 0x9370DB}, {"mediumseagreen", 0x3CB371}, {"mediumslateblue", 0x7B68EE},
    {"mediumspringgreen", 0x00FA9A}, {"mediumturquoise", 0x48D1CC}, {"mediumvioletred", 0xC71585},
    {"midnightblue", 0x191970}, {"mintcream", 0xF5FFFA}, {"mistyrose", 0xFFE4E1},
    {"moccasin", 0xFFE4B5}, {"navajowhite", 0xFFDEAD}, {"navy", 0x000080},
    {"oldlace", 0xFDF5E6}, {"olive", 0x808000}, {"olivedrab", 0x6B8E23},
    {"orange", 0xFFA500}, {"orangered", 0xFF4500}, {"orchid", 0xDA70D6},
    {"palegoldenrod", 0xEEE8AA}, {"palegreen", 0x98FB98}, {"paleturquoise", 0xAFEEEE},
    {"palevioletred", 0xDB7093}, {"papayawhip", 0xFFEFD5}, {"peachpuff", 0xFFDAB9},
    {"peru", 0xCD853F}, {"pink", 0xFFC0CB}, {"plum", 0xDDA0DD},
    {"powderblue", 0xB0E0E6}, {"purple", 0x800080}, {"rebeccapurple", 0x663399},
    {"red", 0xFF0000}, {"rosybrown", 0xBC8F8F}, {"royalblue", 0x4169E1},
    {"saddlebrown", 0x8B4513}, {"salmon", 0xFA8072}, {"sandybrown", 0xF4A460},
    {"seagreen", 0x2E8B57}, {"seashell", 0xFFF5EE}, {"sienna", 0xA0522D},
    {"silver", 0xC0C0C0}, {"skyblue", 0x87CEEB}, {"slateblue", 0x6A5ACD},
    {"slategray", 0x708090}, {"slategrey", 0x708090}, {"snow", 0xFFFAFA},
    {"springgreen", 0x00FF7F}, {"steelblue", 0x4682B4}, {"tan", 0xD2B48C},
    {"teal", 0x008080}, {"thistle", 0xD8BFD8}, {"tomato", 0xFF6347},
    {"turquoise", 0x40E0D0}, {"violet", 0xEE82EE}, {"wheat", 0xF5DEB3},
    {"white", 0xFFFFFF}, {"whitesmoke", 0xF5F5F5}, {"yellow", 0xFFFF00},
    {"yellowgreen", 0x9ACD32},
}};

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f'; }

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string lowercased(std::string_view text) {
  std::string out(text);
  for (char& c : out) c = char(std::tolower(static_cast<unsigned char>(c)));
  return out;
}

double clamp01(double v) { return std::clamp(v, 0.0, 1.0); }

PlatformColorSpace platformSpace(SVGColorSpace space) {
  return space == SVGColorSpace::displayP3 ? PlatformColorSpace::displayP3 : PlatformColorSpace::sRGB;
}

SVGColor makeColor(SVGColorSpace space, double r, double g, double b, double a) {
  return SVGColor(PlatformColor{platformSpace(space), {clamp01(r), clamp01(g), clamp01(b), clamp01(a)}});
}

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::optional<SVGColor> parseHex(std::string_view digits, SVGColorSpace space) {
  std::array<int, 8> values{};
  if (digits.size() > values.size()) return std::nullopt;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    values[i] = hexDigit(digits[i]);
    if (values[i] < 0) return std::nullopt;
  }
  switch (digits.size()) {
    case 3:
    case 4: {
      const double a = digits.size() == 4 ? values[3] * 17 / 255.0 : 1;
      return makeColor(space, values[0] * 17 / 255.0, values[1] * 17 / 255.0, values[2] * 17 / 255.0, a);
    }
    case 6:
    case 8: {
      auto byte = [&](int i) { return (values[2 * i] * 16 + values[2 * i + 1]) / 255.0; };
      return makeColor(space, byte(0), byte(1), byte(2), digits.size() == 8 ? byte(3) : 1);
    }
    default: return std::nullopt;
  }
}

// One argument of a colour function: a number, possibly with a unit or a percent sign.
struct Argument {
  double value = 0;
  std::string unit;  // "", "%", "deg", ...
};

// The arguments of a function body, separated by commas or blanks, with an optional "/"
// before alpha. Absent on anything that is not a number.
std::optional<std::pair<std::vector<Argument>, std::optional<Argument>>> parseArguments(std::string_view body) {
  std::vector<Argument> arguments;
  std::optional<Argument> alpha;
  bool afterSlash = false;
  std::size_t i = 0;
  while (i < body.size()) {
    const char c = body[i];
    if (isBlank(c) || c == ',') {
      ++i;
      continue;
    }
    if (c == '/') {
      if (afterSlash) return std::nullopt;
      afterSlash = true;
      ++i;
      continue;
    }
    double value = 0;
    const char* begin = body.data() + i;
    if (*begin == '+') ++begin;
    const auto [end, error] = std::from_chars(begin, body.data() + body.size(), value);
    if (error != std::errc() || !std::isfinite(value)) return std::nullopt;
    i = std::size_t(end - body.data());
    Argument argument{value, {}};
    while (i < body.size() && (std::isalpha(static_cast<unsigned char>(body[i])) || body[i] == '%'))
      argument.unit += char(std::tolower(static_cast<unsigned char>(body[i++])));
    if (afterSlash) {
      if (alpha) return std::nullopt;
      alpha = argument;
    } else {
      arguments.push_back(argument);
    }
  }
  return std::pair{arguments, alpha};
}

std::optional<double> alphaValue(const Argument& a) {
  if (a.unit == "%") return a.value / 100;
  if (a.unit.empty()) return a.value;
  return std::nullopt;
}

std::optional<SVGColor> parseFunction(std::string_view name, std::string_view body, SVGColorSpace space) {
  auto parsed = parseArguments(body);
  if (!parsed) return std::nullopt;
  auto& [arguments, alphaArgument] = *parsed;
  if (arguments.size() == 4 && !alphaArgument) {
    alphaArgument = arguments.back();
    arguments.pop_back();
  }
  double alpha = 1;
  if (alphaArgument) {
    const auto a = alphaValue(*alphaArgument);
    if (!a) return std::nullopt;
    alpha = *a;
  }
  if (name == "rgb" || name == "rgba") {
    if (arguments.size() != 3) return std::nullopt;
    double channels[3];
    for (int i = 0; i < 3; ++i) {
      const Argument& a = arguments[std::size_t(i)];
      if (a.unit == "%") channels[i] = a.value / 100;
      else if (a.unit.empty()) channels[i] = a.value / 255;
      else return std::nullopt;
    }
    return makeColor(space, channels[0], channels[1], channels[2], alpha);
  }
  if (name == "hsl" || name == "hsla") {
    if (arguments.size() != 3) return std::nullopt;
    double hue = arguments[0].value;
    const std::string& unit = arguments[0].unit;
    if (unit == "rad") hue = hue * 180 / M_PI;
    else if (unit == "grad") hue = hue * 0.9;
    else if (unit == "turn") hue = hue * 360;
    else if (!unit.empty() && unit != "deg") return std::nullopt;
    if (arguments[1].unit != "%" && !arguments[1].unit.empty()) return std::nullopt;
    if (arguments[2].unit != "%" && !arguments[2].unit.empty()) return std::nullopt;
    const double s = clamp01(arguments[1].value / 100), l = clamp01(arguments[2].value / 100);
    const double h = std::fmod(std::fmod(hue, 360) + 360, 360) / 360;
    const RGBAComponents rgb = rgbFromHSL(h, s, l, alpha);
    return makeColor(space, rgb.red, rgb.green, rgb.blue, alpha);
  }
  return std::nullopt;
}

// color(display-p3 r g b / a) and color(srgb …): the space is named, whatever the default.
std::optional<SVGColor> parseColorFunction(std::string_view body) {
  body = trimmed(body);
  std::size_t i = 0;
  while (i < body.size() && !isBlank(body[i])) ++i;
  const std::string spaceName = lowercased(body.substr(0, i));
  SVGColorSpace space;
  if (spaceName == "display-p3") space = SVGColorSpace::displayP3;
  else if (spaceName == "srgb") space = SVGColorSpace::sRGB;
  else return std::nullopt;
  auto parsed = parseArguments(body.substr(i));
  if (!parsed || parsed->first.size() != 3) return std::nullopt;
  double channels[3];
  for (int k = 0; k < 3; ++k) {
    const auto v = alphaValue(parsed->first[std::size_t(k)]);
    if (!v) return std::nullopt;
    channels[k] = *v;
  }
  double alpha = 1;
  if (parsed->second) {
    const auto a = alphaValue(*parsed->second);
    if (!a) return std::nullopt;
    alpha = *a;
  }
  return makeColor(space, channels[0], channels[1], channels[2], alpha);
}

}  // namespace

std::optional<SVGColor> parseSVGColor(std::string_view text, SVGColorSpace untaggedSpace) {
  text = trimmed(text);
  if (text.empty()) return std::nullopt;
  if (text.front() == '#') return parseHex(text.substr(1), untaggedSpace);
  const std::size_t open = text.find('(');
  if (open != std::string_view::npos) {
    if (text.back() != ')') return std::nullopt;
    const std::string name = lowercased(trimmed(text.substr(0, open)));
    const std::string_view body = text.substr(open + 1, text.size() - open - 2);
    if (name == "color") return parseColorFunction(body);
    return parseFunction(name, body, untaggedSpace);
  }
  const std::string name = lowercased(text);
  if (name == "transparent") return makeColor(untaggedSpace, 0, 0, 0, 0);
  const auto found = std::lower_bound(kNamedColors.begin(), kNamedColors.end(), name,
                                      [](const NamedColor& c, const std::string& n) { return c.name < n; });
  if (found == kNamedColors.end() || found->name != name) return std::nullopt;
  return makeColor(untaggedSpace, ((found->rgb >> 16) & 0xFF) / 255.0, ((found->rgb >> 8) & 0xFF) / 255.0,
                   (found->rgb & 0xFF) / 255.0, 1);
}

std::optional<SVGPaintValue> parseSVGPaintValue(std::string_view text,
                                                                SVGColorSpace untaggedSpace) {
  text = trimmed(text);
  if (text.empty()) return std::nullopt;
  using Kind = SVGPaintValue::Kind;
  auto keyword = [&](std::string_view word) -> std::optional<SVGPaintValue> {
    const std::string lower = lowercased(word);
    if (lower == "none") return SVGPaintValue{Kind::none};
    if (lower == "currentcolor") return SVGPaintValue{Kind::currentColor};
    if (lower == "context-fill" || lower == "context-stroke") return SVGPaintValue{Kind::other};
    if (auto color = parseSVGColor(word, untaggedSpace)) return SVGPaintValue{Kind::color, color};
    return std::nullopt;
  };
  if (lowercased(text.substr(0, 4)) == "url(") {
    const std::size_t close = text.find(')');
    if (close == std::string_view::npos) return std::nullopt;
    std::string_view target = trimmed(text.substr(4, close - 4));
    if (target.size() >= 2 && (target.front() == '"' || target.front() == '\'') && target.back() == target.front())
      target = target.substr(1, target.size() - 2);
    SVGPaintValue paint{Kind::reference};
    // Only references into the same document: "#id".
    if (!target.empty() && target.front() == '#') paint.reference = std::string(target.substr(1));
    const std::string_view rest = trimmed(text.substr(close + 1));
    if (!rest.empty()) {
      const auto fallback = keyword(rest);
      if (!fallback || fallback->kind == Kind::other) return std::nullopt;
      paint.fallback = fallback->kind;
      paint.color = fallback->color;
    }
    return paint;
  }
  return keyword(text);
}

SVGPaint standalonePaint(const SVGPaintValue& written) {
  using Kind = SVGPaintValue::Kind;
  switch (written.kind) {
    case Kind::none: return SVGPaint::none();
    case Kind::color: return SVGPaint::color(*written.color);
    case Kind::currentColor: return SVGPaint::color(SVGColor(PlatformColor{PlatformColorSpace::sRGB, {0, 0, 0, 1}}));
    case Kind::reference: return SVGPaint::unresolvedGradient();
    case Kind::other: return SVGPaint::other();
  }
  return SVGPaint::other();
}

}  // namespace iconwright
