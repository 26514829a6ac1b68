// The languages a document offers for localized assets: changing the set, culling the asset
// variants of languages that leave it, keeping a viewer's localization valid, and finding
// the languages the locale system doesn't know.
#include <utility>

#include "foundation/document/IconComposition.hpp"

namespace iconwright {

void IconComposition::addSpecializableLanguageIDs(const LanguageIDs& languageIDs) {
  LanguageIDs united = specializableLanguageIDs_;
  united.insert(languageIDs.begin(), languageIDs.end());
  setSpecializableLanguageIDs(std::move(united), false);
}

void IconComposition::setSpecializableLanguageIDs(LanguageIDs languageIDs, bool cullAssetLocalizations) {
  Localization unused = Localization::base();
  setSpecializableLanguageIDs(std::move(languageIDs), cullAssetLocalizations, unused);
}

void IconComposition::setSpecializableLanguageIDs(LanguageIDs languageIDs, bool cullAssetLocalizations,
                                                  Localization& currentLocalization) {
  LanguageIDs removed;
  for (const auto& languageID : specializableLanguageIDs_) {
    if (!languageIDs.contains(languageID)) removed.insert(languageID);
  }
  if (specializableLanguageIDs_ != languageIDs) {
    specializableLanguageIDs_ = std::move(languageIDs);
    notifyMemberChanged("specializableLanguageIDs");
  }
  if (removed.empty()) return;
  currentLocalization = validateLocalization(currentLocalization);
  if (cullAssetLocalizations) {
    AssetStore store = assetStore_;
    store.remove(removed);
    setAssetStore(std::move(store));
  }
}

void IconComposition::removeSpecializableLanguageIDs(const LanguageIDs& languageIDs, bool cullAssetLocalizations) {
  Localization unused = Localization::base();
  removeSpecializableLanguageIDs(languageIDs, cullAssetLocalizations, unused);
}

void IconComposition::removeSpecializableLanguageIDs(const LanguageIDs& languageIDs, bool cullAssetLocalizations,
                                                     Localization& currentLocalization) {
  LanguageIDs remaining = specializableLanguageIDs_;
  for (const auto& languageID : languageIDs) remaining.erase(languageID);
  setSpecializableLanguageIDs(std::move(remaining), cullAssetLocalizations, currentLocalization);
}

Localization IconComposition::validateLocalization(const Localization& localization) const {
  const auto languageID = localization.languageID();
  if (!languageID || specializableLanguageIDs_.contains(*languageID)) return localization;
  return languageID->isRightToLeft() ? Localization::rightToLeft() : Localization::leftToRight();
}

IconComposition::LanguageIDs IconComposition::unknownSpecializableLanguageIDs() const {
  LanguageIDs languages = assetStore_.languagesWithAssetVariants();
  languages.insert(specializableLanguageIDs_.begin(), specializableLanguageIDs_.end());
  if (languages.empty()) return languages;
  const auto& allowed = Localization::LanguageID::allowedLanguageIDs();
  std::erase_if(languages, [&](const auto& languageID) { return allowed.contains(languageID); });
  return languages;
}

}  // namespace iconwright
