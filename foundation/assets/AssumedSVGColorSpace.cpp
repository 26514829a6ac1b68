#include "foundation/assets/AssumedSVGColorSpace.hpp"

#include <string>

namespace iconwright {

std::string_view rawValue(AssumedSVGColorSpace space) {
  switch (space) {
    case AssumedSVGColorSpace::displayP3: return "display-p3";
  }
  return "display-p3";
}

std::string_view displayName(AssumedSVGColorSpace space) {
  switch (space) {
    case AssumedSVGColorSpace::displayP3: return "Display P3";
  }
  return "Display P3";
}

AssumedSVGColorSpace JSONCoding<AssumedSVGColorSpace>::decode(const Decoder& decoder) {
  const std::string text = decoder.decodeString();
  if (auto space = enumFromRawValue<AssumedSVGColorSpace>(text)) return *space;
  decoder.failDataCorrupted("Cannot initialize AssumedSVGColorSpace from invalid String value " + text);
}

}  // namespace iconwright
