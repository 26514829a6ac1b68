#include "foundation/support/Interruption.hpp"

#include <signal.h>

#include <array>
#include <csignal>

namespace iconwright {

namespace {

constexpr std::array guardedSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

volatile std::sig_atomic_t receivedSignal = 0;
int activeGuards = 0;
std::array<struct sigaction, guardedSignals.size()> previousActions{};

extern "C" void recordSignal(int signal) { receivedSignal = signal; }

}  // namespace

InterruptionGuard::InterruptionGuard() {
  if (activeGuards++ > 0) return;
  outermost_ = true;
  receivedSignal = 0;
  struct sigaction action {};
  action.sa_handler = recordSignal;
  sigemptyset(&action.sa_mask);
  // No SA_RESTART: a blocked read or write returns early, so the work sees the signal soon.
  action.sa_flags = 0;
  for (std::size_t i = 0; i < guardedSignals.size(); ++i) {
    ::sigaction(guardedSignals[i], nullptr, &previousActions[i]);
    // A signal the process ignores stays ignored.
    if (previousActions[i].sa_handler != SIG_IGN) ::sigaction(guardedSignals[i], &action, nullptr);
  }
}

InterruptionGuard::~InterruptionGuard() {
  --activeGuards;
  if (!outermost_) return;
  for (std::size_t i = 0; i < guardedSignals.size(); ++i) ::sigaction(guardedSignals[i], &previousActions[i], nullptr);
  if (const int signal = receivedSignal) {
    receivedSignal = 0;
    ::raise(signal);
  }
}

bool InterruptionGuard::interrupted() { return receivedSignal != 0; }

}  // namespace iconwright
