// --export-intermediate-representation: flattens a copy of a document to one platform, keeps
// only the assets it still refers to, and writes it as DIR/<the input's file name>; prints
// the asset names it refers to and those to be mirrored in right-to-left languages.
//   wrighttool Icon.icon --export-intermediate-representation --platform iOS --output-directory Out
//     → {"mirrorable-asset-names" : […], "referenced-asset-names" : […]}
// The older line `wrighttool Icon.icon --export-build-intermediary fully-specialize-for iOS Out`
// means the same. The input document is never written.
#include <algorithm>
#include <filesystem>
#include <system_error>
#include <string>
#include <vector>

#include "foundation/format/IconCompositionSnapshot.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/tool/IconMutatingCommand.hpp"

namespace iconwright {
namespace {

std::vector<AssetName> sortedNames(const AssetReferenceSet& names) {
  std::vector<AssetName> sorted(names.begin(), names.end());
  std::sort(sorted.begin(), sorted.end(),
            [](const AssetName& lhs, const AssetName& rhs) { return lhs.fileName() < rhs.fileName(); });
  return sorted;
}

JSONValue namesJSON(const std::vector<AssetName>& names) {
  JSONValue::Array array;
  for (const auto& name : names) array.emplace_back(name.fileName());
  return JSONValue(std::move(array));
}

// Whether `path` is `package` or lies inside it, trailing slashes and symbolic links aside.
bool isWithin(const FilePath& path, const FilePath& package) {
  const auto resolved = [](const FilePath& item) {
    std::string text = item.absolutePath();
    while (text.size() > 1 && text.back() == '/') text.pop_back();
    std::error_code ignored;
    return std::filesystem::weakly_canonical(text, ignored).string();
  };
  const std::string inner = resolved(path);
  const std::string outer = resolved(package);
  return inner == outer || inner.starts_with(outer + "/");
}

}  // namespace

class WrighttoolExportIntermediateRepresentationCommand final : public ToolCommand {
 public:
  using ToolCommand::ToolCommand;

  static Grammar argumentGrammar() {
    return {{"platform", ArgumentKind::value}, {"output-directory", ArgumentKind::value}};
  }
  static std::string_view summary() {
    return "DOC --platform P --output-directory DIR: write the document flattened to one platform";
  }

  void run() override {
    const FilePath input = requiredInputIconPath(arguments());
    const Platform platform = requiredPlatform(arguments(), "platform");
    const FilePath destination = arguments().requiredOutputDirectoryPath().appendingPathComponent(input.lastPathComponent());
    if (isWithin(destination, input) || isWithin(input, destination)) {
      throw MessageError("The output would replace the input document or lie inside it");
    }
    const auto icon = readInputIcon(arguments());
    const auto results = icon->fullySpecialize(platform);
    const auto referenced = sortedNames(results.referencedAssetNames);

    AssetStore compacted;
    for (auto& named : icon->compactNamedAssets(referenced)) compacted.set(named.name, std::move(named.assetFile));
    icon->setAssetStore(std::move(compacted));
    overwrite(destination, icon->snapshot().serialize(), true);

    output("referenced-asset-names", namesJSON(referenced));
    output("mirrorable-asset-names", namesJSON(sortedNames(results.mirrorableAssetNames)));
  }

  bool alwaysWritesStructuredOutput() const override { return true; }
};

ICONWRIGHT_REGISTER_COMMAND(WrighttoolExportIntermediateRepresentationCommand);

}  // namespace iconwright
