#include "platform/posix/signal_recovery.h"

#include <signal.h>

#include <array>
#include <atomic>

namespace pintle {
namespace {

constexpr std::array kSignals = {SIGABRT, SIGSEGV, SIGTERM};

std::atomic<RecoveryFunction> recovery{nullptr};
static_assert(std::atomic<RecoveryFunction>::is_always_lock_free);

extern "C" void endBySignal(int signal) {
    if (const RecoveryFunction recover = recovery.load()) recover();
    struct sigaction standard = {};
    standard.sa_handler = SIG_DFL;
    ::sigaction(signal, &standard, nullptr);
    // Blocked while this handler runs; it strikes on return.
    ::raise(signal);
}

}  // namespace

void installSignalRecovery(RecoveryFunction recover) {
    recovery.store(recover);

    // A stack that has overflowed cannot carry the handler.
    alignas(16) static std::array<unsigned char, 65536> ownStack;
    stack_t stack = {};
    stack.ss_sp = ownStack.data();
    stack.ss_size = ownStack.size();
    ::sigaltstack(&stack, nullptr);

    struct sigaction action = {};
    action.sa_handler = endBySignal;
    action.sa_flags = SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    sigset_t wanted;
    sigemptyset(&wanted);
    for (const int signal : kSignals) {
        ::sigaction(signal, &action, nullptr);
        sigaddset(&wanted, signal);
    }
    // A parent may have handed them down blocked.
    ::pthread_sigmask(SIG_UNBLOCK, &wanted, nullptr);
}

}  // namespace pintle
