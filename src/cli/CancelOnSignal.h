// Turns SIGINT, SIGTERM and SIGHUP into a flag that long operations poll.
#pragma once

#include <array>
#include <csignal>

namespace pointloom::cli {

/// While it lives, these signals only set the flag, and SIGPIPE is ignored: a reader of the output that went
/// away does not end the program. One at a time.
class CancelOnSignal {
public:
    CancelOnSignal();
    ~CancelOnSignal();
    CancelOnSignal(const CancelOnSignal&) = delete;
    CancelOnSignal& operator=(const CancelOnSignal&) = delete;

    bool isRequested() const;

private:
    static constexpr std::array signals{SIGINT, SIGTERM, SIGHUP, SIGPIPE};
    std::array<struct sigaction, signals.size()> m_before{};
};

}
