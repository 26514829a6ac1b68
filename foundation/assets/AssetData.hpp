// AssetData: the immutable bytes of an asset file. Copies share one buffer, so handing the
// bytes of a large image from an asset to a snapshot, a file tree or a pasteboard form
// costs a pointer. Two AssetData values are equal when their bytes are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace iconwright {

class AssetData {
 public:
  using Bytes = std::vector<std::uint8_t>;

  /// No bytes.
  AssetData();
  explicit AssetData(Bytes bytes);
  /// Shares the buffer; a null pointer gives no bytes.
  explicit AssetData(std::shared_ptr<const Bytes> bytes);

  /// The bytes of a text, unchanged (UTF-8 stays UTF-8).
  [[nodiscard]] static AssetData fromText(std::string_view text);

  [[nodiscard]] const Bytes& bytes() const { return *bytes_; }
  /// The shared buffer itself; never null.
  [[nodiscard]] const std::shared_ptr<const Bytes>& sharedBytes() const { return bytes_; }
  [[nodiscard]] std::span<const std::uint8_t> span() const { return {bytes_->data(), bytes_->size()}; }
  [[nodiscard]] std::size_t size() const { return bytes_->size(); }
  [[nodiscard]] bool empty() const { return bytes_->empty(); }

  /// By bytes; values sharing a buffer are equal without comparing.
  friend bool operator==(const AssetData& lhs, const AssetData& rhs);

 private:
  std::shared_ptr<const Bytes> bytes_;
};

}  // namespace iconwright
