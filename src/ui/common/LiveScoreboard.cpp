#include "ui/common/LiveScoreboard.h"

#include "render/PictureFile.h"

namespace pointloom {

LiveScoreboard::LiveScoreboard(AppState& state, QObject* parent)
    : QObject(parent)
    , m_state(state) {
    m_bindings.watch(m_state.matchConfig, [this] {
        readLogo();
        Q_EMIT changed();
    });
    auto liveScore = m_state.bindableLiveScore();
    m_bindings.watchAll([this] { Q_EMIT changed(); }, m_state.selectedTemplate, liveScore);
}

std::optional<Scoreboard> LiveScoreboard::scoreboard() const {
    const auto& templateID = m_state.selectedTemplate.value();
    const auto& config = m_state.matchConfig.value();
    const auto& score = m_state.liveScore();
    if (!templateID || !config || !score)
        return std::nullopt;
    return Scoreboard{*templateID, *score, *config, m_logo};
}

void LiveScoreboard::readLogo() {
    const auto& config = m_state.matchConfig.value();
    const bool hasLogo = config && config->logoURL && config->logoURL->isLocalFile();
    const QString path = hasLogo ? config->logoURL->toLocalFile() : QString();
    if (path == m_logoPath)
        return;
    m_logoPath = path;
    m_reading.cancel();
    m_logo = {};
    if (path.isEmpty())
        return;
    m_reading.start([path] { return loadPictureFile(path); },
                    [this](const QImage& image) {
                        m_logo = image;
                        Q_EMIT changed();
                    });
}

}
