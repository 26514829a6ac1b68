#include "foundation/graphics/Pasteboard.hpp"

#include <algorithm>
#include <mutex>

namespace iconwright {

namespace {

PasteboardBytes bytesOfText(std::string_view text) { return PasteboardBytes(text.begin(), text.end()); }

struct GeneralPasteboard {
  std::mutex mutex;
  std::shared_ptr<Pasteboard> pasteboard = std::make_shared<MemoryPasteboard>();
};

GeneralPasteboard& general() {
  static GeneralPasteboard instance;
  return instance;
}

}  // namespace

std::vector<std::string> PasteboardItem::types() const {
  std::vector<std::string> result;
  result.reserve(entries_.size());
  for (const auto& entry : entries_) result.push_back(entry.first);
  return result;
}

void PasteboardItem::setData(PasteboardBytes data, std::string_view type) {
  for (auto& entry : entries_) {
    if (entry.first == type) {
      entry.second = std::move(data);
      return;
    }
  }
  entries_.emplace_back(std::string(type), std::move(data));
}

void PasteboardItem::setString(std::string_view text, std::string_view type) { setData(bytesOfText(text), type); }

std::optional<PasteboardBytes> PasteboardItem::dataForType(std::string_view type) const {
  for (const auto& entry : entries_) {
    if (entry.first == type) return entry.second;
  }
  return std::nullopt;
}

std::optional<std::string> PasteboardItem::stringForType(std::string_view type) const {
  auto data = dataForType(type);
  if (!data) return std::nullopt;
  return std::string(data->begin(), data->end());
}

bool Pasteboard::setString(std::string_view text, std::string_view type) { return setData(bytesOfText(text), type); }

std::optional<std::string> Pasteboard::stringForType(std::string_view type) const {
  auto data = dataForType(type);
  if (!data) return std::nullopt;
  return std::string(data->begin(), data->end());
}

std::vector<std::string> MemoryPasteboard::types() const {
  std::vector<std::string> result;
  for (const auto& item : items_) {
    for (auto& type : item.types()) {
      if (std::find(result.begin(), result.end(), type) == result.end()) result.push_back(std::move(type));
    }
  }
  return result;
}

long MemoryPasteboard::clearContents() {
  items_.clear();
  return ++changeCount_;
}

bool MemoryPasteboard::setData(PasteboardBytes data, std::string_view type) {
  if (items_.empty()) items_.emplace_back();
  items_.front().setData(std::move(data), type);
  return true;
}

bool MemoryPasteboard::writeItems(std::vector<PasteboardItem> items) {
  for (auto& item : items) items_.push_back(std::move(item));
  return true;
}

std::optional<PasteboardBytes> MemoryPasteboard::dataForType(std::string_view type) const {
  for (const auto& item : items_) {
    if (auto data = item.dataForType(type)) return data;
  }
  return std::nullopt;
}

std::shared_ptr<Pasteboard> generalPasteboard() {
  auto& state = general();
  std::lock_guard lock(state.mutex);
  return state.pasteboard;
}

void setGeneralPasteboard(std::shared_ptr<Pasteboard> pasteboard) {
  auto& state = general();
  std::lock_guard lock(state.mutex);
  state.pasteboard = pasteboard ? std::move(pasteboard) : std::make_shared<MemoryPasteboard>();
}

}  // namespace iconwright
