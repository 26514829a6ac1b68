#include "foundation/support/Observation.hpp"

#include <algorithm>

namespace iconwright {

struct ObservationRegistrar::State {
  struct Entry {
    std::uint64_t identifier;
    std::shared_ptr<Observer> observer;
  };
  std::vector<Entry> entries;
  std::uint64_t nextIdentifier = 1;
};

ObservationToken ObservationRegistrar::observe(Observer observer) const {
  if (!state_) state_ = std::make_shared<State>();
  const auto identifier = state_->nextIdentifier++;
  state_->entries.push_back({identifier, std::make_shared<Observer>(std::move(observer))});
  return ObservationToken(state_, identifier);
}

void ObservationRegistrar::notify(const void* member, std::string_view property) const {
  if (!state_ || state_->entries.empty()) return;
  // Observers may add or remove observers while being told; tell those present now, and
  // skip any that were removed in the meantime.
  const auto snapshot = state_->entries;
  const ObservationEvent event{member, property};
  for (const auto& entry : snapshot) {
    const auto& entries = state_->entries;
    const bool stillObserving = std::any_of(entries.begin(), entries.end(),
                                            [&](const State::Entry& e) { return e.identifier == entry.identifier; });
    if (stillObserving) (*entry.observer)(event);
  }
}

std::size_t ObservationRegistrar::observerCount() const { return state_ ? state_->entries.size() : 0; }

ObservationToken& ObservationToken::operator=(ObservationToken&& other) noexcept {
  if (this != &other) {
    reset();
    state_ = std::move(other.state_);
    identifier_ = other.identifier_;
    other.identifier_ = 0;
  }
  return *this;
}

void ObservationToken::reset() {
  if (auto state = state_.lock()) {
    std::erase_if(state->entries, [&](const auto& entry) { return entry.identifier == identifier_; });
  }
  state_.reset();
  identifier_ = 0;
}

}  // namespace iconwright
