// VersionNumber: major.minor.hotfix, ordered by major, then minor, then hotfix. Its text
// leaves out a hotfix of 0 ("1.2", "1.2.3"); the JSON form of json is that text.
#pragma once

#include <compare>
#include <string>
#include <string_view>

namespace iconwright {

struct VersionNumber {
  int major = 0;
  int minor = 0;
  int hotfix = 0;

  /// "1.2" for 1.2.0, "1.2.3" otherwise.
  [[nodiscard]] std::string stringRepresentation() const;
  /// Accepts two or three dot-separated runs of decimal digits ("1.2", "1.2.0", "10.0.3"),
  /// each within the range of int; nothing else, not even surrounding blanks or a sign.
  /// Throws MessageError "invalid version string: <text>".
  [[nodiscard]] static VersionNumber fromStringRepresentation(std::string_view text);

  friend constexpr auto operator<=>(const VersionNumber&, const VersionNumber&) = default;
};

}  // namespace iconwright
