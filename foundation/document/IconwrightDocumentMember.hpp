// IconwrightDocumentMember: what the composition, its groups and its layers share — the link
// to the host's document, the child members, observation, and the one road by which a stored
// property changes undoably (change(), through a MemberKeyPath). Document association walks
// the subtree: associating sets parents before children, disassociating clears leaves first.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "foundation/document/IconwrightDocument.hpp"
#include "foundation/support/Observation.hpp"

namespace iconwright {

/// A stored property of the member type `Member`: where the value lives and the name that
/// observers hear when it changes. The specializable ones are the rows of the member type's
/// property table (PropertyTable.hpp); write through change() or lense(), never through
/// `storage`.
template <class Member, class Value>
struct MemberKeyPath {
  Value Member::*storage;
  std::string_view name;
};

namespace detail {
/// The link between a parent member and its child list: (IconComposition, Group) and
/// (Group, Layer). Specialised where the tree is managed.
template <class Parent, class Child>
struct ChildLinks;
}  // namespace detail

/// A getter and a setter bound to one property of one member.
template <class T>
struct MemberLense {
  std::function<T()> get;
  std::function<void(T)> set;
};

/// How change() decides that a new value is no change. Types without an equality operator of
/// their own specialise it.
template <class T>
struct MemberValueEquality {
  [[nodiscard]] bool operator()(const T& lhs, const T& rhs) const { return lhs == rhs; }
};

class IconwrightDocumentMember : public std::enable_shared_from_this<IconwrightDocumentMember> {
 public:
  using Observer = ObservationRegistrar::Observer;

  IconwrightDocumentMember() = default;
  IconwrightDocumentMember(const IconwrightDocumentMember&) = delete;
  IconwrightDocumentMember& operator=(const IconwrightDocumentMember&) = delete;
  virtual ~IconwrightDocumentMember() = default;

  /// The document that records this member's changes; null when there is none (or, for the
  /// members that hold it weakly, when it is gone).
  [[nodiscard]] virtual std::shared_ptr<IconwrightDocument> document() const = 0;
  /// Sets this member's document alone; the association operations below walk the subtree.
  virtual void setDocument(std::shared_ptr<IconwrightDocument> document) = 0;
  /// A composition's groups, a group's layers, a layer's empty list.
  [[nodiscard]] virtual std::vector<std::shared_ptr<IconwrightDocumentMember>> children() const = 0;
  /// Whom this member tells about its changes.
  [[nodiscard]] virtual const ObservationRegistrar& observationRegistrar() const = 0;
  /// Tells the observers that `property` changed, with this member as the event's member.
  virtual void notifyMemberChanged(std::string_view property) = 0;

  /// Observes every property of this member; stops when the token goes.
  [[nodiscard]] ObservationToken observe(Observer observer) const {
    return observationRegistrar().observe(std::move(observer));
  }

  /// Gives `member` and its subtree this member's document, when this member has one.
  void attachDocumentAssociation(IconwrightDocumentMember& member) const;
  /// Takes `member` and its subtree out of their document, whatever it is.
  void detachDocumentAssociation(IconwrightDocumentMember& member) const;
  /// Sets the document here, then on each child, recursively.
  void associateWithDocument(const std::shared_ptr<IconwrightDocument>& document);
  /// Clears the document on each child, recursively, then here.
  void disassociateWithDocument();

  /// The undoable change of one stored property: nothing when the new value equals the old
  /// one; otherwise stores it, tells the observers once and, when there is a document,
  /// records an undo step (naming this member when `shouldRecordSelfAsModifiedMember`) whose
  /// handler makes the opposite change the same way, so that redo works alike.
  /// Requires: this member is a `Member`, held by a shared_ptr (a fatal assertion otherwise).
  template <class Member, class Value>
  void change(const MemberKeyPath<Member, Value>& keyPath, Value newValue, bool shouldRecordSelfAsModifiedMember);

  /// The same undoable change through a lense, which may belong to another member; the undo
  /// step names this member when asked to.
  template <class Value>
  void change(const MemberLense<Value>& lense, Value newValue, bool shouldRecordSelfAsModifiedMember);

  /// Reads the property; a write stores a different value and tells the observers, without
  /// an undo step (change() with the lense records one).
  template <class Member, class Value>
  [[nodiscard]] MemberLense<Value> lense(const MemberKeyPath<Member, Value>& keyPath);

 protected:
  /// <kind name="NAME" id="0x…">, the address formatted as by printf's %p.
  [[nodiscard]] static std::string tagDescription(std::string_view kind, std::string_view name, const void* address);

  /// This member as its concrete type. Requires: held by a shared_ptr and of that type.
  template <class Member>
  [[nodiscard]] std::shared_ptr<Member> sharedAs();

 private:
  [[noreturn]] static void failNotAMember();
};

// ---------------------------------------------------------------------------------------

template <class Member>
std::shared_ptr<Member> IconwrightDocumentMember::sharedAs() {
  static_assert(std::is_base_of_v<IconwrightDocumentMember, Member>);
  auto member = std::dynamic_pointer_cast<Member>(shared_from_this());
  if (!member) failNotAMember();
  return member;
}

template <class Member, class Value>
void IconwrightDocumentMember::change(const MemberKeyPath<Member, Value>& keyPath, Value newValue,
                                      bool shouldRecordSelfAsModifiedMember) {
  std::shared_ptr<Member> self = sharedAs<Member>();
  Value& stored = (*self).*keyPath.storage;
  if (MemberValueEquality<Value>{}(stored, newValue)) return;
  Value oldValue = std::exchange(stored, std::move(newValue));
  notifyMemberChanged(keyPath.name);
  if (const auto recorder = document()) {
    std::shared_ptr<IconwrightDocumentMember> modified;
    if (shouldRecordSelfAsModifiedMember) modified = self;
    recorder->recordChange(std::move(modified), [self, keyPath, oldValue = std::move(oldValue),
                                                 shouldRecordSelfAsModifiedMember] {
      self->change(keyPath, oldValue, shouldRecordSelfAsModifiedMember);
    });
  }
}

template <class Value>
void IconwrightDocumentMember::change(const MemberLense<Value>& lense, Value newValue,
                                      bool shouldRecordSelfAsModifiedMember) {
  Value oldValue = lense.get();
  if (MemberValueEquality<Value>{}(oldValue, newValue)) return;
  lense.set(std::move(newValue));
  if (const auto recorder = document()) {
    const auto self = shared_from_this();
    recorder->recordChange(shouldRecordSelfAsModifiedMember ? self : nullptr,
                           [self, lense, oldValue = std::move(oldValue), shouldRecordSelfAsModifiedMember] {
                             self->change(lense, oldValue, shouldRecordSelfAsModifiedMember);
                           });
  }
}

template <class Member, class Value>
MemberLense<Value> IconwrightDocumentMember::lense(const MemberKeyPath<Member, Value>& keyPath) {
  std::shared_ptr<Member> self = sharedAs<Member>();
  return {[self, keyPath] { return (*self).*keyPath.storage; },
          [self, keyPath](Value value) {
            Value& stored = (*self).*keyPath.storage;
            if (MemberValueEquality<Value>{}(stored, value)) return;
            stored = std::move(value);
            self->notifyMemberChanged(keyPath.name);
          }};
}

}  // namespace iconwright
