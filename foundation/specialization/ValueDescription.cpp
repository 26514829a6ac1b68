#include "foundation/specialization/ValueDescription.hpp"

#include "foundation/support/NumberDescription.hpp"

namespace iconwright {

std::string description(double value) { return doubleDescription(value); }
std::string description(float value) { return floatDescription(value); }
std::string description(bool value) { return value ? "true" : "false"; }
std::string description(std::int64_t value) { return std::to_string(value); }

}  // namespace iconwright
