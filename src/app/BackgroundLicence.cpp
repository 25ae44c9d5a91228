#include "app/BackgroundLicence.h"

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
        m_manager.load();
        tellSession();
        if (const auto fault = m_manager.renewIfDue([this] { return m_isStopping.load(); }))
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
