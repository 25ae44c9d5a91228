// Brings the kept licence into the session without holding up the window: the keychain and the licence
// service may take their time.
#pragma once

#include "licensing/LicenceManager.h"
#include "session/AppState.h"

#include <atomic>
#include <QObject>
#include <thread>

namespace pointloom {

class BackgroundLicence {
public:
    /// Loads, for as long as the keychain takes to be unlocked, then renews when that is due; `isLicensed` of
    /// the session follows. Both outlive this.
    BackgroundLicence(LicenceManager& manager, AppState& state);
    ~BackgroundLicence(); // cancels what is under way
    BackgroundLicence(const BackgroundLicence&) = delete;
    BackgroundLicence& operator=(const BackgroundLicence&) = delete;

private:
    void work();
    void tellSession();

    LicenceManager& m_manager;
    AppState& m_state;
    std::atomic<bool> m_isStopping = false;
    QObject m_context; // of the session's thread; what is queued here goes with it
    std::thread m_worker;
};

}
