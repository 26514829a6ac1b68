// Shared pieces of the fuzz targets: the fuzzer's bytes as text or as command-line tokens,
// exact comparison of doubles, and FUZZ_CHECK, which stops the run when an input breaks a
// promise of the code under test. Every target defines LLVMFuzzerTestOneInput; built with
// clang it is a libFuzzer program, otherwise ReplayMain.cpp runs it over files.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace iconwright::fuzz {

[[nodiscard]] inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// The tokens of a command line: the text split at every NUL byte, or at every line feed
/// when it holds no NUL. Empty tokens are kept, as a shell passes "" through.
[[nodiscard]] inline std::vector<std::string> splitTokens(std::string_view text) {
  const char separator = text.find('\0') != std::string_view::npos ? '\0' : '\n';
  std::vector<std::string> tokens;
  if (text.empty()) return tokens;
  std::size_t start = 0;
  while (true) {
    const std::size_t end = text.find(separator, start);
    tokens.emplace_back(text.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start));
    if (end == std::string_view::npos) break;
    start = end + 1;
  }
  return tokens;
}

/// The same bits, or both NaN: the equality a round trip must keep.
[[nodiscard]] inline bool sameDouble(double a, double b) {
  if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
  std::uint64_t x = 0;
  std::uint64_t y = 0;
  std::memcpy(&x, &a, sizeof x);
  std::memcpy(&y, &b, sizeof y);
  return x == y;
}

[[noreturn]] inline void checkFailed(const char* file, int line, const char* condition, std::string_view detail) {
  std::fprintf(stderr, "%s:%d: fuzz check failed: %s\n  %.*s\n", file, line, condition, static_cast<int>(detail.size()),
               detail.data());
  std::abort();
}

}  // namespace iconwright::fuzz

/// Stops the run with `detail` (a string) when `condition` does not hold.
#define FUZZ_CHECK(condition, detail)                                                          \
  do {                                                                                         \
    if (!(condition)) ::iconwright::fuzz::checkFailed(__FILE__, __LINE__, #condition, (detail)); \
  } while (false)

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
