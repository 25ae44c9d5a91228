// Import of a video file into the session.
#pragma once

#include "media/MediaError.h"
#include "ui/common/BackgroundTask.h"
#include "ui/common/UiContext.h"

#include <QObject>
#include <QSize>

namespace pointloom {

class VideoImport : public QObject {
    Q_OBJECT

public:
    explicit VideoImport(const UiContext& context, QObject* parent = nullptr);

    /// Reads the file on a worker thread. A later start cancels an earlier one without a signal. Success sets
    /// the session's video with its length and upright size, puts the playhead at 0 and clears trims beyond
    /// the new end; failure leaves the session as it was.
    void start(const QString& path);

    /// The same for a video that a document has just put into the session: its readers do not open it again.
    void describe(const QString& path);

    /// Cancels without a signal.
    void cancel() { m_reading.cancel(); }

    bool isReading() const { return m_reading.isRunning(); }

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
    };

    void read(const QString& path);
    static Outcome open(const QString& path);
    void finish(const QString& path, const Outcome& outcome);
    std::optional<QString> complaint(const QString& path, const Outcome& outcome) const;
    void takeIn(const QString& path, const Outcome& outcome);

    UiContext m_context;
    bool m_isAgain = false; // the file may be one that the session has
    BackgroundTask<Outcome> m_reading;
};

}
