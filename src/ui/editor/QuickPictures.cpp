#include "ui/editor/QuickPictures.h"

#include "export/preview/QuickCopy.h"
#include "persistence/KeptSegments.h"
#include "ui/common/Preferences.h"

#include <condition_variable>
#include <mutex>
#include <utility>

namespace pointloom {

/// Holds one work while an export needs the processors.
struct QuickPictures::Pause {
    std::mutex mutex;
    std::condition_variable changed;
    bool isOn = false;
    bool isOver = false;

    void set(bool on) {
        const std::scoped_lock lock(mutex);
        isOn = on;
        changed.notify_all();
    }

    void end() {
        const std::scoped_lock lock(mutex);
        isOver = true;
        changed.notify_all();
    }

    /// Waits for the end of a pause. True when the work is over.
    bool wait() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return !isOn || isOver; });
        return isOver;
    }
};

QuickPictures::QuickPictures(const UiContext& context, QObject* parent)
    : QObject(parent)
    , m_context(context)
    , m_isEnabled(Preferences::isSet(context.defaults, Preferences::quickPicturesKey)) {
    m_bindings.watch(context.state.exportStatus, [this] { followExport(); });
}

QuickPictures::~QuickPictures() {
    stop();
}

void QuickPictures::open(const media::Recording& video) {
    m_video = video;
    if (m_isEnabled)
        start();
}

void QuickPictures::close() {
    m_video.reset();
    stop();
}

void QuickPictures::setEnabled(bool enabled) {
    if (std::exchange(m_isEnabled, enabled) == enabled || !m_video)
        return;
    if (enabled) {
        start();
        return;
    }
    stop();
    Q_EMIT found({});
}

void QuickPictures::start() {
    stop();
    m_pause = std::make_shared<Pause>();
    followExport();
    const auto work = [this, video = *m_video, cache = KeptSegments::cache(m_context.defaults),
                       pause = m_pause](BackgroundWorker::Link link) {
        const ExportControl control{
            .isCancelled = [&] { return pause->wait(); },
            .onProgress =
                [&](const ExportProgress& progress) {
                    link.post([this, fraction = progress.fraction] { setProgress(fraction); });
                },
        };
        const std::optional<QString> copy = QuickCopy::find(video, cache, control);
        link.post([this, copy] {
            setProgress(std::nullopt);
            if (copy)
                Q_EMIT found(*copy);
        });
    };
    m_worker.start(work, BackgroundWorker::Priority::low);
}

void QuickPictures::stop() {
    m_worker.cancel();
    if (m_pause)
        m_pause->end();
    setProgress(std::nullopt);
}

void QuickPictures::followExport() {
    using Stage = AppState::ExportStatus::Stage;
    if (m_pause)
        m_pause->set(m_context.state.exportStatus.value().stage == Stage::exporting);
}

void QuickPictures::setProgress(std::optional<double> progress) {
    if (std::exchange(m_progress, progress) != progress)
        Q_EMIT progressChanged();
}

}
