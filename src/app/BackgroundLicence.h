// Loads and renews the licence on a thread of its own: the keychain and the licence service may be slow.
#pragma once

#include "licensing/LicenceManager.h"
#include "session/AppState.h"

#include <atomic>
#include <QObject>
#include <thread>

namespace pointloom {

class BackgroundLicence {
public:
    /// Loads the licence, trying again while the keychain is locked, then renews it when that is due and sets
    /// `isLicensed` of the session. Both outlive this.
    BackgroundLicence(LicenceManager& manager, AppState& state);
    ~BackgroundLicence(); // cancels and joins the thread
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
