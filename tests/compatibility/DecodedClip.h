// A clip as FFmpeg's own tools decode it.
#pragma once

#include "compatibility/Pattern.h"
#include "compatibility/Source.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <QPointF>
#include <vector>

namespace pointloom::test {

class DecodedClip {
public:
    /// Reads all of it. Large pictures are thinned out to every fourth sample.
    explicit DecodedClip(const QString& path);

    const nlohmann::json& video() const { return m_video; } // as ffprobe shows the track
    const nlohmann::json& audio() const { return m_audio; } // null without sound
    const nlohmann::json& firstFrame() const { return m_firstFrame; }
    const std::vector<double>& times() const { return m_times; } // of the frames, seconds
    double pictureEnd() const;                                   // seconds, by the track's own length
    Turn turn() const { return m_turn; }

    /// The track's tags; missing ones are empty.
    SourceColor color() const;

    /// The picture as players show it: turned, with square pixels.
    QSizeF shownSize() const;

    /// Mean colour of a few samples around a point of the shown picture (fractions), converted by `color`.
    Rgb colorAt(int frame, QPointF shown, const SourceColor& color) const;

    /// Mean difference between neighbouring lines there, 0..255: high when two fields are woven together.
    double combAt(int frame, QPointF shown) const;

    /// The place in the stored picture of a point of the shown one; fractions.
    QPointF storedPoint(QPointF shown) const;
    QPointF shownPoint(QPointF stored) const;

    /// The start of the beep; seconds. Empty when there is none.
    std::optional<double> beepTime() const { return m_beepTime; }
    double soundEnd() const { return m_soundEnd; }

private:
    void probe(const QString& path);
    void decodePictures(const QString& path);
    void decodeSound(const QString& path);
    double sampleAt(int frame, std::size_t plane, QPointF stored, int dx, int dy) const;

    nlohmann::json m_video;
    nlohmann::json m_audio;
    nlohmann::json m_firstFrame;
    std::vector<double> m_times;
    Turn m_turn = upright;

    QByteArray m_samples; // of all frames
    qsizetype m_frameBytes = 0;
    std::array<QSize, 3> m_planeSizes;
    int m_bitDepth = 8;
    bool m_isRgb = false;

    std::optional<double> m_beepTime;
    double m_soundEnd = 0;
};

}
