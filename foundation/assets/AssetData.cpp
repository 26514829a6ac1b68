#include "foundation/assets/AssetData.hpp"

namespace iconwright {

namespace {

const std::shared_ptr<const AssetData::Bytes>& emptyBytes() {
  static const auto empty = std::make_shared<const AssetData::Bytes>();
  return empty;
}

}  // namespace

AssetData::AssetData() : bytes_(emptyBytes()) {}

AssetData::AssetData(Bytes bytes) : bytes_(std::make_shared<const Bytes>(std::move(bytes))) {}

AssetData::AssetData(std::shared_ptr<const Bytes> bytes) : bytes_(bytes ? std::move(bytes) : emptyBytes()) {}

AssetData AssetData::fromText(std::string_view text) {
  return AssetData(Bytes(text.begin(), text.end()));
}

bool operator==(const AssetData& lhs, const AssetData& rhs) {
  return lhs.bytes_ == rhs.bytes_ || *lhs.bytes_ == *rhs.bytes_;
}

}  // namespace iconwright
