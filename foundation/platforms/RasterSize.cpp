#include "foundation/platforms/RasterSize.hpp"

#include <ostream>

namespace iconwright {

std::ostream& operator<<(std::ostream& out, const RasterSize& size) {
  out << size.size.width;
  if (size.size.height != size.size.width) out << 'x' << size.size.height;
  return out << '@' << size.scale;
}

}  // namespace iconwright
