// The loudness of a clip's sound and its loud moments, read in the background from its start to its end.
#pragma once

#include "media/LoudMoments.h"
#include "media/Recording.h"
#include "ui/common/BackgroundTask.h"

#include <array>
#include <cstdint>
#include <QByteArray>
#include <QObject>
#include <span>
#include <vector>

namespace pointloom {

/// Peaks from 0, silence, to 255, full level. Each level above the first has one peak for several of the
/// level below, so that a question about any range is answered fast. Two hours take about two megabytes.
class WaveformPyramid {
public:
    static constexpr int peaksPerSecond = 210; // divides the sample rate

    void append(std::span<const std::uint8_t> peaks);
    void clear();

    std::size_t size() const { return m_levels[0].size(); }

    /// The loudest peak of all.
    std::uint8_t loudest() const { return m_loudest; }

    /// The loudest peak between two times in seconds; 0 when there is none.
    std::uint8_t loudest(double from, double to) const;

private:
    static constexpr std::size_t childrenOfPeak = 8;
    static constexpr std::size_t levelCount = 6;

    std::array<std::vector<std::uint8_t>, levelCount> m_levels;
    std::uint8_t m_loudest = 0;
};

/// Some of what is read, in order.
struct SoundPiece {
    QByteArray peaks; // one byte each
    std::vector<media::LoudMoment> moments;
};

/// Used on the main thread. A file without sound, or one that cannot be read, has no peaks and no moments.
class WaveformStore : public QObject {
    Q_OBJECT

public:
    /// What was read is cached on disk below `cacheRoot`.
    explicit WaveformStore(const QString& cacheRoot);

    /// Replaces the clip. Returns at once; peaks and moments are added while they are read.
    void open(const media::Recording& recording);
    void close();

    const WaveformPyramid& peaks() const { return m_peaks; }
    const std::vector<media::LoudMoment>& moments() const { return m_moments; }

    /// Seconds, in order; those of `moments`.
    const std::vector<double>& rallyEnds() const { return m_rallyEnds; }

    /// False once the clip is known to have no sound.
    bool hasSound() const { return m_hasSound; }

Q_SIGNALS:
    void changed();

private:
    void take(const SoundPiece& piece);
    void finish();

    QString m_cacheRoot;
    WaveformPyramid m_peaks;
    std::vector<media::LoudMoment> m_moments;
    std::vector<double> m_rallyEnds;
    bool m_hasSound = true;
    BackgroundWorker m_worker;
};

}
