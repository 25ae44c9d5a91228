// Keeps the desktop awake while something long runs.
#pragma once

#include <optional>
#include <QDBusUnixFileDescriptor>
#include <QString>

namespace pointloom {

/// Asks the screen saver and the login service, where the desktop offers them over D-Bus; does nothing, and
/// says nothing, elsewhere. Each question may take up to a second: make it on a worker thread.
class SleepInhibitor {
public:
    explicit SleepInhibitor(const QString& reason);
    ~SleepInhibitor();
    SleepInhibitor(const SleepInhibitor&) = delete;
    SleepInhibitor& operator=(const SleepInhibitor&) = delete;

private:
    std::optional<uint> m_screenSaverCookie;
    QDBusUnixFileDescriptor m_loginLock; // held until it is closed
};

}
