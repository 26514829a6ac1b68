#include "foundation/support/RunLoopCoalescer.hpp"

namespace iconwright {

std::optional<int> RunLoop::Coalescer::Delay::orderValue() const {
  if (const Order* order = std::get_if<Order>(&storage_)) return order->value;
  return std::nullopt;
}

std::optional<double> RunLoop::Coalescer::Delay::timeValue() const {
  if (const Time* time = std::get_if<Time>(&storage_)) return time->seconds;
  return std::nullopt;
}

RunLoop::Coalescer::Coalescer(Delay delay, std::function<void()> block)
    : Coalescer(delay, std::move(block), RunLoop::current()) {}

RunLoop::Coalescer::Coalescer(Delay delay, std::function<void()> block, RunLoop& runLoop)
    : delay_(delay), block_(std::move(block)), runLoop_(runLoop) {}

RunLoop::Coalescer::~Coalescer() {
  if (scheduledPerformer_) scheduledPerformer_->cancel();
}

void RunLoop::Coalescer::scheduleCoalescing() {
  if (scheduledPerformer_) return;
  // The token dies with the request: cancelling it in the destructor keeps `this` from
  // being reached afterwards.
  auto body = [this] { fire(); };
  if (const auto order = delay_.orderValue()) {
    scheduledPerformer_ = runLoop_.perform(*order, {RunLoop::defaultMode}, body);
  } else {
    scheduledPerformer_ = runLoop_.perform(*delay_.timeValue(), {RunLoop::defaultMode}, body);
  }
  status_ = Status::scheduled;
}

void RunLoop::Coalescer::cancelCoalescing() {
  if (scheduledPerformer_) scheduledPerformer_->cancel();
  scheduledPerformer_.reset();
  status_ = Status::idle;
}

void RunLoop::Coalescer::rescheduleCoalescing() {
  if (scheduledPerformer_) scheduledPerformer_->cancel();
  scheduledPerformer_.reset();
  scheduleCoalescing();
}

void RunLoop::Coalescer::fire() {
  // The request is spent before the block runs, so that the block may schedule a new one.
  scheduledPerformer_.reset();
  status_ = Status::running;
  block_();
  if (status_ == Status::running) status_ = Status::idle;
}

}  // namespace iconwright
