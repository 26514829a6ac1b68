// description(x) for the plain values that properties hold, in the shape the library prints
// everywhere: doubles in their shortest round-trip form with a ".0" for whole numbers
// ("0.5", "1024.0", "1e-05"), booleans as "true"/"false", strings as they are. Value types of
// their own give an overload of description in the same namespace.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>

namespace iconwright {

/// Shortest digits that read back to the same double, always with a "." or an exponent.
/// Exponential form below 1e-4 and from 2^53 on (2^53 itself excepted): "1e-05", "1e+16".
/// Zero is "0.0" or "-0.0"; the others are "inf", "-inf" and "nan".
[[nodiscard]] std::string description(double value);
/// The same rules over the digits of a float; exponential from 2^24 on (2^24 excepted).
[[nodiscard]] std::string description(float value);
[[nodiscard]] std::string description(bool value);
[[nodiscard]] std::string description(std::int64_t value);
[[nodiscard]] inline std::string description(int value) { return description(std::int64_t{value}); }
[[nodiscard]] inline std::string description(std::string_view text) { return std::string(text); }
/// Without it a literal would convert to bool.
[[nodiscard]] inline std::string description(const char* text) { return text; }
[[nodiscard]] inline std::string description(const std::string& text) { return text; }

namespace detail {
template <class T>
  requires requires(const T& value) {
    { description(value) } -> std::convertible_to<std::string>;
  }
std::string describeValue(const T& value) {
  return description(value);
}
}  // namespace detail

template <class T>
concept DescribableValue = requires(const T& value) {
  { detail::describeValue(value) } -> std::convertible_to<std::string>;
};

}  // namespace iconwright
