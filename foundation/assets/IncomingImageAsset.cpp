#include "foundation/assets/IncomingImageAsset.hpp"

#include <algorithm>
#include <regex>
#include <system_error>

#include "foundation/assets/SVGProcessing.hpp"
#include "foundation/graphics/ImageDecoding.hpp"
#include "foundation/graphics/PNGEncoding.hpp"
#include "foundation/support/Assertions.hpp"
#include "foundation/support/ListJoining.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/support/PathOperations.hpp"

namespace iconwright {

namespace {

namespace fs = std::filesystem;

std::vector<FileType>& importableTypeStorage() {
  static std::vector<FileType> types = [] {
    const auto decodable = FileType::decodableImageTypes();
    std::vector<FileType> list(decodable.begin(), decodable.end());
    list.push_back(FileType::svg());
    return list;
  }();
  return types;
}

std::vector<FileType>& directlySupportedTypeStorage() {
  static std::vector<FileType> types{FileType::png(), FileType::jpeg(), FileType::heic(), FileType::heif(),
                                     FileType::svg()};
  return types;
}

std::vector<FileType> joined(const std::vector<FileType>& first, const std::vector<FileType>& second) {
  std::vector<FileType> list = first;
  for (const FileType& type : second)
    if (std::ranges::find(list, type) == list.end()) list.push_back(type);
  return list;
}

std::optional<std::vector<FileType>>& importableOrDirectlySupportedTypeStorage() {
  static std::optional<std::vector<FileType>> types;
  return types;
}

bool holds(const std::vector<FileType>& types, const FileType& type) { return std::ranges::find(types, type) != types.end(); }

/// The type registered for the name's path extension among the data types.
std::optional<FileType> typeForExtension(std::string_view fileName) {
  const std::string extension = pathExtension(fileName);
  if (extension.empty()) return std::nullopt;
  return FileType::fromFilenameExtension(extension, FileType::data());
}

/// A bitmap in another format as PNG bytes. The three failures are told apart as the
/// platform's image loading does: bytes no decoder claims, a claimed format that doesn't
/// decode, and an image that doesn't encode.
enum class ConversionFailure { load, create, encode };
struct Conversion {
  std::optional<AssetData::Bytes> png;
  ConversionFailure failure = ConversionFailure::load;
};

Conversion convertToPNG(std::span<const std::uint8_t> bytes) {
  if (!sniffImageFormat(bytes)) return {std::nullopt, ConversionFailure::load};
  const auto image = decodeImage(bytes);
  if (!image) return {std::nullopt, ConversionFailure::create};
  auto png = encodePNG(*image);
  if (!png) return {std::nullopt, ConversionFailure::encode};
  return {std::move(png), ConversionFailure::load};
}

std::string conversionMessage(ConversionFailure failure, std::string_view subject) {
  switch (failure) {
    case ConversionFailure::load: return "Could not load image from " + std::string(subject);
    case ConversionFailure::create: return "Could not create image from " + std::string(subject);
    case ConversionFailure::encode: return "Could not load PNG data from " + std::string(subject);
  }
  ICONWRIGHT_UNREACHABLE("IncomingImageAsset");
}

/// The bytes of a file, or absent when it can't be read.
std::optional<AssetData> readIfPossible(const fs::path& path) {
  try {
    return AssetFile::copyingDataFrom(path).snapshot().baseData;
  } catch (const FileSystemError&) {
    return std::nullopt;
  }
}

bool isHidden(const fs::path& path) {
  const std::string name = path.filename().string();
  return !name.empty() && name.front() == '.';
}

/// Files below `folder`, depth first, each directory's entries in name order; hidden entries
/// are skipped and hidden folders not entered. Unreadable folders contribute nothing.
void collectFiles(const fs::path& folder, std::vector<fs::path>& files) {
  std::error_code error;
  std::vector<fs::path> entries;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    if (!isHidden(it->path())) entries.push_back(it->path());
  }
  std::ranges::sort(entries);
  for (const fs::path& entry : entries) {
    if (fs::is_directory(entry, error)) {
      collectFiles(entry, files);
    } else {
      files.push_back(entry);
    }
  }
}

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

/// The path of a "file://" URL (an empty or "localhost" host), percent escapes decoded.
std::optional<fs::path> pathFromFileURL(std::string_view url) {
  constexpr std::string_view scheme = "file://";
  if (url.size() < scheme.size() || !std::equal(scheme.begin(), scheme.end(), url.begin(),
                                                [](char a, char b) { return a == std::tolower(b); }))
    return std::nullopt;
  url.remove_prefix(scheme.size());
  if (url.starts_with("localhost/")) url.remove_prefix(9);
  if (!url.starts_with('/')) return std::nullopt;
  std::string path;
  for (std::size_t i = 0; i < url.size(); ++i) {
    if (url[i] != '%') {
      path.push_back(url[i]);
      continue;
    }
    if (i + 2 >= url.size() || hexValue(url[i + 1]) < 0 || hexValue(url[i + 2]) < 0) return std::nullopt;
    path.push_back(char(hexValue(url[i + 1]) * 16 + hexValue(url[i + 2])));
    i += 2;
  }
  if (path.find('\0') != std::string::npos) return std::nullopt;
  return fs::path(path);
}

bool itemHasType(const PasteboardItem& item, std::string_view type) {
  const auto types = item.types();
  return std::ranges::find(types, type) != types.end();
}

}  // namespace

