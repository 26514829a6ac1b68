#include "foundation/assets/AssetFile.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <string>
#include <system_error>

#include "foundation/assets/AssetFileVariant.hpp"
#include "foundation/support/Assertions.hpp"
#include "foundation/support/Hashing.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/support/PathOperations.hpp"

namespace iconwright {

namespace {

std::atomic<std::size_t> assetDecodings{0};

[[noreturn]] void throwReadFailure(const std::filesystem::path& path, int error) {
  throw FileSystemError(path.string(), std::generic_category().message(error));
}

// The whole file, read through the descriptor so that a directory or an unreadable file
// fails with the system's reason.
AssetData::Bytes readWholeFile(const std::filesystem::path& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) throwReadFailure(path, errno);
  struct Closer {
    int descriptor;
    ~Closer() { ::close(descriptor); }
  } closer{descriptor};

  AssetData::Bytes bytes;
  struct stat status {};
  if (::fstat(descriptor, &status) == 0 && status.st_size > 0) bytes.reserve(static_cast<std::size_t>(status.st_size));
  std::uint8_t buffer[1 << 16];
  for (;;) {
    const ssize_t count = ::read(descriptor, buffer, sizeof buffer);
    if (count < 0) {
      if (errno == EINTR) continue;
      throwReadFailure(path, errno);
    }
    if (count == 0) break;
    bytes.insert(bytes.end(), buffer, buffer + count);
  }
  return bytes;
}

}  // namespace

void countAssetDecoding() { assetDecodings.fetch_add(1, std::memory_order_relaxed); }

std::size_t AssetFile::decodingCount() { return assetDecodings.load(std::memory_order_relaxed); }

bool VariantResolvedContext::isAssumedSVG() const {
  return assumedFileType && assumedFileType->conformsTo(FileType::svg());
}

// Image

AssetFile::Image AssetFile::Image::makeSVG(std::shared_ptr<SVGDocument> document) {
  ICONWRIGHT_PRECONDITION(document != nullptr, "AssetFile", "An SVG image needs a document");
  return Image(std::move(document));
}

std::shared_ptr<SVGDocument> AssetFile::Image::svg() const {
  const auto* document = std::get_if<std::shared_ptr<SVGDocument>>(&content_);
  return document ? *document : nullptr;
}

// ResolutionContext

AssetFile::ResolutionContext AssetFile::ResolutionContext::fromAssetName(
    const std::optional<AssetName>& assetName, std::optional<AssumedSVGColorSpace> assumedSVGColorSpace,
    bool mirrorBaseAsset, std::optional<LanguageID> languageID) {
  return ResolutionContext{assetName ? assetName->presumedFileType() : std::nullopt, assumedSVGColorSpace,
                           mirrorBaseAsset, std::move(languageID)};
}

AssetFile::ResolutionContext AssetFile::ResolutionContext::unqualified(std::optional<FileType> assumedFileType) {
  return ResolutionContext{std::move(assumedFileType), std::nullopt, false, std::nullopt};
}

AssetFile::ResolutionContext AssetFile::ResolutionContext::unqualifiedFileName(std::string_view fileName) {
  return unqualified(AssetName(std::string(fileName)).presumedFileType());
}

// AssetFile

AssetFile::AssetFile(AssetData data) : baseVariant_(std::make_shared<Variant>(std::move(data))) {}

AssetFile AssetFile::copyingDataFrom(const std::filesystem::path& path) {
  return AssetFile(AssetData(readWholeFile(path)));
}

void AssetFile::setLocalizedVariant(std::optional<AssetData> data, const LanguageID& languageID) {
  if (data) {
    localizedVariants_.insert_or_assign(languageID, std::make_shared<Variant>(std::move(*data)));
  } else {
    localizedVariants_.erase(languageID);
  }
}

std::vector<AssetFile::LanguageID> AssetFile::variants() const {
  std::vector<LanguageID> languageIDs;
  languageIDs.reserve(localizedVariants_.size());
  for (const auto& entry : localizedVariants_) languageIDs.push_back(entry.first);
  return languageIDs;
}

bool AssetFile::hasExplicitVariant(const LanguageID& languageID) const {
  return localizedVariants_.contains(languageID);
}

AssetFile AssetFile::clone() const {
  AssetFile copy = *this;
  for (auto& entry : copy.localizedVariants_) entry.second = std::make_shared<Variant>(entry.second->data());
  return copy;
}

AssetFile::Snapshot AssetFile::snapshot() const {
  Snapshot result{baseVariant_->data(), {}};
  for (const auto& [languageID, variant] : localizedVariants_) result.localizedData.emplace(languageID, variant->data());
  return result;
}

bool AssetFile::sharesVariant(const AssetFile& other, const std::optional<LanguageID>& languageID) const {
  if (!languageID) return baseVariant_ == other.baseVariant_;
  const auto mine = localizedVariants_.find(*languageID);
  const auto theirs = other.localizedVariants_.find(*languageID);
  return mine != localizedVariants_.end() && theirs != other.localizedVariants_.end() && mine->second == theirs->second;
}

AssetName AssetFile::uniqueFilename(const AssetName& like, const AssetReferenceSet& existing) {
  if (!existing.contains(like)) return like;
  const std::string stem = stringByDeletingPathExtension(like.fileName());
  const std::string extension = pathExtension(like.fileName());
  for (std::size_t number = 2;; ++number) {
    auto candidate = stringByAppendingPathExtension(stem + " " + std::to_string(number), extension);
    if (!candidate) ICONWRIGHT_UNREACHABLE("AssetFile");
    AssetName name(std::move(*candidate));
    if (!existing.contains(name)) return name;
  }
}

