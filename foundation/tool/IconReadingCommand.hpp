// IconReadingCommand: the base of commands that open the input document and answer questions
// about it without writing anything. Also the readers of the arguments with which such a
// command names what a canvas would show: a platform, a rendition and a language, each with
// a default, made into a RenderingConfiguration against the document's supported platforms.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "foundation/assets/RenderingConfiguration.hpp"
#include "foundation/document/IconComposition.hpp"
#include "foundation/json/JSONValue.hpp"
#include "foundation/tool/IconMutatingCommand.hpp"
#include "foundation/tool/ToolCommand.hpp"

namespace iconwright {

/// The value of `name` as a rendition: its JSON name ("light-color") or its file-name
/// component ("Default"); absent when the name is not given. Throws MessageError
/// "Unknown rendition name: “text”. Should be one of “light-color”, … or “dark-clear”".
[[nodiscard]] std::optional<Rendition> optionalRendition(const ToolCommand::Arguments& arguments, std::string_view name);
/// The value of `name` as a localization: "base", "left-to-right", "right-to-left" or a
/// language identifier; absent when the name is not given.
[[nodiscard]] std::optional<Localization> optionalLocalization(const ToolCommand::Arguments& arguments,
                                                               std::string_view name);

/// What "--platform", "--rendition" and "--language" ask for, against the document's
/// supported platforms. Without "--platform" (allowed unless `requirePlatform`), the first
/// selectable platform of the document, or iOS when it has none; without "--rendition",
/// lightColor; without "--language", the base localization.
[[nodiscard]] RenderingConfiguration requestedRenderingConfiguration(const ToolCommand::Arguments& arguments,
                                                                     const IconComposition& icon, bool requirePlatform);

/// Command output of geometry: {"x", "y", "width", "height"} and {"width", "height"}; null
/// for an absent value.
[[nodiscard]] JSONValue rectJSON(const std::optional<Rect>& rect);
[[nodiscard]] JSONValue sizeJSON(const std::optional<Size>& size);

class IconReadingCommand : public ToolCommand {
 public:
  using ToolCommand::ToolCommand;

  /// Answers about the opened document. Requires: overridden (fatal assertion, source
  /// "ToolCommand.IconReadingCommand").
  virtual void inspect(const std::shared_ptr<IconComposition>& icon);
  /// Opens the input document and calls inspect(); nothing is written.
  void run() override;
  /// True: a reading command always answers.
  [[nodiscard]] bool alwaysWritesStructuredOutput() const override { return true; }
};

}  // namespace iconwright
