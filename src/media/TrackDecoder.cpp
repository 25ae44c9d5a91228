#include "media/TrackDecoder.h"

#include "media/FFmpeg.h"
#include "media/InputFile.h"

#include <algorithm>
#include <QtEndian>
#include <utility>

namespace pointloom::media {

namespace {

// In a file that is cut short reading fails once for every packet that is missing.
constexpr int mostFailuresInARow = 1000;

}

TrackDecoder::TrackDecoder(AVFormatContext* context, int streamIndex, int threads, Sound sound)
    : m_context(context)
    , m_streamIndex(streamIndex)
    , m_packet(makePacket()) {
    const AVStream* stream = context->streams[streamIndex];
    const AVCodec* decoder = avcodec_find_decoder(stream->codecpar->codec_id);
    if (decoder == nullptr)
        throw MediaError(std::string("there is no decoder for ") +
                         avcodec_get_name(stream->codecpar->codec_id));
    m_codec.reset(allocated(avcodec_alloc_context3(decoder)));
    check(avcodec_parameters_to_context(m_codec.get(), stream->codecpar), "the decoder could not be set up");
    m_codec->pkt_timebase = stream->time_base;
    m_codec->thread_count = threads;
    m_codec->max_pixels = largestFrameArea;
    if (sound == Sound::all)
        m_codec->flags2 |= AV_CODEC_FLAG2_SKIP_MANUAL;
    check(avcodec_open2(m_codec.get(), decoder, nullptr), "the decoder could not be opened");
}

AVFramePtr TrackDecoder::next(std::int64_t packetLimit) {
    const std::int64_t lastPacket = packetLimit > std::numeric_limits<std::int64_t>::max() - m_packetsRead
                                        ? packetLimit
                                        : m_packetsRead + packetLimit;
    AVFramePtr frame = makeFrame();
    while (!m_atEnd) {
        const int result = avcodec_receive_frame(m_codec.get(), frame.get());
        if (result >= 0) {
            m_failuresInARow = 0;
            if ((frame->flags & AV_FRAME_FLAG_CORRUPT) != 0 || frame->decode_error_flags != 0)
                ++m_damage.faultyFrames;
            return frame;
        }
        if (result == AVERROR(EAGAIN) && !m_draining) {
            if (m_packetsRead >= lastPacket)
                return nullptr;
            feed();
            continue;
        }
        if (result == AVERROR_EOF || result == AVERROR(EAGAIN) || ++m_failuresInARow > mostFailuresInARow) {
            m_atEnd = true;
            break;
        }
        ++m_damage.lostFrames;
    }
    return nullptr;
}

int TrackDecoder::hiddenAtEnd(const AVFrame& frame) {
    constexpr std::size_t place = 4; // in bytes, after the samples that are hidden at the start
    const AVFrameSideData* hidden = av_frame_get_side_data(&frame, AV_FRAME_DATA_SKIP_SAMPLES);
    if (hidden == nullptr || hidden->size < place + sizeof(quint32))
        return 0;
    return static_cast<int>(std::min<quint32>(qFromLittleEndian<quint32>(hidden->data + place),
                                              static_cast<quint32>(frame.nb_samples)));
}

void TrackDecoder::feed() {
    const int read = av_read_frame(m_context, m_packet.get());
    if (read == AVERROR_EOF || read == AVERROR_EXIT) {
        beginDraining();
        return;
    }
    if (read < 0) {
        if (++m_failedReadsInARow > mostFailuresInARow)
            beginDraining();
        return;
    }
    m_damage.lostFrames += std::exchange(m_failedReadsInARow, 0);
    if (m_packet->stream_index == m_streamIndex) {
        ++m_packetsRead;
        if (avcodec_send_packet(m_codec.get(), m_packet.get()) < 0)
            ++m_damage.lostFrames;
    }
    av_packet_unref(m_packet.get());
}

void TrackDecoder::beginDraining() {
    m_draining = true;
    m_failuresInARow = 0;
    avcodec_send_packet(m_codec.get(), nullptr);
}

void TrackDecoder::flush() {
    avcodec_flush_buffers(m_codec.get());
    m_damage = {};
    m_failedReadsInARow = 0;
    m_failuresInARow = 0;
    m_draining = false;
    m_atEnd = false;
}

}
