#include "app/BackgroundLicence.h"

#include <chrono>
#include <cstdio>

namespace pointloom {

BackgroundLicence::BackgroundLicence(LicenceManager& manager, AppState& state)
    : m_manager(manager)
    , m_state(state)
    , m_worker([this] { work(); }) {}

BackgroundLicence::~BackgroundLicence() {
    m_isStopping = true;
    m_worker.join();
}

void BackgroundLicence::work() {
    try {
        const auto isStopping = [this] { return m_isStopping.load(); };
        m_manager.load(isStopping);
        while (m_manager.status().isAwaited && !m_isStopping) {
            constexpr std::chrono::milliseconds turnOfOthers(100);
            std::this_thread::sleep_for(turnOfOthers);
            m_manager.load(isStopping);
        }
        tellSession();
        if (const auto fault = m_manager.renewIfDue(isStopping); fault && !m_isStopping)
            std::fprintf(stderr, "[Licence] %s\n", fault->what());
        tellSession();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "[Licence] %s\n", error.what());
    }
}

void BackgroundLicence::tellSession() {
    QMetaObject::invokeMethod(
        &m_context, [this] { m_state.isLicensed = m_manager.isLicensed(); }, Qt::QueuedConnection);
}

}
