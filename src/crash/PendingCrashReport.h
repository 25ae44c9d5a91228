// The record that a dying process leaves for its next start.
#pragma once

#include "json/JsonFields.h"

#include <cstdint>
#include <optional>
#include <QString>
#include <tuple>
#include <vector>

namespace pointloom {

struct PendingCrashReport {
    static constexpr std::size_t mostFrames = 128; // innermost ones that are recorded and sent

    QString timestamp; // ISO 8601 for an exception, seconds since 1970 for a signal
    std::optional<QString> exceptionName;
    std::optional<QString> exceptionReason;
    std::optional<std::vector<QString>> callStack; // innermost call first
    std::optional<std::int32_t> signal;

    bool operator==(const PendingCrashReport&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("timestamp", &PendingCrashReport::timestamp),
                          json::field("exceptionName", &PendingCrashReport::exceptionName),
                          json::field("exceptionReason", &PendingCrashReport::exceptionReason),
                          json::field("callStack", &PendingCrashReport::callStack),
                          json::field("signal", &PendingCrashReport::signal)};
    }
};

}
