// Loads and renews the licence on a thread of its own: the keychain and the licence service may be slow.
#pragma once

#include "licensing/LicenceManager.h"
#include "session/AppState.h"

#include <QObject>
#include <thread>

namespace pointloom {

/// Its end cancels what is under way.
class BackgroundLicence {
public:
    /// Loads the licence, trying again while the keychain is locked, then renews it when that is due and sets
    /// `isLicensed` of the session. Both outlive this.
    BackgroundLicence(LicenceManager& manager, AppState& state);

private:
    void work(const std::stop_token& stop);
    void updateSession();

    LicenceManager& m_manager;
    AppState& m_state;
    QObject m_context; // of the session's thread; queued updates end with it
    std::jthread m_worker;
};

}
