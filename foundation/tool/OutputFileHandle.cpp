#include "foundation/tool/OutputFileHandle.hpp"

#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "foundation/support/MessageError.hpp"

namespace iconwright {

std::shared_ptr<OutputFileHandle> OutputFileHandle::standardOutput() {
  static const auto handle = std::make_shared<FileDescriptorOutputHandle>(STDOUT_FILENO, "standard output");
  return handle;
}

FileDescriptorOutputHandle::FileDescriptorOutputHandle(int descriptor, std::string name)
    : descriptor_(descriptor), name_(std::move(name)) {}

void FileDescriptorOutputHandle::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
    if (written < 0) {
      if (errno == EINTR) continue;
      throw FileSystemError(name_, std::generic_category().message(errno));
    }
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace iconwright