IncomingImageAsset::IncomingImageAsset(AssetData data, std::string sourceFilename,
                                       std::optional<std::string> suggestedGroupName)
    : sourceFilename(std::move(sourceFilename)),
      assetFile(std::move(data)),
      suggestedGroupName(std::move(suggestedGroupName)) {}

IncomingImageAsset IncomingImageAsset::fromFile(const fs::path& path, std::optional<std::string> suggestedGroupName) {
  const std::string fileName = path.filename().string();
  const std::string name = iconwright::quoted(fileName);
  const auto type = typeForExtension(fileName);
  if (!type) throw MessageError("Unknown image type for " + name);

  std::optional<IncomingImageAsset> asset;
  if (holds(directlySupportedTypes(), *type)) {
    asset.emplace(AssetFile::copyingDataFrom(path).snapshot().baseData, fileName, std::move(suggestedGroupName));
  } else {
    const auto bytes = readIfPossible(path);
    if (!bytes) throw MessageError(conversionMessage(ConversionFailure::load, name));
    auto conversion = convertToPNG(bytes->span());
    if (!conversion.png) throw MessageError(conversionMessage(conversion.failure, name));
    asset.emplace(AssetData(std::move(*conversion.png)), stringByDeletingPathExtension(fileName) + ".png",
                  std::move(suggestedGroupName));
  }
  if (!asset->assetFile.image(AssetFile::ResolutionContext::unqualifiedFileName(asset->sourceFilename)))
    throw MessageError("Could not reference image from " + name);
  return std::move(*asset);
}

std::vector<IncomingImageAsset> IncomingImageAsset::assets(const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (error) throw FileSystemError(path.string(), error.message());

  if (!fs::is_directory(status)) return {fromFile(path)};
  std::vector<IncomingImageAsset> result;
  for (const fs::path& file : importableFiles(path)) {
    result.push_back(fromFile(file, file.parent_path().filename().string()));
  }
  return result;
}

std::vector<fs::path> IncomingImageAsset::importableFiles(const fs::path& folder) {
  std::vector<fs::path> files;
  collectFiles(folder, files);
  const auto wanted = importableOrDirectlySupportedTypes();
  std::erase_if(files, [&](const fs::path& file) {
    const auto type = typeForExtension(file.filename().string());
    return !type || !holds(wanted, *type);
  });
  return files;
}

