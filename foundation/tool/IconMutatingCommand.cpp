#include "foundation/tool/IconMutatingCommand.hpp"

#include <string>

#include "foundation/format/IconCompositionSnapshot.hpp"
#include "foundation/specialization/Appearance.hpp"
#include "foundation/support/Assertions.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/tool/ClassRegistry.hpp"

namespace iconwright {

Platform requiredPlatform(const ToolCommand::Arguments& arguments, std::string_view name) {
  return requiredPlatformFromFileNameComponent(arguments.requiredArgument(name));
}

Rendition requiredRendition(const ToolCommand::Arguments& arguments, std::string_view name, bool acceptAppearances) {
  const std::string text = arguments.requiredArgument(name);
  if (acceptAppearances) {
    if (const auto appearance = appearanceFromFileNameComponent(text)) return defaultRendition(*appearance);
  }
  return requiredRenditionFromFileNameComponent(text);
}

FilePath requiredInputIconPath(const ToolCommand::Arguments& arguments) {
  if (!arguments.inputDocumentPath) throw MessageError(std::string(missingInputDocumentMessage));
  return *arguments.inputDocumentPath;
}

std::shared_ptr<IconComposition> readInputIcon(const ToolCommand::Arguments& arguments) {
  return createFromFilePath<IconComposition>(requiredInputIconPath(arguments));
}

void IconMutatingCommand::process(const std::shared_ptr<IconComposition>&) {
  ICONWRIGHT_FATAL("ToolCommand.IconMutatingCommand",
                   unqualifiedTypeName(typeid(*this)) + " has not overridden required method");
}

void IconMutatingCommand::run() {
  const auto icon = readInputIcon(arguments());
  process(icon);
  write(*icon);
}

void IconMutatingCommand::write(const IconComposition& icon) {
  const auto outputPath = arguments().optionalOutputFilePath();
  const FilePath destination = outputPath ? *outputPath : requiredInputIconPath(arguments());
  overwrite(destination, icon.snapshot().serialize(), true);
}

}  // namespace iconwright
