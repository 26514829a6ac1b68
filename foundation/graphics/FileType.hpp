// FileType: uniform type identifiers for the files the library meets, with their filename
// extensions and the conformance between them (public.png conforms to public.image, which
// conforms to public.data and public.content, and so on up to public.item). A small fixed
// table: asset import and asset files ask it what an extension means and what a type is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>

namespace iconwright {

class FileType {
 public:
  [[nodiscard]] static FileType item();
  [[nodiscard]] static FileType content();
  [[nodiscard]] static FileType data();
  [[nodiscard]] static FileType image();
  [[nodiscard]] static FileType png();
  [[nodiscard]] static FileType jpeg();
  [[nodiscard]] static FileType heic();
  [[nodiscard]] static FileType heif();
  [[nodiscard]] static FileType avif();
  [[nodiscard]] static FileType webP();
  [[nodiscard]] static FileType tiff();
  [[nodiscard]] static FileType gif();
  [[nodiscard]] static FileType svg();
  [[nodiscard]] static FileType directory();
  [[nodiscard]] static FileType folder();
  [[nodiscard]] static FileType package();
  [[nodiscard]] static FileType url();
  [[nodiscard]] static FileType fileURL();

  /// The known type with this identifier (exact match).
  [[nodiscard]] static std::optional<FileType> fromIdentifier(std::string_view identifier);
  /// The type whose extensions include `extension` (without the dot, any letter case), among
  /// the types conforming to `conformingTo`. Absent for an unknown extension.
  [[nodiscard]] static std::optional<FileType> fromFilenameExtension(
      std::string_view extension, const FileType& conformingTo = data());

  /// The bitmap formats decodeImage reads, in a fixed order.
  [[nodiscard]] static std::span<const FileType> decodableImageTypes();

  [[nodiscard]] std::string_view identifier() const;
  /// The first of the type's extensions; absent for abstract types and folders.
  [[nodiscard]] std::optional<std::string_view> preferredFilenameExtension() const;
  [[nodiscard]] std::span<const std::string_view> filenameExtensions() const;
  /// Reflexive and transitive: png conforms to png, image, data, content and item.
  [[nodiscard]] bool conformsTo(const FileType& other) const;

  friend bool operator==(const FileType&, const FileType&) = default;

 private:
  explicit constexpr FileType(std::uint8_t index) : index_(index) {}
  std::uint8_t index_;
  friend struct std::hash<FileType>;
};

}  // namespace iconwright

template <>
struct std::hash<iconwright::FileType> {
  std::size_t operator()(const iconwright::FileType& type) const noexcept { return type.index_; }
};
