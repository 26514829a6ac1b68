// Pasteboard: the copy-and-paste store the library writes to and reads from. A pasteboard
// holds items; each item holds bytes under one or more type identifiers. Hosts plug in
// their own pasteboard by subclassing; MemoryPasteboard keeps everything in memory and
// serves tests and hosts without one. generalPasteboard() is the process-wide one.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace iconwright {

using PasteboardBytes = std::vector<std::uint8_t>;

/// One item: bytes per type, in the order the types were first set.
class PasteboardItem {
 public:
  [[nodiscard]] std::vector<std::string> types() const;
  /// Replaces the bytes of a type the item already has, or adds the type at the end.
  void setData(PasteboardBytes data, std::string_view type);
  /// The text as UTF-8 bytes.
  void setString(std::string_view text, std::string_view type);
  [[nodiscard]] std::optional<PasteboardBytes> dataForType(std::string_view type) const;
  /// The bytes of the type read as UTF-8 text; absent when the type is missing.
  [[nodiscard]] std::optional<std::string> stringForType(std::string_view type) const;

  friend bool operator==(const PasteboardItem&, const PasteboardItem&) = default;

 private:
  std::vector<std::pair<std::string, PasteboardBytes>> entries_;
};

class Pasteboard {
 public:
  /// The type of plain UTF-8 text.
  static constexpr std::string_view stringType = "public.utf8-plain-text";

  virtual ~Pasteboard() = default;

  /// Every type of every item, each once, in the order of the items.
  [[nodiscard]] virtual std::vector<std::string> types() const = 0;
  /// Removes all items. Returns the change count, which grows with every clear.
  virtual long clearContents() = 0;
  [[nodiscard]] virtual long changeCount() const = 0;
  /// Stores the bytes under `type` on the first item, making one when there is none.
  virtual bool setData(PasteboardBytes data, std::string_view type) = 0;
  /// Appends whole items after the ones already there.
  virtual bool writeItems(std::vector<PasteboardItem> items) = 0;
  /// The bytes of `type` from the first item that has it.
  [[nodiscard]] virtual std::optional<PasteboardBytes> dataForType(std::string_view type) const = 0;
  [[nodiscard]] virtual std::vector<PasteboardItem> items() const = 0;

  /// The text as UTF-8 bytes, through setData.
  virtual bool setString(std::string_view text, std::string_view type = stringType);
  /// The bytes of `type` as UTF-8 text, through dataForType.
  [[nodiscard]] virtual std::optional<std::string> stringForType(std::string_view type = stringType) const;
};

class MemoryPasteboard final : public Pasteboard {
 public:
  [[nodiscard]] std::vector<std::string> types() const override;
  long clearContents() override;
  [[nodiscard]] long changeCount() const override { return changeCount_; }
  bool setData(PasteboardBytes data, std::string_view type) override;
  bool writeItems(std::vector<PasteboardItem> items) override;
  [[nodiscard]] std::optional<PasteboardBytes> dataForType(std::string_view type) const override;
  [[nodiscard]] std::vector<PasteboardItem> items() const override { return items_; }

 private:
  std::vector<PasteboardItem> items_;
  long changeCount_ = 0;
};

/// The pasteboard that "copy" commands use: a MemoryPasteboard unless a host has set its own.
[[nodiscard]] std::shared_ptr<Pasteboard> generalPasteboard();
/// Replaces the general pasteboard; null restores a fresh MemoryPasteboard.
void setGeneralPasteboard(std::shared_ptr<Pasteboard> pasteboard);

}  // namespace iconwright
