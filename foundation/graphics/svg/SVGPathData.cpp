#include "foundation/graphics/svg/SVGPathData.hpp"

#include <cctype>
#include <charconv>
#include <cmath>
#include <numbers>
#include <string>
#include <utility>

namespace iconwright {
namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f'; }

// A cursor over number-bearing text.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  bool atEnd() const { return pos_ >= text_.size(); }
  char peek() const { return atEnd() ? '\0' : text_[pos_]; }
  void advance() { ++pos_; }
  void skipBlanks() {
    while (!atEnd() && isBlank(text_[pos_])) ++pos_;
  }
  // Blanks, then at most one comma, then blanks.
  void skipSeparator() {
    skipBlanks();
    if (peek() == ',') {
      ++pos_;
      skipBlanks();
    }
  }
  // An SVG number: sign, digits, fraction, exponent. "1.5.5" reads as 1.5 then .5.
  std::optional<double> number() {
    skipBlanks();
    const std::size_t start = pos_;
    std::size_t i = pos_;
    if (i < text_.size() && (text_[i] == '+' || text_[i] == '-')) ++i;
    bool digits = false;
    while (i < text_.size() && std::isdigit(static_cast<unsigned char>(text_[i]))) ++i, digits = true;
    if (i < text_.size() && text_[i] == '.') {
      ++i;
      while (i < text_.size() && std::isdigit(static_cast<unsigned char>(text_[i]))) ++i, digits = true;
    }
    if (!digits) return std::nullopt;
    if (i < text_.size() && (text_[i] == 'e' || text_[i] == 'E')) {
      std::size_t j = i + 1;
      if (j < text_.size() && (text_[j] == '+' || text_[j] == '-')) ++j;
      if (j < text_.size() && std::isdigit(static_cast<unsigned char>(text_[j]))) {
        while (j < text_.size() && std::isdigit(static_cast<unsigned char>(text_[j]))) ++j;
        i = j;
      }
    }
    const char* begin = text_.data() + start + (text_[start] == '+' ? 1 : 0);
    double value = 0;
    const auto [end, error] = std::from_chars(begin, text_.data() + i, value);
    if (error != std::errc() && error != std::errc::result_out_of_range) return std::nullopt;
    if (!std::isfinite(value)) return std::nullopt;
    pos_ = i;
    return value;
  }
  // An arc flag: a single 0 or 1, which needs no separator after it.
  std::optional<bool> flag() {
    skipBlanks();
    if (peek() == '0' || peek() == '1') {
      const bool value = peek() == '1';
      ++pos_;
      return value;
    }
    return std::nullopt;
  }
  std::size_t position() const { return pos_; }
  std::string_view rest() const { return text_.substr(pos_); }

 private:
  std::string_view text_;
  std::size_t pos_ = 0;
};

Point reflect(Point control, Point about) { return {2 * about.x - control.x, 2 * about.y - control.y}; }

}  // namespace

void addSVGArc(Path& path, Point from, double rx, double ry, double xAxisRotation, bool largeArc, bool sweep,
               Point to) {
  if (from == to) return;
  rx = std::fabs(rx);
  ry = std::fabs(ry);
  if (rx == 0 || ry == 0) {
    path.lineTo(to);
    return;
  }
  const double phi = xAxisRotation * std::numbers::pi / 180;
  const double cosPhi = std::cos(phi), sinPhi = std::sin(phi);
  // Endpoint to centre parameterisation.
  const double dx = (from.x - to.x) / 2, dy = (from.y - to.y) / 2;
  const double x1 = cosPhi * dx + sinPhi * dy, y1 = -sinPhi * dx + cosPhi * dy;
  const double lambda = (x1 * x1) / (rx * rx) + (y1 * y1) / (ry * ry);
  if (lambda > 1) {
    const double s = std::sqrt(lambda);
    rx *= s;
    ry *= s;
  }
  const double numerator = rx * rx * ry * ry - rx * rx * y1 * y1 - ry * ry * x1 * x1;
  const double denominator = rx * rx * y1 * y1 + ry * ry * x1 * x1;
  double coefficient = denominator == 0 ? 0 : std::sqrt(std::max(0.0, numerator / denominator));
  if (largeArc == sweep) coefficient = -coefficient;
  const double cxPrime = coefficient * rx * y1 / ry, cyPrime = -coefficient * ry * x1 / rx;
  const double cx = cosPhi * cxPrime - sinPhi * cyPrime + (from.x + to.x) / 2;
  const double cy = sinPhi * cxPrime + cosPhi * cyPrime + (from.y + to.y) / 2;
  auto angle = [](double ux, double uy, double vx, double vy) {
    return std::atan2(ux * vy - uy * vx, ux * vx + uy * vy);
  };
  const double theta1 = angle(1, 0, (x1 - cxPrime) / rx, (y1 - cyPrime) / ry);
  double delta = angle((x1 - cxPrime) / rx, (y1 - cyPrime) / ry, (-x1 - cxPrime) / rx, (-y1 - cyPrime) / ry);
  if (!sweep && delta > 0) delta -= 2 * std::numbers::pi;
  if (sweep && delta < 0) delta += 2 * std::numbers::pi;
  if (!std::isfinite(delta) || !std::isfinite(cx) || !std::isfinite(cy)) {
    path.lineTo(to);
    return;
  }
  const int segments = std::max(1, int(std::ceil(std::fabs(delta) / (std::numbers::pi / 2) - 1e-9)));
  const double step = delta / segments;
  const double k = 4.0 / 3.0 * std::tan(step / 4);
  auto pointAt = [&](double t, double ox, double oy) {
    // (ox, oy) is an offset in the ellipse's own axes, added to the point at angle t.
    const double ex = rx * std::cos(t) + ox, ey = ry * std::sin(t) + oy;
    return Point{cosPhi * ex - sinPhi * ey + cx, sinPhi * ex + cosPhi * ey + cy};
  };
  double t = theta1;
  for (int i = 0; i < segments; ++i) {
    const double t2 = t + step;
    const Point c1 = pointAt(t, -k * rx * std::sin(t), k * ry * std::cos(t));
    const Point c2 = pointAt(t2, k * rx * std::sin(t2), -k * ry * std::cos(t2));
    const Point end = i == segments - 1 ? to : pointAt(t2, 0, 0);
    path.curveTo(c1, c2, end);
    t = t2;
  }
}

