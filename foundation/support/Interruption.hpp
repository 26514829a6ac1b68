// InterruptionGuard: while one exists, SIGINT, SIGTERM, SIGHUP and SIGQUIT only record that
// they came, so that work which must not be cut short half way (replacing a document on
// disk) can notice, undo what it did and stop. When the guard ends it restores the previous
// handlers and, if a signal came, raises it again, so the process ends as it would have.
//   { InterruptionGuard guard; ...; if (InterruptionGuard::interrupted()) throw ...; }
#pragma once

namespace iconwright {

class InterruptionGuard {
 public:
  InterruptionGuard();
  ~InterruptionGuard();
  InterruptionGuard(const InterruptionGuard&) = delete;
  InterruptionGuard& operator=(const InterruptionGuard&) = delete;

  /// True once one of the signals came while a guard was active.
  [[nodiscard]] static bool interrupted();

 private:
  /// Only the outermost of nested guards installs and restores handlers.
  bool outermost_ = false;
};

}  // namespace iconwright
