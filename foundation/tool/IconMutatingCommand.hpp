// What the command frame needs of documents: readers of command arguments that yield a
// platform, a rendition or the input document, and IconMutatingCommand, the base of commands
// that open the input document, change it in process() and write it back, to "--output-file"
// when given and in place otherwise. Nothing is written when opening or processing fails.
#pragma once

#include <memory>
#include <string_view>

#include "foundation/document/IconComposition.hpp"
#include "foundation/platforms/Platform.hpp"
#include "foundation/platforms/Rendition.hpp"
#include "foundation/support/FilePath.hpp"
#include "foundation/tool/ToolCommand.hpp"

namespace iconwright {

/// The text of the failure when a command needs an input document and has none.
inline constexpr std::string_view missingInputDocumentMessage =
    "Missing required input document path, it should be an unnamed first argument";

/// The value of `name` as a platform file-name component ("iOS", "macOS", "watchOS").
/// Throws MessageError for a missing name or an unknown platform.
[[nodiscard]] Platform requiredPlatform(const ToolCommand::Arguments& arguments, std::string_view name);
/// The value of `name` as a rendition. With `acceptAppearances`, an appearance's file-name
/// component ("Dark") is tried first and gives that appearance's default rendition. Throws
/// MessageError for a missing name or an unknown rendition.
[[nodiscard]] Rendition requiredRendition(const ToolCommand::Arguments& arguments, std::string_view name,
                                          bool acceptAppearances);
/// The input document's path. Throws MessageError (missingInputDocumentMessage) without one.
[[nodiscard]] FilePath requiredInputIconPath(const ToolCommand::Arguments& arguments);
/// Opens the input document as a live composition. Throws as requiredInputIconPath does, and
/// passes on every failure of reading the package.
[[nodiscard]] std::shared_ptr<IconComposition> readInputIcon(const ToolCommand::Arguments& arguments);

class IconMutatingCommand : public ToolCommand {
 public:
  using ToolCommand::ToolCommand;

  /// Changes the opened document. Requires: overridden (fatal assertion, source
  /// "ToolCommand.IconMutatingCommand").
  virtual void process(const std::shared_ptr<IconComposition>& icon);
  /// Opens the input document, calls process() and then write().
  void run() override;
  /// Replaces the "--output-file" path, or the input document when there is none, with the
  /// document's package; parent directories are created as needed.
  virtual void write(const IconComposition& icon);
};

}  // namespace iconwright
