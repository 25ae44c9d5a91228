// The loudness of a clip's sound, read in the background from its start to its end.
#pragma once

#include "ui/timeline/IdleWorker.h"
#include "ui/timeline/WaveformPyramid.h"

#include <optional>
#include <QByteArray>
#include <QObject>

namespace pointloom {

/// Belongs to the main thread. A file without sound, or one that cannot be read, has no peaks.
class WaveformStore : public QObject {
    Q_OBJECT

public:
    /// Keeps what it makes below `cacheRoot`.
    explicit WaveformStore(const QString& cacheRoot, QThread::Priority priority = QThread::IdlePriority);

    /// Forgets the clip before. Returns at once; what has been read is shown as it grows.
    void open(const QString& path);
    void close();

    const WaveformPyramid& peaks() const { return m_peaks; }

    /// False once it is known that there is nothing to hear.
    bool hasSound() const { return m_hasSound; }

Q_SIGNALS:
    void changed();

private:
    void take(const QByteArray& peaks);
    void finish();

    QString m_cacheRoot;
    QThread::Priority m_priority;
    WaveformPyramid m_peaks;
    bool m_hasSound = true;
    std::optional<IdleWorker> m_worker;
};

}
