#include "foundation/support/RunLoopCoalescer.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace iconwright {
namespace {

using namespace std::chrono_literals;
using Coalescer = RunLoop::Coalescer;
using Status = Coalescer::Status;

// A clock that only moves when the loop waits, so that delays play out at once and exactly.
class ManualTimeSource final : public RunLoop::TimeSource {
 public:
  [[nodiscard]] RunLoop::TimePoint now() const override { return time_; }
  void sleepUntil(RunLoop::TimePoint time) override { time_ = std::max(time_, time); }
  void advance(RunLoop::Duration by) { time_ += by; }

 private:
  RunLoop::TimePoint time_{};
};

struct ManualLoop {
  std::shared_ptr<ManualTimeSource> clock = std::make_shared<ManualTimeSource>();
  RunLoop loop{clock};

  // One turn in the default mode that does not wait.
  bool turn() { return loop.runOnce(RunLoop::defaultMode, loop.now()); }
  void runFor(RunLoop::Duration duration) { loop.run(RunLoop::defaultMode, loop.now() + duration); }
};

TEST(RunLoop, RunsOrderedPerformsByOrderThenTimedOnesWhenDue) {
  ManualLoop manual;
  std::vector<std::string> ran;
  manual.loop.perform(5, {RunLoop::defaultMode}, [&] { ran.push_back("order 5"); });
  manual.loop.perform(0.5, {RunLoop::defaultMode}, [&] { ran.push_back("after 0.5 s"); });
  manual.loop.perform(1, {RunLoop::defaultMode}, [&] { ran.push_back("order 1"); });
  manual.loop.perform(1, {"other"}, [&] { ran.push_back("other mode"); });
  const auto canceled = manual.loop.perform(0, {RunLoop::defaultMode}, [&] { ran.push_back("canceled"); });
  canceled->cancel();

  EXPECT_TRUE(manual.turn());
  EXPECT_EQ(ran, (std::vector<std::string>{"order 1", "order 5"}));
  EXPECT_FALSE(manual.turn()) << "the timed perform is not due yet";
  manual.runFor(1s);
  EXPECT_EQ(ran.back(), "after 0.5 s");
  EXPECT_FALSE(canceled->ran());
  EXPECT_TRUE(manual.loop.hasPendingWork("other"));
  EXPECT_FALSE(manual.loop.hasPendingWork(RunLoop::defaultMode));
}

TEST(RunLoop, WorkAddedDuringATurnWaitsForTheNextTurn) {
  ManualLoop manual;
  int inner = 0;
  manual.loop.perform(0, {RunLoop::defaultMode}, [&] {
    manual.loop.perform(0, {RunLoop::defaultMode}, [&] { ++inner; });
  });
  manual.turn();
  EXPECT_EQ(inner, 0);
  manual.turn();
  EXPECT_EQ(inner, 1);
}

TEST(Coalescer, ThreeRequestsInOneTurnRunTheBlockOnce) {
  ManualLoop manual;
  int runs = 0;
  Coalescer coalescer(Coalescer::Delay::order(0), [&] { ++runs; }, manual.loop);
  coalescer.scheduleCoalescing();
  coalescer.scheduleCoalescing();
  coalescer.scheduleCoalescing();
  EXPECT_EQ(coalescer.status(), Status::scheduled);
  manual.turn();
  EXPECT_EQ(runs, 1);
  EXPECT_EQ(coalescer.status(), Status::idle);
  manual.turn();
  EXPECT_EQ(runs, 1);
}

TEST(Coalescer, CancelWithNothingPendingStaysIdleAndAfterACancelSchedulesAnew) {
  ManualLoop manual;
  int runs = 0;
  Coalescer coalescer(Coalescer::Delay::order(0), [&] { ++runs; }, manual.loop);
  coalescer.cancelCoalescing();
  EXPECT_EQ(coalescer.status(), Status::idle);
  EXPECT_FALSE(manual.loop.hasPendingWork(RunLoop::defaultMode));

  coalescer.scheduleCoalescing();
  coalescer.cancelCoalescing();
  EXPECT_EQ(coalescer.status(), Status::idle);
  manual.turn();
  EXPECT_EQ(runs, 0) << "a cancelled request never runs";

  coalescer.scheduleCoalescing();
  EXPECT_EQ(coalescer.status(), Status::scheduled);
  manual.turn();
  EXPECT_EQ(runs, 1);
}

TEST(Coalescer, StatusIsRunningInsideTheBlockWhichMayScheduleAgain) {
  ManualLoop manual;
  std::vector<Status> seen;
  std::unique_ptr<Coalescer> coalescer;
  coalescer = std::make_unique<Coalescer>(Coalescer::Delay::order(0), [&] {
    seen.push_back(coalescer->status());
    if (seen.size() == 1) coalescer->scheduleCoalescing();
  }, manual.loop);
  coalescer->scheduleCoalescing();
  manual.turn();
  EXPECT_EQ(seen, std::vector<Status>{Status::running});
  EXPECT_EQ(coalescer->status(), Status::scheduled) << "the block asked again";
  manual.turn();
  EXPECT_EQ(seen.size(), 2u);
  EXPECT_EQ(coalescer->status(), Status::idle);
}

TEST(Coalescer, ReleasingAPendingCoalescerCancelsItsRequest) {
  ManualLoop manual;
  int runs = 0;
  {
    Coalescer coalescer(Coalescer::Delay::time(0.1), [&] { ++runs; }, manual.loop);
    coalescer.scheduleCoalescing();
  }
  manual.runFor(1s);
  EXPECT_EQ(runs, 0);
}

TEST(Coalescer, RescheduleWithATimeIsADebounce) {
  ManualLoop manual;
  std::vector<RunLoop::TimePoint> firedAt;
  const auto start = manual.loop.now();
  Coalescer coalescer(Coalescer::Delay::time(0.1), [&] { firedAt.push_back(manual.loop.now()); }, manual.loop);

  // Requests at 0, 60 and 120 ms: each restarts the 100 ms wait.
  coalescer.rescheduleCoalescing();
  manual.runFor(60ms);
  coalescer.rescheduleCoalescing();
  manual.runFor(60ms);
  coalescer.rescheduleCoalescing();
  manual.runFor(60ms);
  EXPECT_TRUE(firedAt.empty()) << "no wait of 100 ms has passed unbroken yet";
  manual.runFor(1s);
  ASSERT_EQ(firedAt.size(), 1u);
  EXPECT_EQ(firedAt.front() - start, 220ms);

  // scheduleCoalescing, by contrast, keeps the first request's time.
  firedAt.clear();
  const auto second = manual.loop.now();
  coalescer.scheduleCoalescing();
  manual.runFor(60ms);
  coalescer.scheduleCoalescing();
  manual.runFor(1s);
  ASSERT_EQ(firedAt.size(), 1u);
  EXPECT_EQ(firedAt.front() - second, 100ms);
}

TEST(Coalescer, DebouncesOnTheSystemClock) {
  // Real waiting: only the count is checked, never how long anything took.
  RunLoop loop;
  int runs = 0;
  Coalescer coalescer(Coalescer::Delay::time(0.02), [&] { ++runs; }, loop);
  for (int i = 0; i < 3; ++i) {
    coalescer.rescheduleCoalescing();
    loop.runOnce(RunLoop::defaultMode, loop.now());
  }
  loop.run(RunLoop::defaultMode, loop.now() + 30s);
  EXPECT_EQ(runs, 1);
  EXPECT_EQ(coalescer.status(), Status::idle);
}

}  // namespace
}  // namespace iconwright