Path parseSVGPathData(std::string_view data) {
  Path path;
  Scanner scanner(data);
  Point current, start;
  Point lastControl;       // of the previous C/S or Q/T command, for the reflections
  char previous = 0;       // the previous command, upper case
  char command = 0;
  bool havePath = false;
  scanner.skipBlanks();
  while (true) {
    scanner.skipBlanks();
    if (scanner.atEnd()) break;
    const char c = scanner.peek();
    if (std::isalpha(static_cast<unsigned char>(c))) {
      command = c;
      scanner.advance();
    } else if (command == 0) {
      break;  // numbers before the first command
    } else if (command == 'M') {
      command = 'L';  // pairs after a moveto are linetos
    } else if (command == 'm') {
      command = 'l';
    } else if (command == 'Z' || command == 'z') {
      break;  // numbers after a closepath
    }
    const char upper = char(std::toupper(static_cast<unsigned char>(command)));
    const bool relative = command != upper;
    if (!havePath && upper != 'M') break;  // path data must start with a moveto
    const Point base = relative ? current : Point{0, 0};
    auto point = [&]() -> std::optional<Point> {
      const auto x = scanner.number();
      if (!x) return std::nullopt;
      scanner.skipSeparator();
      const auto y = scanner.number();
      if (!y) return std::nullopt;
      scanner.skipSeparator();
      return Point{base.x + *x, base.y + *y};
    };
    bool ok = true;
    switch (upper) {
      case 'M': {
        const auto p = point();
        if (!(ok = p.has_value())) break;
        path.moveTo(*p);
        current = start = *p;
        havePath = true;
        break;
      }
      case 'L': {
        const auto p = point();
        if (!(ok = p.has_value())) break;
        path.lineTo(*p);
        current = *p;
        break;
      }
      case 'H':
      case 'V': {
        const auto v = scanner.number();
        if (!(ok = v.has_value())) break;
        scanner.skipSeparator();
        Point p = current;
        if (upper == 'H') p.x = (relative ? current.x : 0) + *v;
        else p.y = (relative ? current.y : 0) + *v;
        path.lineTo(p);
        current = p;
        break;
      }
      case 'C':
      case 'S': {
        Point c1;
        if (upper == 'C') {
          const auto p = point();
          if (!(ok = p.has_value())) break;
          c1 = *p;
        } else {
          c1 = (previous == 'C' || previous == 'S') ? reflect(lastControl, current) : current;
        }
        const auto c2 = point();
        if (!(ok = c2.has_value())) break;
        const auto end = point();
        if (!(ok = end.has_value())) break;
        path.curveTo(c1, *c2, *end);
        lastControl = *c2;
        current = *end;
        break;
      }
      case 'Q':
      case 'T': {
        Point control;
        if (upper == 'Q') {
          const auto p = point();
          if (!(ok = p.has_value())) break;
          control = *p;
        } else {
          control = (previous == 'Q' || previous == 'T') ? reflect(lastControl, current) : current;
        }
        const auto end = point();
        if (!(ok = end.has_value())) break;
        path.quadCurveTo(control, *end);
        lastControl = control;
        current = *end;
        break;
      }
      case 'A': {
        const auto rx = scanner.number();
        scanner.skipSeparator();
        const auto ry = rx ? scanner.number() : std::nullopt;
        scanner.skipSeparator();
        const auto rotation = ry ? scanner.number() : std::nullopt;
        scanner.skipSeparator();
        const auto large = rotation ? scanner.flag() : std::nullopt;
        scanner.skipSeparator();
        const auto sweep = large ? scanner.flag() : std::nullopt;
        scanner.skipSeparator();
        const auto end = sweep ? point() : std::nullopt;
        if (!(ok = end.has_value())) break;
        addSVGArc(path, current, *rx, *ry, *rotation, *large, *sweep, *end);
        current = *end;
        break;
      }
      case 'Z':
        path.closeSubpath();
        current = start;
        break;
      default: ok = false;
    }
    if (!ok) break;
    previous = upper;
  }
  return path;
}

