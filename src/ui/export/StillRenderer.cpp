#include "ui/export/StillRenderer.h"

#include "export/ExportManager.h"
#include "ui/export/ExportFault.h"

namespace pointloom {

StillRenderer::StillRenderer(QObject* parent)
    : QObject(parent) {
    constexpr int moment = 60; // milliseconds
    m_moment.setSingleShot(true);
    m_moment.setInterval(moment);
    connect(&m_moment, &QTimer::timeout, this, &StillRenderer::startNext);
}

void StillRenderer::request(const ExportJob& job, double time, Language language) {
    m_next = Request{job, time, language};
    m_moment.start();
}

void StillRenderer::startNext() {
    if (m_rendering.isRunning() || !m_next)
        return;
    const auto next = std::exchange(m_next, std::nullopt);
    m_rendering.start([request = *next] { return render(request); },
                      [this](const Outcome& outcome) { take(outcome); });
}

StillRenderer::Outcome StillRenderer::render(const Request& request) {
    try {
        return {ExportManager::renderStill(request.job, request.time), {}};
    } catch (const std::exception& error) {
        return {{}, reasonOf(error, request.job, false, request.language)};
    }
}

void StillRenderer::take(const Outcome& outcome) {
    if (m_next) {
        if (!m_moment.isActive())
            startNext();
        return;
    }
    if (outcome.fault.isEmpty())
        Q_EMIT rendered(outcome.still);
    else
        Q_EMIT failed(outcome.fault);
}

}
