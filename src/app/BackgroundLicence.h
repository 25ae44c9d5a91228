// Loads and renews the licence on a thread of its own: the keychain and the licence service may be slow.
#pragma once

#include "licensing/LicenceManager.h"
#include "session/AppState.h"

#include <functional>
#include <QObject>
#include <thread>

namespace pointloom {

/// Its end cancels what is under way.
class BackgroundLicence {
public:
    /// Loads the licence, trying again while the keychain is locked, then renews it when that is due and sets
    /// `isLicensed` of the session. Both outlive this. `onLoaded` follows when it was set for the first time.
    BackgroundLicence(LicenceManager& manager, AppState& state, std::function<void()> onLoaded = {});

private:
    void work(const std::stop_token& stop);
    void updateSession();

    LicenceManager& m_manager;
    AppState& m_state;
    std::function<void()> m_onLoaded;
    QObject m_context; // of the session's thread; queued updates end with it
    std::jthread m_worker;
};

}
