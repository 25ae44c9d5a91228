// Import of a video, of one file or several, into the session.
#pragma once

#include "media/MediaError.h"
#include "ui/common/BackgroundTask.h"
#include "ui/common/RecordingOffer.h"
#include "ui/common/UiContext.h"

#include <QObject>
#include <QSize>

namespace pointloom {

class VideoImport : public QObject {
    Q_OBJECT

public:
    /// Questions are asked over the window of `owner`.
    explicit VideoImport(const UiContext& context, QWidget* owner = nullptr);

    /// Reads files that were chosen on a worker thread: several, or one that others beside it continue, are
    /// taken as one recording if the user says so. Where the session misses a file of its recording and
    /// `paths` names it, the recording is put together again. A later start cancels an earlier one without a
    /// signal. Success sets the session's video with its length and upright size, puts the playhead at 0 and
    /// clears trims beyond the new end; failure leaves the session as it was. Where the video before shares
    /// files with the new one, markers, cuts and trims stay with the pictures that they were put at.
    void start(const QStringList& paths);
    void start(const QString& path) { start(QStringList{path}); }

    /// The same for files that are settled.
    void take(const media::Recording& recording);

    /// The same for a video that a document has just put into the session: its readers do not open it again.
    void describe(const media::Recording& recording);

    /// Cancels without a signal.
    void cancel();

    bool isReading() const { return m_looking.isRunning() || m_reading.isRunning(); }

Q_SIGNALS:
    void imported();
    /// `message` is in the session's language and names the file; a second line may hold the reader's error.
    void failed(const QString& message);

private:
    struct Outcome {
        bool isReadable = false;
        double duration = 0; // seconds
        QSize uprightSize;
        media::MediaFault fault = media::MediaFault::other; // why it is unreadable
        QString reason;
        QString file;                                 // that `reason` is about
        std::optional<media::RecordingLayout> before; // of the video before, where they share files
        media::RecordingLayout layout;
    };

    void decide(const QString& chosen, const std::vector<RecordedFile>& files);
    void read(const media::Recording& recording);
    static Outcome open(const media::Recording& recording, const std::optional<media::Recording>& before);
    void finish(const media::Recording& recording, const Outcome& outcome);
    std::optional<QString> complaint(const Outcome& outcome) const;
    void takeIn(const media::Recording& recording, const Outcome& outcome);
    void moveTimes(const media::RecordingLayout& from, const media::RecordingLayout& to, double duration);

    UiContext m_context;
    bool m_isAgain = false;                              // the file may be one that the session has
    BackgroundTask<std::vector<RecordedFile>> m_looking; // for the files of the recording
    BackgroundTask<Outcome> m_reading;
};

}
