// The checks of a document: too many visible groups on some slot, and localized images whose
// size differs from their base image (bitmaps by pixels, SVGs by canvas). The check for language IDs that the locale system
// doesn't know runs only in internal builds, which load a bundle this library has no form
// of; here it never runs, and only the text it would show is offered.
#include <algorithm>
#include <string>
#include <vector>

#include "foundation/document/IconComposition.hpp"
#include "foundation/support/ListJoining.hpp"
#include "foundation/support/NumberDescription.hpp"

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

// "1024", or the shortest form of a fractional size such as an SVG canvas's "10.5".
std::string dimensionText(double value) {
  if (value == static_cast<double>(static_cast<long long>(value))) return std::to_string(static_cast<long long>(value));
  return doubleDescription(value);
}

std::string sizeText(const Size& size) { return dimensionText(size.width) + " × " + dimensionText(size.height); }

// Each localized variant whose image size differs from its base image's, asset by asset in
// the order of their names and language by language in the order of their IDs. Assets and
// variants that are no image are skipped.
void appendLocalizedSizeDiagnostics(const IconComposition& composition, std::vector<Diagnostic>& found) {
  std::vector<AssetName> names;
  for (const auto& entry : composition.assetStore().assets()) names.push_back(entry.first);
  std::sort(names.begin(), names.end(), [](const auto& lhs, const auto& rhs) { return lhs.fileName() < rhs.fileName(); });
  for (const auto& name : names) {
    const AssetFile& file = composition.assetStore().assets().at(name);
    AssetFile::ResolutionContext context =
        AssetFile::ResolutionContext::fromAssetName(name, composition.assumedSVGColorSpace(), false, std::nullopt);
    const auto baseSize = file.imageSize(context);
    if (!baseSize) continue;
    auto languages = file.variants();
    std::sort(languages.begin(), languages.end());
    for (const auto& language : languages) {
      context.languageID = language;
      const auto size = file.imageSize(context);
      if (!size || (size->width == baseSize->width && size->height == baseSize->height)) continue;
      found.push_back({"localized-asset-size-mis-match", Diagnostic::Severity::error, "Localized resource size mismatch.",
                       "The " + iconwright::quoted(language.displayName()) + " localization of " +
                           iconwright::quoted(name.fileName()) + " and the base resource have different sizes: " +
                           iconwright::quoted(sizeText(*size)) + " and " + iconwright::quoted(sizeText(*baseSize)) +
                           ". Localized images must have the same size as their base representation."});
    }
  }
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
           "remap this localization's assets to the correct locale identifier.";
  }
  return "The localizations " + joinedWithAnd(identifiers) + ", possibly intended to represent " +
         joinedWithAnd(meanings) +
         ", are unrecognized. This is likely due to trak://155566624.\n\nUse the document settings inspector to remap "
         "these localizations' assets to the correct locale identifiers.";
}

std::vector<Diagnostic> IconComposition::diagnostics() const {
  std::vector<Diagnostic> found = tooManyGroupsDiagnostics();
  appendLocalizedSizeDiagnostics(*this, found);
  std::stable_sort(found.begin(), found.end(), [](const Diagnostic& lhs, const Diagnostic& rhs) {
    return 2 - static_cast<int>(lhs.severity) < 2 - static_cast<int>(rhs.severity);
  });
  return found;
}

}  // namespace iconwright
