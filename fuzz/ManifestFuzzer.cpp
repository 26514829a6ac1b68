// Manifests: the "icon.json" of a document package, read as a package of that one file,
// made into a live document, and saved again. Reading either gives a snapshot or throws the
// reader's DecodingError or a MessageError; a document that opens must also save (unless it
// holds a number JSON cannot write, which the manifest writer refuses); and a saved package
// must open to a document that saves to the same manifest bytes.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

#include "foundation/document/IconComposition.hpp"
#include "foundation/format/FileWrapper.hpp"
#include "foundation/format/IconCompositionSnapshot.hpp"
#include "foundation/json/DecodingError.hpp"
#include "foundation/support/MessageError.hpp"
#include "fuzz/FuzzSupport.hpp"

using namespace iconwright;

namespace {

/// The package opened as a live document and saved again; absent when the live document
/// holds a number that the manifest cannot hold.
std::optional<FileWrapper> reopenAndSave(const FileWrapper& package) {
  const auto composition = IconComposition::create(IconComposition::Snapshot::fromSerialization(package));
  try {
    return composition->snapshot().serialize();
  } catch (const std::invalid_argument&) {
    return std::nullopt;
  }
}

std::string manifestOf(const FileWrapper& package) {
  const auto* manifest = package.fileWrapper("icon.json");
  FUZZ_CHECK(manifest != nullptr && manifest->isRegularFile(), "a saved package without its manifest");
  const auto& bytes = manifest->regularFileContents();
  return std::string(bytes.begin(), bytes.end());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const FileWrapper package =
      FileWrapper::directory({{"icon.json", FileWrapper::regularFile(fuzz::textOf(data, size))}});
  std::optional<FileWrapper> saved;
  try {
    saved = reopenAndSave(package);
  } catch (const DecodingError& error) {
    FUZZ_CHECK(std::string(error.what()).size() > 0, "an empty decoding error");
    return 0;
  } catch (const MessageError& error) {
    FUZZ_CHECK(!error.message().empty(), "an empty message");
    return 0;
  }
  if (!saved) return 0;

  const std::string first = manifestOf(*saved);
  std::optional<FileWrapper> again;
  try {
    again = reopenAndSave(*saved);
  } catch (const std::exception& error) {
    FUZZ_CHECK(false, std::string("a saved document does not open: ") + error.what() + "\n" + first);
  }
  FUZZ_CHECK(again.has_value(), "a saved document no longer saves:\n" + first);
  FUZZ_CHECK(manifestOf(*again) == first, "saving is not a fixed point:\n" + first);
  return 0;
}