std::optional<AffineTransform> parseSVGTransform(std::string_view text) {
  Scanner scanner(text);
  AffineTransform result;
  while (true) {
    scanner.skipBlanks();
    if (scanner.peek() == ',') {
      scanner.advance();
      scanner.skipBlanks();
    }
    if (scanner.atEnd()) break;
    std::string name;
    while (std::isalpha(static_cast<unsigned char>(scanner.peek()))) {
      name += scanner.peek();
      scanner.advance();
    }
    scanner.skipBlanks();
    if (name.empty() || scanner.peek() != '(') return std::nullopt;
    scanner.advance();
    std::vector<double> arguments;
    while (true) {
      scanner.skipBlanks();
      if (scanner.peek() == ')') {
        scanner.advance();
        break;
      }
      if (!arguments.empty()) scanner.skipSeparator();
      const auto value = scanner.number();
      if (!value || arguments.size() >= 6) return std::nullopt;
      arguments.push_back(*value);
    }
    const std::size_t n = arguments.size();
    AffineTransform t;
    if (name == "matrix" && n == 6) {
      t = {arguments[0], arguments[1], arguments[2], arguments[3], arguments[4], arguments[5]};
    } else if (name == "translate" && (n == 1 || n == 2)) {
      t = AffineTransform::makeTranslation(arguments[0], n == 2 ? arguments[1] : 0);
    } else if (name == "scale" && (n == 1 || n == 2)) {
      t = AffineTransform::makeScale(arguments[0], n == 2 ? arguments[1] : arguments[0]);
    } else if (name == "rotate" && (n == 1 || n == 3)) {
      const double angle = arguments[0] * std::numbers::pi / 180;
      const double c = std::cos(angle), s = std::sin(angle);
      const AffineTransform rotation{c, s, -s, c, 0, 0};
      if (n == 3) {
        // translate(cx, cy) rotate(a) translate(-cx, -cy)
        t = AffineTransform::makeTranslation(-arguments[1], -arguments[2])
                .concatenating(rotation)
                .concatenating(AffineTransform::makeTranslation(arguments[1], arguments[2]));
      } else {
        t = rotation;
      }
    } else if (name == "skewX" && n == 1) {
      t = {1, 0, std::tan(arguments[0] * std::numbers::pi / 180), 1, 0, 0};
    } else if (name == "skewY" && n == 1) {
      t = {1, std::tan(arguments[0] * std::numbers::pi / 180), 0, 1, 0, 0};
    } else {
      return std::nullopt;
    }
    // Functions written later act first on a point.
    result = t.concatenating(result);
  }
  return result;
}

std::optional<std::vector<double>> parseSVGNumberList(std::string_view text) {
  Scanner scanner(text);
  std::vector<double> numbers;
  scanner.skipBlanks();
  while (!scanner.atEnd()) {
    const auto value = scanner.number();
    if (!value) return std::nullopt;
    numbers.push_back(*value);
    scanner.skipSeparator();
  }
  return numbers;
}

double SVGLength::resolved(double reference) const {
  constexpr double fontSize = 16;
  switch (unit) {
    case Unit::none:
    case Unit::px: return value;
    case Unit::percent: return value / 100 * reference;
    case Unit::em: return value * fontSize;
    case Unit::ex: return value * fontSize / 2;
    case Unit::in: return value * 96;
    case Unit::cm: return value * 96 / 2.54;
    case Unit::mm: return value * 96 / 25.4;
    case Unit::pt: return value * 96 / 72;
    case Unit::pc: return value * 16;
  }
  return value;
}

std::optional<SVGLength> parseSVGLength(std::string_view text) {
  Scanner scanner(text);
  const auto value = scanner.number();
  if (!value) return std::nullopt;
  std::string_view unit = scanner.rest();
  while (!unit.empty() && isBlank(unit.back())) unit.remove_suffix(1);
  using Unit = SVGLength::Unit;
  static constexpr std::pair<std::string_view, Unit> units[] = {
      {"", Unit::none}, {"px", Unit::px}, {"%", Unit::percent}, {"em", Unit::em}, {"ex", Unit::ex},
      {"in", Unit::in}, {"cm", Unit::cm}, {"mm", Unit::mm},     {"pt", Unit::pt}, {"pc", Unit::pc}};
  for (const auto& [name, known] : units)
    if (unit == name) return SVGLength{*value, known};
  return std::nullopt;
}

}  // namespace iconwright
