#include "foundation/graphics/FileType.hpp"

#include <array>

namespace iconwright {
namespace {

enum Index : std::uint8_t {
  kItem, kContent, kData, kImage, kHEIFStandard, kPNG, kJPEG, kHEIC, kHEIF, kAVIF, kWebP, kTIFF,
  kGIF, kSVG, kDirectory, kFolder, kPackage, kURL, kFileURL, kCount
};

constexpr std::uint8_t kNone = 0xFF;

struct Entry {
  std::string_view identifier;
  std::array<std::string_view, 3> extensions;
  std::size_t extensionCount;
  std::array<std::uint8_t, 2> parents;  // kNone where unused
};

constexpr std::array<Entry, kCount> kTable = {{
    {"public.item", {}, 0, {kNone, kNone}},
    {"public.content", {}, 0, {kNone, kNone}},
    {"public.data", {}, 0, {kItem, kNone}},
    {"public.image", {}, 0, {kData, kContent}},
    {"public.heif-standard", {}, 0, {kImage, kNone}},
    {"public.png", {"png"}, 1, {kImage, kNone}},
    {"public.jpeg", {"jpeg", "jpg", "jpe"}, 3, {kImage, kNone}},
    {"public.heic", {"heic"}, 1, {kHEIFStandard, kNone}},
    {"public.heif", {"heif"}, 1, {kHEIFStandard, kNone}},
    {"public.avif", {"avif"}, 1, {kHEIFStandard, kNone}},
    {"org.webmproject.webp", {"webp"}, 1, {kImage, kNone}},
    {"public.tiff", {"tiff", "tif"}, 2, {kImage, kNone}},
    {"com.compuserve.gif", {"gif"}, 1, {kImage, kNone}},
    {"public.svg-image", {"svg"}, 1, {kImage, kNone}},
    {"public.directory", {}, 0, {kItem, kNone}},
    {"public.folder", {}, 0, {kDirectory, kNone}},
    {"public.package", {}, 0, {kDirectory, kNone}},
    {"public.url", {}, 0, {kData, kNone}},
    {"public.file-url", {}, 0, {kURL, kNone}},
}};

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; };
    if (lower(a[i]) != lower(b[i])) return false;
  }
  return true;
}

bool conforms(std::uint8_t from, std::uint8_t to) {
  if (from == to) return true;
  for (std::uint8_t parent : kTable[from].parents)
    if (parent != kNone && conforms(parent, to)) return true;
  return false;
}

}  // namespace

FileType FileType::item() { return FileType(kItem); }
FileType FileType::content() { return FileType(kContent); }
FileType FileType::data() { return FileType(kData); }
FileType FileType::image() { return FileType(kImage); }
FileType FileType::png() { return FileType(kPNG); }
FileType FileType::jpeg() { return FileType(kJPEG); }
FileType FileType::heic() { return FileType(kHEIC); }
FileType FileType::heif() { return FileType(kHEIF); }
FileType FileType::avif() { return FileType(kAVIF); }
FileType FileType::webP() { return FileType(kWebP); }
FileType FileType::tiff() { return FileType(kTIFF); }
FileType FileType::gif() { return FileType(kGIF); }
FileType FileType::svg() { return FileType(kSVG); }
FileType FileType::directory() { return FileType(kDirectory); }
FileType FileType::folder() { return FileType(kFolder); }
FileType FileType::package() { return FileType(kPackage); }
FileType FileType::url() { return FileType(kURL); }
FileType FileType::fileURL() { return FileType(kFileURL); }

std::optional<FileType> FileType::fromIdentifier(std::string_view identifier) {
  for (std::uint8_t i = 0; i < kCount; ++i)
    if (kTable[i].identifier == identifier) return FileType(i);
  return std::nullopt;
}

std::optional<FileType> FileType::fromFilenameExtension(std::string_view extension,
                                                        const FileType& conformingTo) {
  if (extension.empty()) return std::nullopt;
  for (std::uint8_t i = 0; i < kCount; ++i) {
    const Entry& entry = kTable[i];
    for (std::size_t e = 0; e < entry.extensionCount; ++e)
      if (equalsIgnoringCase(entry.extensions[e], extension) && conforms(i, conformingTo.index_))
        return FileType(i);
  }
  return std::nullopt;
}

std::span<const FileType> FileType::decodableImageTypes() {
  static const std::array<FileType, 8> types = {png(),  jpeg(), heic(), heif(),
                                                avif(), webP(), tiff(), gif()};
  return types;
}

std::string_view FileType::identifier() const { return kTable[index_].identifier; }

std::optional<std::string_view> FileType::preferredFilenameExtension() const {
  if (kTable[index_].extensionCount == 0) return std::nullopt;
  return kTable[index_].extensions[0];
}

std::span<const std::string_view> FileType::filenameExtensions() const {
  return std::span(kTable[index_].extensions.data(), kTable[index_].extensionCount);
}

bool FileType::conformsTo(const FileType& other) const { return conforms(index_, other.index_); }

}  // namespace iconwright
