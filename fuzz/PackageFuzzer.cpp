// Whole packages read from disk: the fuzzer's bytes describe a directory tree (files, folders,
// symbolic links inside and out of the package, FIFOs, sockets, odd names) that is made in a
// scratch folder, opened as a document, saved beside it and read back. Opening either gives a
// document or throws DecodingError/MessageError; a document that opens saves, the saved
// package reads back as the tree that was written, and nothing from outside the package (a
// file of random bytes beside it, reachable through links) reaches the output.
//
// Input: records of [kind][name length][name][content length, 2 bytes][content]. Kinds:
// 0 file, 1 folder, 2 link (content is the target), 3 FIFO, 4 socket, 5 file without read
// permission. Names may hold "/" to nest; "." and ".." components are dropped.
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>

#include "foundation/document/IconComposition.hpp"
#include "foundation/format/FileWrapper.hpp"
#include "foundation/format/IconCompositionSnapshot.hpp"
#include "foundation/json/DecodingError.hpp"
#include "foundation/support/MessageError.hpp"
#include "fuzz/FuzzSupport.hpp"

using namespace iconwright;
namespace fs = std::filesystem;

namespace {

/// libFuzzer may end the process without running exit handlers: scratch folders of processes
/// that are gone are removed when the next one starts.
void removeStaleScratchFolders() {
  constexpr std::string_view prefix = "iconwright-fuzz-package-";
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(fs::temp_directory_path(), error)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(prefix)) continue;
    const long owner = std::strtol(name.c_str() + prefix.size(), nullptr, 10);
    if (owner > 0 && ::kill(pid_t(owner), 0) != 0 && errno == ESRCH) fs::remove_all(entry.path(), error);
  }
}

const fs::path& scratch() {
  static const fs::path path = [] {
    removeStaleScratchFolders();
    fs::path made = fs::temp_directory_path() / ("iconwright-fuzz-package-" + std::to_string(::getpid()));
    fs::create_directories(made);
    std::atexit([] {
      std::error_code ignored;
      fs::remove_all(scratch(), ignored);
    });
    return made;
  }();
  return path;
}

/// Random bytes written beside the package; links may point at it, and it must never be copied.
const std::string& outsideSecret() {
  static const std::string secret = [] {
    std::random_device device;
    std::string text = "outside-";
    for (int i = 0; i < 24; ++i) text += char('a' + device() % 26);
    return text;
  }();
  return secret;
}

void makeSocket(const fs::path& path) {
  const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
  if (descriptor < 0) return;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string text = path.string();
  if (text.size() < sizeof address.sun_path) {
    text.copy(address.sun_path, text.size());
    (void)::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address);
  }
  ::close(descriptor);
}

/// The relative path of a record's name: components split at "/", empty, "." and ".." dropped,
/// NUL bytes replaced.
std::optional<fs::path> relativePath(std::string name) {
  for (char& c : name) {
    if (c == '\0') c = '0';
  }
  fs::path path;
  std::size_t start = 0;
  while (start <= name.size()) {
    std::size_t end = name.find('/', start);
    if (end == std::string::npos) end = name.size();
    const std::string component = name.substr(start, end - start);
    if (!component.empty() && component != "." && component != ".." && component.size() < 200) path /= component;
    start = end + 1;
  }
  if (path.empty()) return std::nullopt;
  return path;
}

void build(const fs::path& root, const std::uint8_t* data, std::size_t size) {
  std::error_code ignored;
  std::size_t at = 0;
  int records = 0;
  while (at + 2 <= size && records++ < 64) {
    const int kind = data[at] % 6;
    const std::size_t nameLength = data[at + 1];
    at += 2;
    if (at + nameLength + 2 > size) break;
    const auto relative = relativePath(std::string(reinterpret_cast<const char*>(data + at), nameLength));
    at += nameLength;
    const std::size_t contentLength = std::min<std::size_t>((std::size_t(data[at]) << 8) | data[at + 1], size - at - 2);
    at += 2;
    const std::string content(reinterpret_cast<const char*>(data + at), contentLength);
    at += contentLength;
    if (!relative) continue;
    const fs::path path = root / *relative;
    fs::create_directories(path.parent_path(), ignored);
    switch (kind) {
      case 0:
      case 5: {
        if (FILE* file = std::fopen(path.c_str(), "wb")) {
          std::fwrite(content.data(), 1, content.size(), file);
          std::fclose(file);
        }
        if (kind == 5) ::chmod(path.c_str(), 0);
        break;
      }
      case 1: fs::create_directories(path, ignored); break;
      case 2: {
        // An empty target points at the secret outside the package.
        const std::string target = content.empty() ? (scratch() / "secret").string() : content;
        if (target.find('\0') == std::string::npos) ::symlink(target.c_str(), path.c_str());
        break;
      }
      case 3: ::mkfifo(path.c_str(), 0644); break;
      case 4: makeSocket(path); break;
      default: break;
    }
  }
}

/// Every byte of the tree, for the search for the secret.
void collectBytes(const FileWrapper& wrapper, std::string& bytes) {
  if (wrapper.isRegularFile()) {
    if (wrapper.hasRegularFileContents()) bytes.append(wrapper.regularFileContents().begin(), wrapper.regularFileContents().end());
    return;
  }
  for (const auto& [name, child] : wrapper.fileWrappers()) {
    bytes += name;
    collectBytes(child, bytes);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fs::path root = scratch() / "doc.icon";
  const fs::path output = scratch() / "out.icon";
  std::error_code ignored;
  fs::remove_all(root, ignored);
  fs::remove_all(output, ignored);
  static const bool secretWritten = [] {
    if (FILE* file = std::fopen((scratch() / "secret").c_str(), "wb")) {
      std::fputs(outsideSecret().c_str(), file);
      std::fclose(file);
    }
    return true;
  }();
  (void)secretWritten;
  fs::create_directories(root);
  build(root, data, size);

  FileWrapper saved;
  try {
    const auto composition = createFromFileWrapper<IconComposition>(readDocumentPackage(FilePath::make(root.string())));
    try {
      saved = composition->snapshot().serialize();
    } catch (const std::invalid_argument&) {
      return 0;  // a number the manifest cannot hold
    } catch (const MessageError&) {
      return 0;  // a name that cannot be written (checked by the format's own tests)
    }
  } catch (const DecodingError&) {
    return 0;
  } catch (const MessageError& error) {
    FUZZ_CHECK(!error.message().empty(), "an empty message");
    return 0;
  }

  std::string bytes;
  collectBytes(saved, bytes);
  FUZZ_CHECK(bytes.find(outsideSecret()) == std::string::npos, "bytes from outside the package reached the saved document");

  saved.writeReplacing(FilePath::make(output.string()));
  const FileWrapper readBack = FileWrapper::read(FilePath::make(output.string()));
  FUZZ_CHECK(readBack == saved, "the saved package does not read back as written");
  for (const auto& entry : fs::directory_iterator(scratch())) {
    const std::string name = entry.path().filename().string();
    FUZZ_CHECK(!name.starts_with(".iw-"), "a staging folder was left behind");
  }
  return 0;
}
