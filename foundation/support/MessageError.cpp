#include "foundation/support/MessageError.hpp"

namespace iconwright {

RecoveryAttempter::RecoveryAttempter(std::vector<RecoverOption> recoveryOptions)
    : recoveryOptions_(std::move(recoveryOptions)) {}

bool RecoveryAttempter::attemptRecovery(std::size_t index) const {
  if (index >= recoveryOptions_.size() || !recoveryOptions_[index].action) return false;
  return recoveryOptions_[index].action();
}

MessageError::MessageError(std::string message, std::optional<std::string> failureReason,
                           std::optional<std::string> recoverySuggestion, std::vector<RecoverOption> recoveryOptions)
    : std::runtime_error(message),
      message_(std::move(message)),
      failureReason_(std::move(failureReason)),
      recoverySuggestion_(std::move(recoverySuggestion)) {
  if (!recoveryOptions.empty()) attempter_ = std::make_shared<const RecoveryAttempter>(std::move(recoveryOptions));
}

std::vector<std::string> MessageError::recoveryOptionTitles() const {
  std::vector<std::string> titles;
  if (attempter_) {
    for (const auto& option : attempter_->recoveryOptions()) titles.push_back(option.title);
  }
  return titles;
}

FileSystemError::FileSystemError(std::string path, std::string reason)
    : std::runtime_error(reason + ": " + path), path_(std::move(path)), reason_(std::move(reason)) {}

}  // namespace iconwright
