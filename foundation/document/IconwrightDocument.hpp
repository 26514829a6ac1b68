// IconwrightDocument: the host's document object, through which the members of a
// composition record undoable changes. The library only calls recordChange; what the
// document does with the handler is its own business. UndoManagerDocument is a small
// implementation for tests and for hosts that have no undo machinery of their own.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace iconwright {

class IconwrightDocumentMember;

class IconwrightDocument {
 public:
  using UndoHandler = std::function<void()>;

  virtual ~IconwrightDocument() = default;

  /// Called after a change: `modifiedMember` is the member that changed, when the change
  /// asks to name it; `undoHandler` reverts the change (and, when run, records its own
  /// inverse through this same method).
  virtual void recordChange(std::shared_ptr<IconwrightDocumentMember> modifiedMember, UndoHandler undoHandler) = 0;
};

/// Undo and redo stacks in the usual manner: changes recorded while undoing go to the redo
/// stack, changes recorded while redoing go to the undo stack, and any other change clears
/// the redo stack.
class UndoManagerDocument : public IconwrightDocument {
 public:
  struct Step {
    std::shared_ptr<IconwrightDocumentMember> modifiedMember;
    UndoHandler handler;
  };

  void recordChange(std::shared_ptr<IconwrightDocumentMember> modifiedMember, UndoHandler undoHandler) override;

  [[nodiscard]] bool canUndo() const { return !undoStack_.empty(); }
  [[nodiscard]] bool canRedo() const { return !redoStack_.empty(); }
  [[nodiscard]] std::size_t undoCount() const { return undoStack_.size(); }
  [[nodiscard]] std::size_t redoCount() const { return redoStack_.size(); }
  [[nodiscard]] const std::vector<Step>& undoSteps() const { return undoStack_; }

  /// Runs the newest undo step; false when there is none.
  bool undo();
  /// Runs the newest redo step; false when there is none.
  bool redo();
  void removeAllSteps();

 private:
  enum class Mode { normal, undoing, redoing };
  std::vector<Step> undoStack_;
  std::vector<Step> redoStack_;
  Mode mode_ = Mode::normal;
};

}  // namespace iconwright
