// MessageError: the one kind of failure that the library raises for a person to read.
// A message, optionally a failure reason and a recovery suggestion, and recovery options
// whose titles a host can show and whose actions it can run through the attempter.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <stdexcept>

namespace iconwright {

struct RecoverOption {
  std::string title;
  std::function<bool()> action;
};

/// Holds the recovery options of an error and runs the one the user chose.
class RecoveryAttempter {
 public:
  explicit RecoveryAttempter(std::vector<RecoverOption> recoveryOptions);

  [[nodiscard]] const std::vector<RecoverOption>& recoveryOptions() const { return recoveryOptions_; }
  /// Runs the action of the option at `index`; false when the index is out of range or
  /// the action reports failure.
  bool attemptRecovery(std::size_t index) const;

 private:
  std::vector<RecoverOption> recoveryOptions_;
};

class MessageError : public std::runtime_error {
 public:
  static constexpr std::string_view domain = "com.vantorel.Iconwright";
  static constexpr int code = 1;

  explicit MessageError(std::string message, std::optional<std::string> failureReason = std::nullopt,
                        std::optional<std::string> recoverySuggestion = std::nullopt,
                        std::vector<RecoverOption> recoveryOptions = {});

  /// The localized description: the message itself.
  [[nodiscard]] const std::string& message() const { return message_; }
  [[nodiscard]] const std::optional<std::string>& failureReason() const { return failureReason_; }
  [[nodiscard]] const std::optional<std::string>& recoverySuggestion() const { return recoverySuggestion_; }
  /// Titles of the recovery options in order; empty when there are none.
  [[nodiscard]] std::vector<std::string> recoveryOptionTitles() const;
  /// Null when there are no recovery options.
  [[nodiscard]] const std::shared_ptr<const RecoveryAttempter>& recoveryAttempter() const { return attempter_; }

 private:
  std::string message_;
  std::optional<std::string> failureReason_;
  std::optional<std::string> recoverySuggestion_;
  std::shared_ptr<const RecoveryAttempter> attempter_;
};

/// A failure of the file system, with the path involved and the system's reason.
class FileSystemError : public std::runtime_error {
 public:
  FileSystemError(std::string path, std::string reason);

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] const std::string& reason() const { return reason_; }

 private:
  std::string path_;
  std::string reason_;
};

}  // namespace iconwright
