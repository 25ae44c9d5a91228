#include "app/BackgroundLicence.h"

#include <chrono>
#include <cstdio>

namespace pointloom {

BackgroundLicence::BackgroundLicence(LicenceManager& manager, AppState& state, std::function<void()> onLoaded)
    : m_manager(manager)
    , m_state(state)
    , m_onLoaded(std::move(onLoaded))
    , m_worker([this](const std::stop_token& stop) { work(stop); }) {}

void BackgroundLicence::work(const std::stop_token& stop) {
    try {
        const auto isStopping = [&stop] { return stop.stop_requested(); };
        m_manager.load(isStopping);
        while (m_manager.status().isAwaited && !isStopping()) {
            constexpr std::chrono::milliseconds pause(100);
            std::this_thread::sleep_for(pause);
            m_manager.load(isStopping);
        }
        updateSession();
        if (const auto fault = m_manager.renewIfDue(isStopping); fault && !isStopping())
            std::fprintf(stderr, "[Licence] %s\n", fault->what());
        updateSession();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "[Licence] %s\n", error.what());
        updateSession();
    }
}

void BackgroundLicence::updateSession() {
    QMetaObject::invokeMethod(
        &m_context,
        [this] {
            m_state.isLicensed = m_manager.isLicensed();
            if (const auto onLoaded = std::exchange(m_onLoaded, nullptr))
                onLoaded();
        },
        Qt::QueuedConnection);
}

}
