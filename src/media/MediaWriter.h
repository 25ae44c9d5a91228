// Encodes frames and sound into a new MP4 or MOV file.
#pragma once

#include "media/AudioReader.h"
#include "media/EncodingChoices.h"
#include "media/FrameFormat.h"
#include "media/MediaError.h"
#include "media/VideoFrame.h"

#include <memory>
#include <optional>
#include <QSize>
#include <QString>
#include <string>
#include <vector>

namespace pointloom::media {

struct Chapter {
    double start = 0; // seconds from the start of the file
    double end = 0;
    QString title;

    bool operator==(const Chapter&) const = default;
};

/// A text and how long it is shown, in seconds from the start of the file.
struct Caption {
    double start = 0;
    double end = 0;
    QString text;

    bool operator==(const Caption&) const = default;
};

/// What a file has besides frames and sound.
struct FileTexts {
    std::vector<Chapter> chapters{};
    std::vector<Caption> captions{}; // a track that players switch on; one after the other, without gaps
    QString comment{};
};

struct VideoSettings {
    VideoCodec codec = VideoCodec::h264;
    EncoderKind encoder = EncoderKind::software;
    EncodingQuality quality = EncodingQuality::standard;
    QSize size;              // as stored, both sides even
    FrameFormat format;      // one of `encodableFormat`
    HdrMetadata hdr{};       // kept when the format is HDR
    Orientation orientation; // by which players must turn the stored frames
    Rational sampleAspectRatio{1, 1};
    Rational timeBase{1, 90000}; // of the frames' timestamps; kept exactly in the file
    Rational frameRate{30, 1};   // nominal, for rate control
    std::string encoderPreset;   // of x264 or x265; empty for the encoder's default
    int encodersAtOnce = 1;      // on this machine, sharing its processors
    bool joinable = false;       // without headers that depend on the machine, so that segments can be joined
    bool lossless = false;       // x264 and x265 only; for tests that read pixels back

    bool isHdr() const { return format.color.transfer != Transfer::sdr; }
};

/// The encoder does not exist on this machine, or refuses its settings.
class EncoderError : public MediaError {
public:
    using MediaError::MediaError;
};

/// The layout nearest to `source` that the codec is given: 4:2:0 of 8 bits for H.264 (HDR becomes BT.709),
/// 4:2:0 of 8 or 10 bits for HEVC, 4:2:2 of 10 bits in limited range for ProRes.
FrameFormat encodableFormat(VideoCodec codec, const FrameFormat& source);

/// MP4 for H.264 (avc1) and HEVC (hvc1), QuickTime for ProRes 422 (apcs, apcn, apch); the index is at the
/// front.
class MediaWriter {
public:
    /// Creates or replaces the file. Throws MediaError, for the video encoder EncoderError.
    static MediaWriter create(const QString& path, const VideoSettings& video, bool withAudio,
                              const FileTexts& texts = {});

    ~MediaWriter(); // an unfinished file is closed and left to its owner to remove

    bool hasAudio() const; // false also when the sound encoder could not be opened

    /// Appends a frame; its timestamp counts ticks of `VideoSettings::timeBase` from the start of the new
    /// file and rises strictly. Throws MediaError.
    void writeVideo(const VideoFrame& frame);

    /// Appends sound. False when the encoder refused it. Throws MediaError when the file cannot be written.
    [[nodiscard]] bool writeAudio(const AudioFrame& frame);

    /// Flushes the encoders and writes the index. Throws MediaError.
    void finish();

private:
    struct State;
    explicit MediaWriter(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

/// Encodes the sound of an export alone, to be joined with the video later.
class SoundWriter {
public:
    /// Creates or replaces the file. `comment` is kept in it. Throws MediaError.
    SoundWriter(const QString& path, const QString& comment);
    ~SoundWriter(); // an unfinished file is closed and left to its owner to remove

    SoundWriter(const SoundWriter&) = delete;
    SoundWriter& operator=(const SoundWriter&) = delete;

    /// Appends sound as MediaWriter does; sound that the encoder refuses is left out. Throws MediaError.
    void write(const AudioFrame& frame);

    /// Flushes the encoder and writes the index. Throws MediaError.
    void finish();

private:
    struct State;
    std::unique_ptr<State> m_state;
};

}
