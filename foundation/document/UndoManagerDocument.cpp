#include "foundation/document/IconwrightDocument.hpp"

namespace iconwright {

namespace {
// Puts the manager back into its normal mode however the handler ends.
template <class Mode>
class ModeScope {
 public:
  ModeScope(Mode& mode, Mode during) : mode_(mode), previous_(mode) { mode_ = during; }
  ~ModeScope() { mode_ = previous_; }
  ModeScope(const ModeScope&) = delete;
  ModeScope& operator=(const ModeScope&) = delete;

 private:
  Mode& mode_;
  Mode previous_;
};
}  // namespace

void UndoManagerDocument::recordChange(std::shared_ptr<IconwrightDocumentMember> modifiedMember,
                                       UndoHandler undoHandler) {
  Step step{std::move(modifiedMember), std::move(undoHandler)};
  switch (mode_) {
    case Mode::undoing: redoStack_.push_back(std::move(step)); break;
    case Mode::redoing: undoStack_.push_back(std::move(step)); break;
    case Mode::normal:
      undoStack_.push_back(std::move(step));
      redoStack_.clear();
      break;
  }
}

bool UndoManagerDocument::undo() {
  if (undoStack_.empty()) return false;
  Step step = std::move(undoStack_.back());
  undoStack_.pop_back();
  ModeScope scope(mode_, Mode::undoing);
  step.handler();
  return true;
}

bool UndoManagerDocument::redo() {
  if (redoStack_.empty()) return false;
  Step step = std::move(redoStack_.back());
  redoStack_.pop_back();
  ModeScope scope(mode_, Mode::redoing);
  step.handler();
  return true;
}

void UndoManagerDocument::removeAllSteps() {
  undoStack_.clear();
  redoStack_.clear();
}

}  // namespace iconwright
