// The derivation references of a HEIF file ("dimg": a grid, overlay or identity item and the
// items it is made of), read straight from the boxes before libheif sees the file: libheif
// follows them recursively when decoding, without end for a cycle.
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/graphics/ImageCodecs.hpp"

namespace iconwright::codecs {
namespace {

using Bytes = std::span<const std::uint8_t>;

std::uint32_t bigEndian(Bytes bytes, std::size_t offset, std::size_t size) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < size; ++i) value = (value << 8) | bytes[offset + i];
  return value;
}

struct Box {
  std::string_view type;
  Bytes body;
};

/// The boxes laid end to end in `bytes`; nothing when one overruns its container.
std::optional<std::vector<Box>> boxesIn(Bytes bytes) {
  std::vector<Box> boxes;
  std::size_t offset = 0;
  while (offset < bytes.size()) {
    if (bytes.size() - offset < 8) return std::nullopt;
    std::uint64_t size = bigEndian(bytes, offset, 4);
    std::size_t header = 8;
    if (size == 1) {
      if (bytes.size() - offset < 16) return std::nullopt;
      size = (std::uint64_t(bigEndian(bytes, offset + 8, 4)) << 32) | bigEndian(bytes, offset + 12, 4);
      header = 16;
    } else if (size == 0) {
      size = bytes.size() - offset;
    }
    if (size < header || size > bytes.size() - offset) return std::nullopt;
    const std::string_view type(reinterpret_cast<const char*>(bytes.data() + offset + 4), 4);
    boxes.push_back({type, bytes.subspan(offset + header, std::size_t(size) - header)});
    offset += std::size_t(size);
  }
  return boxes;
}

const Box* find(const std::vector<Box>& boxes, std::string_view type) {
  for (const Box& box : boxes) {
    if (box.type == type) return &box;
  }
  return nullptr;
}

/// "dimg" references, from item to the items it derives from; nothing when malformed.
std::optional<std::map<std::uint32_t, std::vector<std::uint32_t>>> derivations(Bytes file) {
  std::map<std::uint32_t, std::vector<std::uint32_t>> graph;
  const auto top = boxesIn(file);
  if (!top) return std::nullopt;
  const Box* meta = find(*top, "meta");
  if (meta == nullptr) return graph;
  if (meta->body.size() < 4) return std::nullopt;
  const auto children = boxesIn(meta->body.subspan(4));  // after version and flags
  if (!children) return std::nullopt;
  const Box* iref = find(*children, "iref");
  if (iref == nullptr) return graph;
  if (iref->body.size() < 4) return std::nullopt;
  const std::size_t idSize = iref->body[0] == 0 ? 2 : 4;
  const auto references = boxesIn(iref->body.subspan(4));
  if (!references) return std::nullopt;
  for (const Box& reference : *references) {
    const Bytes body = reference.body;
    if (body.size() < idSize + 2) return std::nullopt;
    const std::uint32_t from = bigEndian(body, 0, idSize);
    const std::size_t count = bigEndian(body, idSize, 2);
    if (body.size() < idSize + 2 + count * idSize) return std::nullopt;
    if (reference.type != "dimg") continue;
    auto& targets = graph[from];
    for (std::size_t i = 0; i < count; ++i) targets.push_back(bigEndian(body, idSize + 2 + i * idSize, idSize));
  }
  return graph;
}

}  // namespace

bool hasSafeImageDerivations(std::span<const std::uint8_t> file) {
  const auto graph = derivations(file);
  if (!graph) return false;
  // Depth-first from every item, without recursion: a cycle, or a chain of derivations
  // deeper than any real file holds, is refused.
  constexpr std::size_t maximumChain = 16;
  enum class Mark : std::uint8_t { unseen, open, done };
  std::map<std::uint32_t, Mark> marks;
  for (const auto& [start, ignored] : *graph) {
    if (marks[start] != Mark::unseen) continue;
    std::vector<std::pair<std::uint32_t, std::size_t>> stack{{start, 0}};
    marks[start] = Mark::open;
    while (!stack.empty()) {
      auto& [item, next] = stack.back();
      const auto found = graph->find(item);
      if (found == graph->end() || next == found->second.size()) {
        marks[item] = Mark::done;
        stack.pop_back();
        continue;
      }
      const std::uint32_t target = found->second[next++];
      Mark& mark = marks[target];
      if (mark == Mark::open) return false;
      if (mark == Mark::done) continue;
      if (stack.size() >= maximumChain) return false;
      mark = Mark::open;
      stack.emplace_back(target, 0);
    }
  }
  return true;
}

}  // namespace iconwright::codecs
