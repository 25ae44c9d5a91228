#include "media/VideoEncoder.h"

#include "media/DisplayMatrix.h"
#include "media/HdrSideData.h"

#include <algorithm>
#include <cmath>

namespace pointloom::media {

VideoEncoder::VideoEncoder(OutputFile& file, const VideoSettings& settings)
    : m_file(file)
    , m_settings(settings)
    , m_encoder(settings, file.wantsGlobalHeaders())
    , m_track(file.addTrack(m_encoder.context())) {
    writeOrientation(m_track, settings.orientation, settings.size);
    if (settings.isHdr())
        writeHdrMetadata(m_track, settings.hdr);
    const double ticks = 1 / (settings.frameRate.value() * settings.timeBase.value());
    m_usualDuration = std::max<std::int64_t>(1, std::llround(ticks));
}

void VideoEncoder::write(const VideoFrame& frame) {
    if (QSize(frame.width(), frame.height()) != m_settings.size || frame.format() != m_settings.format)
        throw MediaError("a picture does not have the size or layout that the file was made for");
    const std::int64_t timestamp =
        av_rescale_q(frame.timestamp(), toAv(frame.timeBase()), toAv(m_settings.timeBase));
    if (m_lastTimestamp != AV_NOPTS_VALUE && timestamp <= m_lastTimestamp)
        throw MediaError("the times of the pictures do not rise");
    m_lastTimestamp = timestamp;
    const std::int64_t duration =
        av_rescale_q(frame.duration(), toAv(frame.timeBase()), toAv(m_settings.timeBase));
    if (countsDecodeTimes())
        m_decodeTimes.pictureWentIn(timestamp);
    m_durations[timestamp] = duration > 0 ? duration : m_usualDuration;

    m_encoder.send(frame, timestamp);
    writePackets();
}

void VideoEncoder::finish() {
    m_encoder.finish();
    writePackets();
}

void VideoEncoder::writePackets() {
    while (AVPacket* packet = m_encoder.next()) {
        if (const auto found = m_durations.find(packet->pts); found != m_durations.end()) {
            packet->duration = found->second;
            m_durations.erase(found);
        }
        packet->dts = decodeTimeOf(*packet);
        m_file.write(*packet, m_track, m_encoder.context().time_base);
    }
}

// Those in hardware keep the pictures in their order.
std::int64_t VideoEncoder::decodeTimeOf(const AVPacket& packet) {
    if (m_settings.encoder != EncoderKind::software)
        return packet.pts;
    return countsDecodeTimes() ? m_decodeTimes.next() : packet.dts;
}

bool VideoEncoder::countsDecodeTimes() const {
    return m_settings.encoder == EncoderKind::software && m_settings.codec == VideoCodec::hevc;
}

}
