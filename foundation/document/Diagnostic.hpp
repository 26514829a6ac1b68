// Diagnostic: one finding of a document's checks — an identifier, a severity, a title and a
// description — with its JSON form {"description", "id", "severity", "title"}. The checks
// themselves are IconComposition::diagnostics().
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/json/JSONValue.hpp"
#include "foundation/support/Enumeration.hpp"
#include "foundation/support/Hashing.hpp"

namespace iconwright {

struct Diagnostic {
  enum class Severity : std::uint8_t { notice, warning, error };

  std::string id;
  Severity severity = Severity::error;
  std::string title;
  std::string description;

  [[nodiscard]] JSONValue encodeJSON() const;

  friend bool operator==(const Diagnostic&, const Diagnostic&) = default;
};

template <>
struct EnumTraits<Diagnostic::Severity> {
  static constexpr std::array allCases{Diagnostic::Severity::notice, Diagnostic::Severity::warning,
                                       Diagnostic::Severity::error};
  [[nodiscard]] static constexpr std::string_view rawValue(Diagnostic::Severity severity) {
    constexpr std::array<std::string_view, 3> texts{"notice", "warning", "error"};
    return texts[caseIndex(severity)];
  }
};

/// "notice", "warning", "error": the JSON form.
[[nodiscard]] constexpr std::string_view codableString(Diagnostic::Severity severity) {
  return EnumTraits<Diagnostic::Severity>::rawValue(severity);
}
/// The symbol image shown beside a diagnostic of this severity.
[[nodiscard]] constexpr std::string_view imageName(Diagnostic::Severity severity) {
  constexpr std::array<std::string_view, 3> names{"exclamationmark.circle.fill", "exclamationmark.triangle.fill",
                                                  "exclamationmark.octagon.fill"};
  return names[caseIndex(severity)];
}

}  // namespace iconwright

template <>
struct std::hash<iconwright::Diagnostic> {
  std::size_t operator()(const iconwright::Diagnostic& diagnostic) const noexcept {
    return iconwright::hashFields(diagnostic.id, iconwright::caseIndex(diagnostic.severity), diagnostic.title,
                                  diagnostic.description);
  }
};
