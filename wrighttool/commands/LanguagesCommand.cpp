// --languages: the languages a document offers for localized assets. Adds and removes
// comma-separated language IDs; removing with --cull also drops those languages' asset
// variants. Writes the document back, as --upgrade does, when something was asked to change.
//   wrighttool Icon.icon --languages                            → {"languages" : […], "unknown-languages" : […]}
//   wrighttool Icon.icon --languages --add de,fr
//   wrighttool Icon.icon --languages --remove fr --cull --output-file New.icon
#include <algorithm>
#include <string>
#include <vector>

#include "foundation/support/MessageError.hpp"
#include "foundation/support/ListJoining.hpp"
#include "foundation/tool/IconMutatingCommand.hpp"

namespace iconwright {
namespace {

using LanguageIDs = IconComposition::LanguageIDs;

// "de, fr,,en_GB" → {de, fr, en_GB}; spaces around an item are dropped.
LanguageIDs parseLanguageIDs(const std::string& text, std::string_view argument) {
  LanguageIDs ids;
  std::size_t start = 0;
  while (start <= text.size()) {
    std::size_t end = text.find(',', start);
    if (end == std::string::npos) end = text.size();
    std::string item = text.substr(start, end - start);
    const auto first = item.find_first_not_of(" \t");
    const auto last = item.find_last_not_of(" \t");
    if (first != std::string::npos) ids.insert(Localization::LanguageID(item.substr(first, last - first + 1)));
    start = end + 1;
  }
  if (ids.empty()) {
    throw MessageError("Expected a comma-separated list of language IDs for " + iconwright::quoted("--" + std::string(argument)));
  }
  return ids;
}

JSONValue sortedJSON(const LanguageIDs& ids) {
  std::vector<Localization::LanguageID> sorted(ids.begin(), ids.end());
  std::sort(sorted.begin(), sorted.end());
  JSONValue::Array array;
  for (const auto& id : sorted) array.emplace_back(id.localeID());
  return JSONValue(std::move(array));
}

}  // namespace

class WrighttoolLanguagesCommand final : public IconMutatingCommand {
 public:
  using IconMutatingCommand::IconMutatingCommand;

  static Grammar argumentGrammar() {
    return {{"add", ArgumentKind::value},
            {"remove", ArgumentKind::value},
            {"cull", ArgumentKind::signal},
            {"output-file", ArgumentKind::value}};
  }
  static std::string_view summary() {
    return "DOC [--add IDS] [--remove IDS] [--cull]: list or change the document's languages";
  }

  void run() override {
    const auto add = arguments().optionalArgument("add");
    const auto remove = arguments().optionalArgument("remove");
    // Both lists are read before anything changes, so a bad one leaves the document alone.
    const LanguageIDs added = add ? parseLanguageIDs(*add, "add") : LanguageIDs{};
    const LanguageIDs removed = remove ? parseLanguageIDs(*remove, "remove") : LanguageIDs{};
    const auto icon = readInputIcon(arguments());
    if (add) icon->addSpecializableLanguageIDs(added);
    if (remove) icon->removeSpecializableLanguageIDs(removed, arguments().signals.contains("cull"));
    if (add || remove) write(*icon);
    output("languages", sortedJSON(icon->specializableLanguageIDs()));
    output("unknown-languages", sortedJSON(icon->unknownSpecializableLanguageIDs()));
  }

  bool alwaysWritesStructuredOutput() const override { return true; }
};

ICONWRIGHT_REGISTER_COMMAND(WrighttoolLanguagesCommand);

}  // namespace iconwright