bool IncomingImageAsset::canImportFromPasteboard(const Pasteboard& pasteboard) {
  const auto types = pasteboard.types();
  for (const FileType& dropType : assetDropTypes()) {
    if (std::ranges::find(types, dropType.identifier()) != types.end()) return true;
  }
  const auto text = pasteboard.stringForType();
  if (!text) return false;
  static const std::regex svgTag("<svg", std::regex::icase);
  static const std::regex viewBox(R"(viewBox\s*=)", std::regex::icase);
  return std::regex_search(*text, svgTag) && std::regex_search(*text, viewBox);
}

std::vector<IncomingImageAsset> IncomingImageAsset::extractAssetsFromPasteboardItem(const PasteboardItem& item) {
  if (itemHasType(item, FileType::fileURL().identifier())) {
    const auto data = item.stringForType(FileType::fileURL().identifier());
    if (!data) return {};
    const auto path = pathFromFileURL(*data);
    if (!path) return {};
    return assets(*path);
  }
  for (const FileType& type : directlySupportedTypes()) {
    if (!itemHasType(item, type.identifier())) continue;
    auto data = item.dataForType(type.identifier());
    if (!data) return {};
    const auto extension = type.preferredFilenameExtension();
    if (!extension) return {};
    return {IncomingImageAsset(AssetData(std::move(*data)), "Image." + std::string(*extension))};
  }
  for (const FileType& type : importableTypes()) {
    if (!itemHasType(item, type.identifier())) continue;
    const auto data = item.dataForType(type.identifier());
    if (!data) return {};
    auto conversion = convertToPNG(*data);
    if (!conversion.png) throw MessageError(conversionMessage(conversion.failure, "pasteboard item"));
    const auto extension = FileType::png().preferredFilenameExtension();
    if (!extension) ICONWRIGHT_FATAL("IncomingImageAsset", "Expected value to be non-nil");
    return {IncomingImageAsset(AssetData(std::move(*conversion.png)), "Image." + std::string(*extension))};
  }
  const auto text = item.stringForType(Pasteboard::stringType);
  if (!text) return {};
  const AssetData bytes = AssetData::fromText(*text);
  const auto document = makeSVGDocument(bytes.span(), std::nullopt);
  if (!document || !document->isDrawable()) return {};
  return {IncomingImageAsset(bytes, "SVG Image.svg")};
}

std::vector<IncomingImageAsset> IncomingImageAsset::extractAssetsFromPasteboardItems(
    const std::vector<PasteboardItem>& items) {
  std::vector<IncomingImageAsset> result;
  for (const PasteboardItem& item : items) {
    try {
      auto assets = extractAssetsFromPasteboardItem(item);
      std::ranges::move(assets, std::back_inserter(result));
    } catch (const std::exception&) {
      // An item that fails is dropped; the others still count.
    }
  }
  return result;
}

std::vector<IncomingImageAsset> IncomingImageAsset::extractAssetsFromPasteboard(const Pasteboard& pasteboard) {
  return extractAssetsFromPasteboardItems(pasteboard.items());
}

std::vector<FileType> IncomingImageAsset::importableTypes() { return importableTypeStorage(); }

std::vector<FileType> IncomingImageAsset::directlySupportedTypes() { return directlySupportedTypeStorage(); }

std::vector<FileType> IncomingImageAsset::importableOrDirectlySupportedTypes() {
  const auto& stored = importableOrDirectlySupportedTypeStorage();
  return stored ? *stored : joined(importableTypeStorage(), directlySupportedTypeStorage());
}

std::vector<FileType> IncomingImageAsset::assetDropTypes() {
  return joined({FileType::fileURL(), FileType::folder()}, importableTypeStorage());
}

void IncomingImageAsset::setImportableTypes(std::vector<FileType> types) { importableTypeStorage() = std::move(types); }

void IncomingImageAsset::setDirectlySupportedTypes(std::vector<FileType> types) {
  directlySupportedTypeStorage() = std::move(types);
}

void IncomingImageAsset::setImportableOrDirectlySupportedTypes(std::vector<FileType> types) {
  importableOrDirectlySupportedTypeStorage() = std::move(types);
}

}  // namespace iconwright
