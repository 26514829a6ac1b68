#include "foundation/assets/Background.hpp"

namespace iconwright {

const Background& Background::initial() {
  static const Background background{false, Color::white.mix(Color::black, 0.6), std::nullopt};
  return background;
}

}  // namespace iconwright