AssetFile::ResolvedVariant AssetFile::resolve(const ResolutionContext& context) const {
  if (context.languageID) {
    if (const auto found = localizedVariants_.find(*context.languageID); found != localizedVariants_.end()) {
      return {*found->second, {false, context.assumedFileType, context.assumedSVGColorSpace}};
    }
  }
  return {*baseVariant_, {context.mirrorBaseAsset, context.assumedFileType, context.assumedSVGColorSpace}};
}

std::optional<AssetFile::Image> AssetFile::image(const ResolutionContext& context) const {
  const auto [variant, key] = resolve(context);
  return variant.image(key);
}

std::optional<Size> AssetFile::imageSize(const ResolutionContext& context) const {
  const auto found = image(context);
  if (!found) return std::nullopt;
  return found->size();
}

std::shared_ptr<const HitMask> AssetFile::hitMask(const ResolutionContext& context) const {
  const auto [variant, key] = resolve(context);
  return variant.hitMask(key);
}

std::optional<HitMask::RectangleIntersector> AssetFile::rectangleIntersector(const ResolutionContext& context) const {
  const auto [variant, key] = resolve(context);
  return variant.rectangleIntersector(key);
}

std::optional<Rect> AssetFile::visualBounds(const ResolutionContext& context) const {
  const auto [variant, key] = resolve(context);
  return variant.visualBounds(key);
}

std::optional<Rect> AssetFile::alignmentBounds(const ResolutionContext& context) const {
  const auto [variant, key] = resolve(context);
  return variant.alignmentBounds(key);
}

std::optional<Image> AssetFile::cgImage(const ResolutionContext& context) const {
  const auto [variant, key] = resolve(context);
  return variant.cgImage(key);
}

std::optional<Image> AssetFile::cgBacktoppedImage(const BacktoppedImageSpecification& request) const {
  const auto [variant, key] = resolve(request.context);
  return variant.cgBacktoppedImage({request.backstopColor, key});
}

std::optional<Image> AssetFile::swImage(const ResolutionContext& context) const {
  const auto [variant, key] = resolve(context);
  return variant.swImage(key);
}

std::optional<Image> AssetFile::fillHighlight(const ResolutionContext& context) const {
  const auto [variant, key] = resolve(context);
  return variant.fillHighlight(key);
}

std::optional<Path> AssetFile::strokeHighlight(const ResolutionContext& context) const {
  const auto [variant, key] = resolve(context);
  return variant.strokeHighlight(key);
}

std::optional<Image> AssetFile::cgThumbnail(const ThumbnailSpecification& request) const {
  const auto [variant, key] = resolve(request.context);
  return variant.cgThumbnail({request.size, request.scale, request.sourceFocusSize, key});
}

std::optional<Image> AssetFile::nsThumbnail(const ThumbnailSpecification& request) const {
  const auto [variant, key] = resolve(request.context);
  return variant.nsThumbnail({request.size, request.scale, request.sourceFocusSize, key});
}

bool operator==(const AssetFile& lhs, const AssetFile& rhs) {
  if (lhs.baseVariant_->data() != rhs.baseVariant_->data()) return false;
  if (lhs.localizedVariants_.size() != rhs.localizedVariants_.size()) return false;
  for (const auto& [languageID, variant] : lhs.localizedVariants_) {
    const auto other = rhs.localizedVariants_.find(languageID);
    if (other == rhs.localizedVariants_.end() || variant->data() != other->second->data()) return false;
  }
  return true;
}

}  // namespace iconwright

std::size_t std::hash<iconwright::AssetFile::ResolutionContext>::operator()(
    const iconwright::AssetFile::ResolutionContext& context) const noexcept {
  return iconwright::hashFields(context.assumedFileType, context.assumedSVGColorSpace, context.mirrorBaseAsset,
                                context.languageID);
}

// std::hash<double> gives −0.0 the hash of 0.0, and std::hash<std::optional> hashes an absent
// value apart from any present one.
std::size_t std::hash<iconwright::AssetFile::ThumbnailSpecification>::operator()(
    const iconwright::AssetFile::ThumbnailSpecification& request) const noexcept {
  return iconwright::hashFields(request.size, request.scale, request.sourceFocusSize,
                                request.context);
}

std::size_t std::hash<iconwright::AssetFile::BacktoppedImageSpecification>::operator()(
    const iconwright::AssetFile::BacktoppedImageSpecification& request) const noexcept {
  return iconwright::hashFields(request.backstopColor, request.context);
}

std::size_t std::hash<iconwright::VariantResolvedContext>::operator()(
    const iconwright::VariantResolvedContext& context) const noexcept {
  return iconwright::hashFields(context.mirrored, context.assumedFileType, context.assumedSVGColorSpace);
}

std::size_t std::hash<iconwright::VariantThumbnailSpecification>::operator()(
    const iconwright::VariantThumbnailSpecification& request) const noexcept {
  return iconwright::hashFields(request.size, request.scale, request.sourceFocusSize,
                                request.context);
}

std::size_t std::hash<iconwright::VariantBacktoppedImageSpecification>::operator()(
    const iconwright::VariantBacktoppedImageSpecification& request) const noexcept {
  return iconwright::hashFields(request.backstopColor, request.context);
}
