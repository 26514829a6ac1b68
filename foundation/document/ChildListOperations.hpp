// The management of a parent's child list, shared by a composition's groups and a group's
// layers: inserting with association and undo, removing with the tolerated miss, and
// replacing the whole list. ChildLinks<Parent, Child> (specialised next to each parent)
// gives access to the list and to the child's back reference; the parent supplies insert
// and remove, which the undo handlers call.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "foundation/document/IconwrightDocumentMember.hpp"
#include "foundation/support/Assertions.hpp"

namespace iconwright::detail {

// The fixed location that the tolerated miss of a removal reports.
inline constexpr std::string_view missingChildSource = "CoreAdditions";
inline constexpr int missingChildLine = 15;

// Steps 2 to 5 of an insertion: splice, back reference, document, undo step (which removes
// the child again). What comes before or after (a report, the delegate) is the parent's.
template <class Parent, class Child>
void insertChild(Parent& parent, const std::shared_ptr<Child>& child, std::size_t index) {
  using Links = ChildLinks<Parent, Child>;
  auto children = Links::children(parent);
  ICONWRIGHT_PRECONDITION(index <= children.size(), Links::source, "Index out of range");
  children.insert(children.begin() + static_cast<std::ptrdiff_t>(index), child);
  const auto self = std::static_pointer_cast<Parent>(parent.shared_from_this());
  Links::storeChildren(parent, std::move(children));
  Links::setParent(*child, self);
  if (const auto document = parent.document()) {
    parent.attachDocumentAssociation(*child);
    document->recordChange(nullptr, [self, child] { self->remove(child); });
  }
}

// The same for a list of children at once: the list is copied and stored once, so that
// building a parent of n children costs O(n), not O(n²).
template <class Parent, class Child>
void insertChildren(Parent& parent, const std::vector<std::shared_ptr<Child>>& incoming, std::size_t index) {
  using Links = ChildLinks<Parent, Child>;
  if (incoming.empty()) return;
  auto children = Links::children(parent);
  ICONWRIGHT_PRECONDITION(index <= children.size(), Links::source, "Index out of range");
  children.insert(children.begin() + static_cast<std::ptrdiff_t>(index), incoming.begin(), incoming.end());
  const auto self = std::static_pointer_cast<Parent>(parent.shared_from_this());
  Links::storeChildren(parent, std::move(children));
  const auto document = parent.document();
  for (const auto& child : incoming) {
    Links::setParent(*child, self);
    if (document) {
      parent.attachDocumentAssociation(*child);
      document->recordChange(nullptr, [self, child] { self->remove(child); });
    }
  }
}

template <class Parent, class Child>
void removeChildren(Parent& parent, const std::vector<std::shared_ptr<Child>>& removed) {
  using Links = ChildLinks<Parent, Child>;
  const auto self = std::static_pointer_cast<Parent>(parent.shared_from_this());
  std::vector<const Child*> seen;
  for (const auto& child : removed) {
    if (!child || std::find(seen.begin(), seen.end(), child.get()) != seen.end()) continue;
    seen.push_back(child.get());
    auto children = Links::children(parent);
    const auto found = std::find(children.begin(), children.end(), child);
    if (found == children.end()) {
      assertionReport(missingChildSource, missingChildLine, unreachableCodeMessage);
      continue;
    }
    const auto index = static_cast<std::size_t>(found - children.begin());
    children.erase(found);
    Links::storeChildren(parent, std::move(children));
    Links::setParent(*child, nullptr);
    child->disassociateWithDocument();
    if (const auto document = parent.document()) {
      document->recordChange(self, [self, child, index] { self->insert(child, index); });
    }
  }
}

template <class Parent, class Child>
void setChildren(Parent& parent, const std::vector<std::shared_ptr<Child>>& incoming) {
  using Links = ChildLinks<Parent, Child>;
  // Other owners, in the order in which their first child comes.
  std::vector<std::pair<std::shared_ptr<Parent>, std::vector<std::shared_ptr<Child>>>> owners;
  for (const auto& child : incoming) {
    const auto owner = Links::parent(*child);
    if (!owner || owner.get() == &parent) continue;
    const auto entry = std::find_if(owners.begin(), owners.end(), [&](const auto& e) { return e.first == owner; });
    if (entry == owners.end()) {
      owners.push_back({owner, {child}});
    } else {
      entry->second.push_back(child);
    }
  }
  for (const auto& [owner, children] : owners) owner->remove(children);
  const auto current = Links::children(parent);
  parent.remove(current);
  parent.insert(incoming, Links::children(parent).size());
}

}  // namespace iconwright::detail
