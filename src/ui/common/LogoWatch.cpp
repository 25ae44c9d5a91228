#include "ui/common/LogoWatch.h"

#include "render/PictureFile.h"

namespace pointloom {

LogoWatch::LogoWatch(AppState& state, QObject* parent)
    : QObject(parent)
    , m_state(state) {
    m_bindings.watch(m_state.matchConfig, [this] { follow(); });
}

void LogoWatch::follow() {
    const auto& config = m_state.matchConfig.value();
    const bool hasLogo = config && config->logoURL && config->logoURL->isLocalFile();
    const QString path = hasLogo ? config->logoURL->toLocalFile() : QString();
    if (path == m_path)
        return;
    m_path = path;
    m_reading.cancel();
    if (!m_image.isNull()) {
        m_image = {};
        Q_EMIT changed();
    }
    if (path.isEmpty())
        return;
    m_reading.start([path] { return loadPictureFile(path); },
                    [this](const QImage& image) {
                        m_image = image;
                        Q_EMIT changed();
                    });
}

}
