#include "ui/common/VideoImport.h"

#include "media/VideoReader.h"
#include "ui/common/FaultText.h"

#include <cmath>
#include <QFileInfo>

namespace pointloom {

VideoImport::VideoImport(const UiContext& context, QObject* parent)
    : QObject(parent)
    , m_context(context) {}

void VideoImport::start(const QString& path) {
    m_isAgain = true;
    read(path);
}

void VideoImport::describe(const QString& path) {
    m_isAgain = false;
    read(path);
}

void VideoImport::read(const QString& path) {
    const QString absolutePath = QFileInfo(path).absoluteFilePath();
    m_reading.start([absolutePath] { return open(absolutePath); },
                    [this, absolutePath](const Outcome& outcome) { finish(absolutePath, outcome); });
}

// Opens the decoder too, since some files can be opened but not decoded.
VideoImport::Outcome VideoImport::open(const QString& path) {
    try {
        const auto reader = media::VideoReader::open(path);
        return {true, reader.info().duration, reader.track().uprightSize(), {}, {}};
    } catch (const media::MediaError& error) {
        return {false, 0, {}, error.fault(), QString::fromUtf8(error.what())};
    } catch (const std::exception& error) {
        return {false, 0, {}, media::MediaFault::other, QString::fromUtf8(error.what())};
    }
}

void VideoImport::finish(const QString& path, const Outcome& outcome) {
    if (const auto message = complaint(path, outcome)) {
        Q_EMIT failed(*message);
        return;
    }
    takeIn(path, outcome);
    Q_EMIT imported();
}

std::optional<QString> VideoImport::complaint(const QString& path, const Outcome& outcome) const {
    const QString name = QFileInfo(path).fileName();
    if (!outcome.isReadable)
        return faultText(outcome.fault, name, outcome.reason, m_context.state.language).lines();
    if (!std::isfinite(outcome.duration) || outcome.duration <= 0)
        return name + QStringLiteral(": ") + m_context.text(L10nKey::couldNotReadDuration);
    if (outcome.uprightSize.isEmpty())
        return name + QStringLiteral(": ") + m_context.text(L10nKey::couldNotReadMetadata);
    return std::nullopt;
}

// The URL is set last: its readers find length and size already set. A file that is imported again may be
// another one by now: its readers open it again.
void VideoImport::takeIn(const QString& path, const Outcome& outcome) {
    AppState& state = m_context.state;
    if (m_isAgain && state.videoURL.value() == QUrl::fromLocalFile(path))
        state.videoURL = std::nullopt;
    state.isPlaying = false;
    state.currentTime = 0;
    if (state.trimStart >= outcome.duration)
        state.trimStart = 0;
    if (state.trimEnd.value() && *state.trimEnd.value() > outcome.duration)
        state.trimEnd = std::nullopt;
    state.videoDuration = outcome.duration;
    state.videoWidth = outcome.uprightSize.width();
    state.videoHeight = outcome.uprightSize.height();
    state.videoURL = QUrl::fromLocalFile(path);
}

}
