// --import: adds image files to a document as layers, each in a new group.
//   wrighttool Icon.icon --import --input Art/              one group per folder below Art/
//   wrighttool Icon.icon --import --input Logo.svg          one group named "Logo"
//   wrighttool Icon.icon --import --input Logo.svg --group Mark --output-file New.icon
// Files from one folder go into one group named after that folder; a single file goes into a
// group named by --group, or after the file. The document is written back as --upgrade does,
// and the command prints what it added: {"added" : [{"group", "layer", "image-name"}, ...]}.
// When any file can't be imported nothing is written.
#include <filesystem>
#include <map>

#include "foundation/assets/IncomingImageAsset.hpp"
#include "foundation/document/Group.hpp"
#include "foundation/document/Layer.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/support/PathOperations.hpp"
#include "foundation/tool/IconMutatingCommand.hpp"

namespace iconwright {

class WrighttoolImportCommand final : public IconMutatingCommand {
 public:
  using IconMutatingCommand::IconMutatingCommand;

  static Grammar argumentGrammar() {
    return {{"input", ArgumentKind::value}, {"group", ArgumentKind::value}, {"output-file", ArgumentKind::value}};
  }

  void process(const std::shared_ptr<IconComposition>& icon) override {
    namespace fs = std::filesystem;
    const fs::path input = arguments().requiredFilePath("input").absoluteURL();
    const auto groupName = arguments().optionalArgument("group");

    // Every file is read and checked before the document changes.
    struct Batch {
      std::string groupName;
      std::vector<IncomingImageAsset> assets;
    };
    std::vector<Batch> batches;
    std::error_code error;
    if (fs::is_directory(input, error)) {
      if (groupName) throw MessageError("“--group” names the group of a single file; a folder gives one group per folder");
      std::map<fs::path, std::size_t> batchOfFolder;
      for (const fs::path& file : IncomingImageAsset::importableFiles(input)) {
        const fs::path folder = file.parent_path();
        auto asset = IncomingImageAsset::fromFile(file, folder.filename().string());
        const auto [entry, isNew] = batchOfFolder.try_emplace(folder, batches.size());
        if (isNew) batches.push_back({*asset.suggestedGroupName, {}});
        batches[entry->second].assets.push_back(std::move(asset));
      }
    } else {
      auto assets = IncomingImageAsset::assets(input);
      const std::string name = groupName ? *groupName : stringByDeletingPathExtension(input.filename().string());
      batches.push_back({name, std::move(assets)});
    }

    JSONValue::Array added;
    for (const Batch& batch : batches) {
      auto group = Group::create(batch.groupName);
      for (const IncomingImageAsset& asset : batch.assets) {
        auto layer = icon->makeLayer(asset);
        const auto imageName = layer->imageName().effectiveValue(SpecializationSlot::base);
        JSONValue entry = JSONValue::emptyObject();
        entry.set("group", batch.groupName);
        entry.set("layer", layer->inspectedName());
        entry.set("image-name", imageName ? imageName->fileName() : std::string());
        added.push_back(std::move(entry));
        group->append(std::move(layer));
      }
      icon->append(std::move(group));
    }
    output("added", JSONValue(std::move(added)));
  }
};

ICONWRIGHT_REGISTER_COMMAND(WrighttoolImportCommand);

}  // namespace iconwright
