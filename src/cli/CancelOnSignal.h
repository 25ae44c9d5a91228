// Turns Ctrl-C into a wish that long work can ask for.
#pragma once

#include <array>
#include <csignal>

namespace pointloom::cli {

/// While it lives, SIGINT, SIGTERM and SIGHUP only set a flag, and a reader that went away does not end the
/// program. One at a time.
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
