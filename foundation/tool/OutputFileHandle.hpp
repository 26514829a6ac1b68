// Where a command's console output goes: a small byte sink. Standard output by default;
// tests and hosts install their own process-wide through ToolCommand.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace iconwright {

class OutputFileHandle {
 public:
  virtual ~OutputFileHandle() = default;
  /// Writes every byte. Throws FileSystemError when the sink refuses them.
  virtual void write(std::string_view bytes) = 0;

  /// The process's standard output, unbuffered.
  [[nodiscard]] static std::shared_ptr<OutputFileHandle> standardOutput();
};

/// Writes to an open file descriptor, which it does not own.
class FileDescriptorOutputHandle final : public OutputFileHandle {
 public:
  FileDescriptorOutputHandle(int descriptor, std::string name);
  void write(std::string_view bytes) override;

 private:
  int descriptor_;
  std::string name_;
};

/// Collects the bytes in memory.
class MemoryOutputFileHandle final : public OutputFileHandle {
 public:
  void write(std::string_view bytes) override { contents_ += bytes; }
  [[nodiscard]] const std::string& contents() const { return contents_; }

 private:
  std::string contents_;
};

}  // namespace iconwright
