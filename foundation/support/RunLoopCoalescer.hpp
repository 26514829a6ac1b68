// RunLoop::Coalescer: merges many requests for one piece of work into a single run of it on
// a later turn of a run loop. However often scheduleCoalescing() is called before the run,
// the block runs once. The delay is a turn order (the next turn, after performs of lower
// order) or a time in seconds; with a time, rescheduleCoalescing() restarts the wait, which
// gives a debounce. A coalescer belongs to the thread of its run loop and takes no lock.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <variant>

#include "foundation/support/RunLoop.hpp"

namespace iconwright {

class RunLoop::Coalescer {
 public:
  /// When the block runs: on a later turn with this order, or after this many seconds.
  class Delay {
   public:
    [[nodiscard]] static Delay order(int value) { return Delay(Order{value}); }
    [[nodiscard]] static Delay time(double seconds) { return Delay(Time{seconds}); }
    [[nodiscard]] std::optional<int> orderValue() const;
    [[nodiscard]] std::optional<double> timeValue() const;

   private:
    struct Order {
      int value;
    };
    struct Time {
      double seconds;
    };
    explicit Delay(std::variant<Order, Time> storage) : storage_(storage) {}
    std::variant<Order, Time> storage_;
  };

  /// running while the block runs; it returns to idle afterwards unless the block scheduled
  /// the work again, which makes a new request.
  enum class Status : std::uint8_t { idle, scheduled, running };

  /// Idle, on the calling thread's run loop or on `runLoop`, which must outlive it.
  Coalescer(Delay delay, std::function<void()> block);
  Coalescer(Delay delay, std::function<void()> block, RunLoop& runLoop);
  /// A pending request is cancelled: the block never runs after its coalescer is gone.
  ~Coalescer();
  Coalescer(const Coalescer&) = delete;
  Coalescer& operator=(const Coalescer&) = delete;

  [[nodiscard]] Status status() const { return status_; }
  [[nodiscard]] const Delay& delay() const { return delay_; }

  /// Asks the run loop to run the block, unless a request is already pending. An order goes
  /// in for the default mode; a time for a list of one mode, the default one.
  void scheduleCoalescing();
  /// Cancels the pending request, if any; idle afterwards.
  void cancelCoalescing();
  /// Cancels the pending request and makes a new one; with a time, the wait starts again.
  void rescheduleCoalescing();

 private:
  void fire();

  Delay delay_;
  std::shared_ptr<Token> scheduledPerformer_;
  std::function<void()> block_;
  Status status_ = Status::idle;
  RunLoop& runLoop_;
};

}  // namespace iconwright
