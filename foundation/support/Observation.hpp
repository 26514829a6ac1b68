// Observation of the document's members. Each member owns an ObservationRegistrar; its
// setters call notify() with the name of the property that changed. Observing returns a
// token that stops the observation when it is destroyed (or reset). Tokens may outlive the
// registrar, and an observer may stop observing from inside its own callback.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace iconwright {

/// What an observer hears: the member that changed (its address, as an identity) and the
/// property's name ("groups", "fill", "opacity", ...).
struct ObservationEvent {
  const void* member;
  std::string_view property;
};

class ObservationToken;

class ObservationRegistrar {
 public:
  using Observer = std::function<void(const ObservationEvent&)>;

  ObservationRegistrar() = default;
  // Copying a member does not copy who observes it.
  ObservationRegistrar(const ObservationRegistrar&) {}
  ObservationRegistrar& operator=(const ObservationRegistrar&) { return *this; }

  [[nodiscard]] ObservationToken observe(Observer observer) const;
  void notify(const void* member, std::string_view property) const;
  [[nodiscard]] std::size_t observerCount() const;

  struct State;

 private:
  // Made by the first observe(): most members are never observed.
  mutable std::shared_ptr<State> state_;
};

class ObservationToken {
 public:
  ObservationToken() = default;
  ObservationToken(ObservationToken&&) noexcept = default;
  ObservationToken& operator=(ObservationToken&& other) noexcept;
  ObservationToken(const ObservationToken&) = delete;
  ObservationToken& operator=(const ObservationToken&) = delete;
  ~ObservationToken() { reset(); }

  /// Stops observing; a second call does nothing.
  void reset();

 private:
  friend class ObservationRegistrar;
  ObservationToken(std::weak_ptr<ObservationRegistrar::State> state, std::uint64_t identifier)
      : state_(std::move(state)), identifier_(identifier) {}

  std::weak_ptr<ObservationRegistrar::State> state_;
  std::uint64_t identifier_ = 0;
};

}  // namespace iconwright
