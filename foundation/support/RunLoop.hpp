// RunLoop: a small run loop of our own, one per thread. Work reaches it in two ways: a
// perform for the next turn, ordered by a number (lower runs first) within a mode, and a
// perform after a delay in seconds, for a list of modes. Both return a Token that can be
// cancelled until it runs. Running the loop in a mode takes turns — first the ordered
// performs that were waiting when the turn began, then the timed ones that are due — and
// waits for the next timed perform when a turn had nothing to do. The clock can be
// replaced, so that a delay can be played out without waiting.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace iconwright {

class RunLoop {
 public:
  using Mode = std::string;
  using Clock = std::chrono::steady_clock;
  using TimePoint = Clock::time_point;
  using Duration = Clock::duration;

  /// The mode a loop normally runs in.
  static const Mode defaultMode;

  /// Where the loop reads the time and how it waits for a later time.
  class TimeSource {
   public:
    virtual ~TimeSource() = default;
    [[nodiscard]] virtual TimePoint now() const = 0;
    virtual void sleepUntil(TimePoint time) = 0;
  };
  /// The steady clock of the system, waiting in earnest.
  [[nodiscard]] static std::shared_ptr<TimeSource> systemTimeSource();

  /// One pending perform, cancelled with cancel() until it has run.
  class Token {
   public:
    enum class Kind : std::uint8_t { order, time };

    [[nodiscard]] bool ran() const { return ran_; }
    [[nodiscard]] bool canceled() const { return canceled_; }
    [[nodiscard]] Kind kind() const { return kind_; }
    /// Keeps the body from running; nothing once it has run.
    void cancel() {
      if (!ran_) canceled_ = true;
    }

   private:
    friend class RunLoop;
    Token(Kind kind, std::function<void()> body) : kind_(kind), body_(std::move(body)) {}

    Kind kind_;
    std::function<void()> body_;
    bool ran_ = false;
    bool canceled_ = false;
  };

  class Coalescer;

  explicit RunLoop(std::shared_ptr<TimeSource> timeSource = systemTimeSource());
  ~RunLoop();
  RunLoop(const RunLoop&) = delete;
  RunLoop& operator=(const RunLoop&) = delete;

  /// The loop of the calling thread, made on first use.
  [[nodiscard]] static RunLoop& current();

  /// Runs `body` on a later turn in one of `modes`, after the performs of a lower order.
  std::shared_ptr<Token> perform(int order, std::vector<Mode> modes, std::function<void()> body);
  /// Runs `body` on the first turn in one of `modes` at least `delay` seconds from now.
  std::shared_ptr<Token> perform(double delay, std::vector<Mode> modes, std::function<void()> body);

  /// Takes one turn in `mode`; when it finds nothing to run, waits for the next timed perform
  /// of the mode, but not past `limit`, and tries once more. True when something ran.
  bool runOnce(const Mode& mode, TimePoint limit);
  /// Takes turns in `mode` until `limit`, or until nothing of the mode is pending.
  void run(const Mode& mode, TimePoint limit);
  /// run() for `seconds` from now in the default mode.
  void run(double seconds);
  /// Whether a perform that has neither run nor been cancelled waits in `mode`.
  [[nodiscard]] bool hasPendingWork(const Mode& mode) const;

  [[nodiscard]] TimePoint now() const { return timeSource_->now(); }

 private:
  struct Entry {
    std::shared_ptr<Token> token;
    std::vector<Mode> modes;
    int order = 0;
    TimePoint fireTime;
    std::uint64_t sequence = 0;
  };

  [[nodiscard]] static bool runsIn(const Entry& entry, const Mode& mode);

  std::shared_ptr<TimeSource> timeSource_;
  std::vector<Entry> ordered_;
  std::vector<Entry> timed_;
  std::uint64_t nextSequence_ = 0;
};

}  // namespace iconwright
