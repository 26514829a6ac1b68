// Generic support for the library's enumerations. Each enum specialises EnumTraits with
// its cases in declaration order and its raw value (the JSON text); the rest is generic:
//   EnumTraits<Idiom>::allCases, enumFromRawValue<Idiom>("iOS"), caseIndex(Idiom::macOS)
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <type_traits>

namespace iconwright {

template <class E>
struct EnumTraits;  // static constexpr std::array<E, N> allCases; static std::string_view rawValue(E);

template <class E>
[[nodiscard]] constexpr std::size_t caseIndex(E value) {
  return static_cast<std::size_t>(static_cast<std::underlying_type_t<E>>(value));
}

template <class E>
[[nodiscard]] std::optional<E> enumFromRawValue(std::string_view text) {
  for (E value : EnumTraits<E>::allCases) {
    if (EnumTraits<E>::rawValue(value) == text) return value;
  }
  return std::nullopt;
}

}  // namespace iconwright
