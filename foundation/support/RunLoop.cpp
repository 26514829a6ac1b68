#include "foundation/support/RunLoop.hpp"

#include <algorithm>
#include <optional>
#include <thread>

namespace iconwright {

namespace {

class SystemTimeSource final : public RunLoop::TimeSource {
 public:
  [[nodiscard]] RunLoop::TimePoint now() const override { return RunLoop::Clock::now(); }
  void sleepUntil(RunLoop::TimePoint time) override { std::this_thread::sleep_until(time); }
};

bool isLive(const std::shared_ptr<RunLoop::Token>& token) { return !token->canceled() && !token->ran(); }

}  // namespace

const RunLoop::Mode RunLoop::defaultMode = "default";

std::shared_ptr<RunLoop::TimeSource> RunLoop::systemTimeSource() {
  static const auto source = std::make_shared<SystemTimeSource>();
  return source;
}

RunLoop::RunLoop(std::shared_ptr<TimeSource> timeSource) : timeSource_(std::move(timeSource)) {}

RunLoop::~RunLoop() = default;

RunLoop& RunLoop::current() {
  thread_local RunLoop loop;
  return loop;
}

std::shared_ptr<RunLoop::Token> RunLoop::perform(int order, std::vector<Mode> modes, std::function<void()> body) {
  std::shared_ptr<Token> token(new Token(Token::Kind::order, std::move(body)));
  ordered_.push_back({token, std::move(modes), order, TimePoint(), nextSequence_++});
  return token;
}

std::shared_ptr<RunLoop::Token> RunLoop::perform(double delay, std::vector<Mode> modes, std::function<void()> body) {
  std::shared_ptr<Token> token(new Token(Token::Kind::time, std::move(body)));
  const auto offset = std::chrono::duration_cast<Duration>(std::chrono::duration<double>(std::max(delay, 0.0)));
  timed_.push_back({token, std::move(modes), 0, now() + offset, nextSequence_++});
  return token;
}

bool RunLoop::runsIn(const Entry& entry, const Mode& mode) {
  return std::find(entry.modes.begin(), entry.modes.end(), mode) != entry.modes.end();
}

bool RunLoop::hasPendingWork(const Mode& mode) const {
  const auto pending = [&](const Entry& entry) { return isLive(entry.token) && runsIn(entry, mode); };
  return std::any_of(ordered_.begin(), ordered_.end(), pending) || std::any_of(timed_.begin(), timed_.end(), pending);
}

bool RunLoop::runOnce(const Mode& mode, TimePoint limit) {
  // Drop what was cancelled, so that a long-lived loop does not collect dead entries.
  std::erase_if(ordered_, [](const Entry& entry) { return !isLive(entry.token); });
  std::erase_if(timed_, [](const Entry& entry) { return !isLive(entry.token); });

  // What a turn runs is chosen when it begins: work added by a body waits for the next turn.
  std::vector<Entry> turn;
  std::vector<Entry> later;
  for (auto& entry : ordered_) (runsIn(entry, mode) ? turn : later).push_back(std::move(entry));
  ordered_ = std::move(later);
  std::stable_sort(turn.begin(), turn.end(), [](const Entry& a, const Entry& b) { return a.order < b.order; });

  const TimePoint time = now();
  std::vector<Entry> due;
  later.clear();
  for (auto& entry : timed_) {
    (runsIn(entry, mode) && entry.fireTime <= time ? due : later).push_back(std::move(entry));
  }
  timed_ = std::move(later);
  std::stable_sort(due.begin(), due.end(), [](const Entry& a, const Entry& b) {
    return a.fireTime != b.fireTime ? a.fireTime < b.fireTime : a.sequence < b.sequence;
  });
  turn.insert(turn.end(), std::make_move_iterator(due.begin()), std::make_move_iterator(due.end()));

  bool ranSomething = false;
  for (auto& entry : turn) {
    // A body earlier in the turn may have cancelled this one.
    if (!isLive(entry.token)) continue;
    entry.token->ran_ = true;
    ranSomething = true;
    const auto body = std::move(entry.token->body_);
    body();
  }
  if (ranSomething) return true;

  // Nothing was due: wait for the next timed perform of the mode, within the limit.
  std::optional<TimePoint> next;
  for (const auto& entry : timed_) {
    if (isLive(entry.token) && runsIn(entry, mode) && (!next || entry.fireTime < *next)) next = entry.fireTime;
  }
  if (!next || *next > limit) {
    if (now() < limit && next) timeSource_->sleepUntil(limit);
    return false;
  }
  timeSource_->sleepUntil(*next);
  return runOnce(mode, limit);
}

void RunLoop::run(const Mode& mode, TimePoint limit) {
  while (hasPendingWork(mode) && now() < limit) runOnce(mode, limit);
}

void RunLoop::run(double seconds) {
  run(defaultMode, now() + std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds)));
}

}  // namespace iconwright
