#include "ui/common/VideoImport.h"

#include "media/VideoReader.h"
#include "ui/common/FaultText.h"

#include <algorithm>
#include <cmath>
#include <QFileInfo>
#include <QPointer>
#include <QWidget>

namespace pointloom {

namespace {

bool share(const std::vector<QString>& files, const std::vector<QString>& others) {
    return std::ranges::find_first_of(files, others) != files.end();
}

}

VideoImport::VideoImport(const UiContext& context, QWidget* owner)
    : QObject(owner)
    , m_context(context) {}

void VideoImport::start(const QStringList& paths) {
    cancel();
    QStringList chosen;
    for (const QString& path : paths)
        chosen += QFileInfo(path).absoluteFilePath();
    if (m_context.state.absentVideo.value() && !m_context.state.videoURL.value()) {
        if (const auto files = relinked(m_context.state.videoFiles.value(), chosen.front())) {
            take({files->front(), files});
            return;
        }
    }
    const auto look = [chosen] {
        const media::Recording recording =
            chosen.size() == 1 ? media::recordingOf(chosen.front()) : media::inOrder(chosen);
        return recording.isSplit() ? describeFiles(recording) : std::vector<RecordedFile>();
    };
    m_looking.start(
        look, [this, path = chosen.front()](const std::vector<RecordedFile>& files) { decide(path, files); });
}

void VideoImport::decide(const QString& chosen, const std::vector<RecordedFile>& files) {
    const QPointer<VideoImport> self(this); // may end while the question is open
    auto* owner = qobject_cast<QWidget*>(parent());
    const media::Recording recording =
        askForRecording(m_context, owner == nullptr ? nullptr : owner->window(), files, chosen);
    if (self)
        take(recording);
}

void VideoImport::take(const media::Recording& recording) {
    m_isAgain = true;
    read(recording);
}

void VideoImport::describe(const media::Recording& recording) {
    m_isAgain = false;
    read(recording);
}

void VideoImport::cancel() {
    m_looking.cancel();
    m_reading.cancel();
}

void VideoImport::read(const media::Recording& recording) {
    const auto before = m_isAgain ? m_context.state.recording() : std::nullopt;
    m_reading.start([recording, before] { return open(recording, before); },
                    [this, recording](const Outcome& outcome) { finish(recording, outcome); });
}

// Opens the decoder too, since some files can be opened but not decoded.
VideoImport::Outcome VideoImport::open(const media::Recording& recording,
                                       const std::optional<media::Recording>& before) {
    Outcome outcome;
    try {
        if (recording.isSplit()) {
            for (const QString& path : recording.files()) {
                outcome.file = path;
                media::factsOf(path);
            }
        }
        outcome.file = recording.first();
        const auto reader = media::VideoReader::open(recording);
        outcome.isReadable = true;
        outcome.duration = reader.info().duration;
        outcome.uprightSize = reader.track().uprightSize();
        outcome.layout = media::layoutOf(recording);
        if (before && *before != recording && share(before->files(), recording.files()))
            outcome.before = media::layoutOf(*before);
    } catch (const media::MediaError& error) {
        outcome.fault = error.fault();
        outcome.reason = QString::fromUtf8(error.what());
    } catch (const std::exception& error) {
        outcome.reason = QString::fromUtf8(error.what());
    }
    return outcome;
}

void VideoImport::finish(const media::Recording& recording, const Outcome& outcome) {
    if (const auto message = complaint(outcome)) {
        Q_EMIT failed(*message);
        return;
    }
    takeIn(recording, outcome);
    Q_EMIT imported();
}

std::optional<QString> VideoImport::complaint(const Outcome& outcome) const {
    const QString name = QFileInfo(outcome.file).fileName();
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
void VideoImport::takeIn(const media::Recording& recording, const Outcome& outcome) {
    AppState& state = m_context.state;
    if (m_isAgain && state.videoURL.value() == QUrl::fromLocalFile(recording.first()))
        state.videoURL = std::nullopt;
    state.isPlaying = false;
    state.currentTime = 0;
    if (outcome.before)
        moveTimes(*outcome.before, outcome.layout, outcome.duration);
    if (state.trimStart >= outcome.duration)
        state.trimStart = 0;
    if (state.trimEnd.value() && *state.trimEnd.value() > outcome.duration)
        state.trimEnd = std::nullopt;
    state.videoDuration = outcome.duration;
    state.videoWidth = outcome.uprightSize.width();
    state.videoHeight = outcome.uprightSize.height();
    state.setVideo(recording);
}

// Of the markers in a file that is left out the last one stays, since its score holds when the next file
// begins.
void VideoImport::moveTimes(const media::RecordingLayout& from, const media::RecordingLayout& to,
                            double duration) {
    AppState& state = m_context.state;
    const auto moved = [&](double time) { return media::movedTime(time, from, to); };
    std::vector<Marker> markers;
    bool isLastLeftOut = false;
    for (Marker marker : state.markers.value()) {
        const auto [time, isLeftOut] = moved(marker.startTime);
        if (!std::isfinite(time))
            continue;
        if (isLastLeftOut && markers.back().startTime == time)
            markers.pop_back();
        isLastLeftOut = isLeftOut;
        marker.startTime = time;
        markers.push_back(marker);
    }
    std::ranges::stable_sort(markers, {}, &Marker::startTime);
    if (markers != state.markers.value())
        state.replaceMarkers(markers, std::nullopt, L10nKey::undoMoveMarkers, &m_context.undo);

    std::vector<CutZone> cuts;
    for (CutZone cut : state.cuts.value()) {
        cut.start = moved(cut.start).time;
        cut.end = std::min(moved(cut.end).time, duration);
        if (cut.start < cut.end)
            cuts.push_back(cut);
    }
    state.cuts = cuts;
    state.trimStart = moved(state.trimStart).time;
    if (const auto end = state.trimEnd.value())
        state.trimEnd = moved(*end).time;
    if (state.trimEnd.value() && *state.trimEnd.value() <= state.trimStart)
        state.trimEnd = std::nullopt;
}

}
