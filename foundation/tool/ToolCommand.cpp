#include "foundation/tool/ToolCommand.hpp"

#include <filesystem>
#include <optional>
#include <system_error>

#include "foundation/json/JSONWriter.hpp"
#include "foundation/support/Assertions.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/support/TextCase.hpp"
#include "foundation/tool/OutputPaths.hpp"

namespace iconwright {

namespace {

std::shared_ptr<OutputFileHandle>& explicitHandle() {
  static std::shared_ptr<OutputFileHandle> handle;
  return handle;
}

void createParentDirectoryQuietly(const FilePath& path) {
  std::error_code ignored;
  std::filesystem::create_directories(path.deletingLastPathComponent().absolutePath(), ignored);
}

}  // namespace

ToolCommand::ToolCommand(Arguments arguments) : arguments_(std::move(arguments)) {}

ToolCommand::~ToolCommand() = default;

std::shared_ptr<OutputFileHandle> ToolCommand::explicitOutputFileHandle() { return explicitHandle(); }

void ToolCommand::setExplicitOutputFileHandle(std::shared_ptr<OutputFileHandle> handle) {
  explicitHandle() = std::move(handle);
}

std::shared_ptr<OutputFileHandle> ToolCommand::effectiveOutputFileHandle() const {
  if (auto handle = explicitHandle()) return handle;
  return OutputFileHandle::standardOutput();
}

void ToolCommand::output(std::string key, JSONValue value) { bufferedOutput_.insert_or_assign(std::move(key), std::move(value)); }

void ToolCommand::run() { failNotOverridden(typeid(*this)); }

bool ToolCommand::alwaysWritesStructuredOutput() const { return false; }

std::string ToolCommand::consoleOutput() const {
  if (!alwaysWritesStructuredOutput() && bufferedOutput_.empty()) return "";
  return writeJSON(JSONValue(bufferedOutput_), JSONWritingOptions::console());
}

void ToolCommand::prepareToOverwrite(const FilePath& path) const {
  requireSafeOutputPath(path, arguments().inputDocumentPath);
  createParentDirectoryQuietly(path);
  std::error_code error;
  std::filesystem::remove_all(path.absolutePath(), error);
  // Nothing there (also when a parent is no directory) counts as removed.
  if (error && error != std::errc::no_such_file_or_directory && error != std::errc::not_a_directory) throw FileSystemError(path.absolutePath(), error.message());
}

void ToolCommand::overwrite(const FilePath& outputPath, const FileWrapper& fileWrapper,
                            bool creatingIntermediateDirectories) const {
  requireSafeOutputPath(outputPath, arguments().inputDocumentPath);
  std::optional<IntermediateDirectories> parents;
  if (creatingIntermediateDirectories) parents.emplace(outputPath);
  fileWrapper.writeReplacing(outputPath);
  if (parents) parents->keep();
}

std::string ToolCommand::commandName() const {
  const std::string className = unqualifiedTypeName(typeid(*this));
  std::vector<std::string> words;
  for (UTF8Characters characters(className); !characters.atEnd();) {
    const auto character = characters.next();
    if (character.valid && isUppercaseCharacter(character.value)) words.emplace_back();
    if (words.empty()) ICONWRIGHT_FATAL("ToolCommand", expectedNonNilMessage);
    UTF8Characters::append(words.back(), character);
  }
  std::string joined;
  for (const auto& word : words) {
    if (!joined.empty()) joined += '-';
    joined += word;
  }
  return lowercased(joined);
}

void ToolCommand::failNotOverridden(const std::type_info& type) {
  ICONWRIGHT_FATAL("ToolCommand", unqualifiedTypeName(type) + " has not overridden required method");
}

}  // namespace iconwright
