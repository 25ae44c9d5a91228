#include "cli/CancelOnSignal.h"

#include <atomic>

namespace pointloom::cli {

namespace {

std::atomic<bool> requested = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may set it");

extern "C" void requestCancellation(int) {
    requested = true;
}

}

CancelOnSignal::CancelOnSignal() {
    requested = false;
    for (std::size_t i = 0; i < signals.size(); ++i) {
        struct sigaction action {};
        action.sa_handler = signals[i] == SIGPIPE ? SIG_IGN : requestCancellation;
        action.sa_flags = SA_RESTART; // system calls in progress are resumed
        sigaction(signals[i], &action, &m_before[i]);
    }
}

CancelOnSignal::~CancelOnSignal() {
    for (std::size_t i = 0; i < signals.size(); ++i)
        sigaction(signals[i], &m_before[i], nullptr);
}

bool CancelOnSignal::isRequested() const {
    return requested;
}

}
