// The checks of a document: too many visible groups on some slot, and localized images whose
// size differs from their base image. The check for language IDs that the locale system
// doesn't know runs only in internal builds, which load a bundle this library has no form
// of; here it never runs, and only the text it would show is offered.
#include <algorithm>
#include <string>
#include <vector>

#include "foundation/document/IconComposition.hpp"
#include "foundation/support/ListJoining.hpp"

namespace iconwright {
namespace {

// A list joined with ", " and a last " and ".
std::string joinedWithAnd(const std::vector<std::string>& items) {
  std::string text;
  for (std::size_t index = 0; index < items.size(); ++index) {
    if (index > 0) text += index + 1 == items.size() ? " and " : ", ";
    text += items[index];
  }
  return text;
}

}  // namespace

JSONValue Diagnostic::encodeJSON() const {
  return JSONValue::Object{{"description", description},
                           {"id", id},
                           {"severity", std::string(codableString(severity))},
                           {"title", title}};
}

int IconComposition::countVisibleGroups(const SpecializationSlot& slot) const {
  return static_cast<int>(
      std::count_if(groups_.begin(), groups_.end(), [&](const auto& group) { return !group->isHidden().effectiveValue(slot); }));
}

std::vector<Diagnostic> IconComposition::tooManyGroupsDiagnostics() const {
  for (const Platform platform : supportedPlatforms_.selectablePlatforms()) {
    for (const Appearance appearance : concreteValidAppearances(platform)) {
      if (countVisibleGroups({idiom(platform, supportedPlatforms_), appearance}) > 4) {
        return {{"too-many-visible-groups", Diagnostic::Severity::error, "Too many visible groups.",
                 "This icon exceeds the maximum group limit of four."}};
      }
    }
  }
  return {};
}

std::string IconComposition::incorrectLocaleCodeDiagnosticDescription(const LanguageIDs& languageIDs) {
  std::vector<Localization::LanguageID> sorted(languageIDs.begin(), languageIDs.end());
  std::sort(sorted.begin(), sorted.end());
  std::vector<std::string> identifiers;
  std::vector<std::string> meanings;
  for (const auto& languageID : sorted) {
    identifiers.push_back(iconwright::quoted(languageID.localeID()));
    const std::string name = languageID.displayName();
    meanings.push_back(iconwright::quoted(name == languageID.localeID() ? "Unknown" : name));
  }
  if (sorted.size() == 1) {
    return "The localization " + joinedWithAnd(identifiers) + ", possibly intended to represent " +
           joinedWithAnd(meanings) +
           ", is unrecognized. This is likely due to trak://155566624.\n\nUse the document settings inspector to "
           "remap this localization's assets to the correct locale specification.";
  }
  return "The localizations " + joinedWithAnd(identifiers) + ", possibly intended to represent " +
         joinedWithAnd(meanings) +
         ", are unrecognized. This is likely due to trak://155566624.\n\nUse the document settings inspector to remap "
         "these localizations' assets to the correct locale specifications.";
}

std::vector<Diagnostic> IconComposition::diagnostics() const {
  std::vector<Diagnostic> found = tooManyGroupsDiagnostics();
  std::stable_sort(found.begin(), found.end(), [](const Diagnostic& lhs, const Diagnostic& rhs) {
    return 2 - static_cast<int>(lhs.severity) < 2 - static_cast<int>(rhs.severity);
  });
  return found;
}

}  // namespace iconwright
