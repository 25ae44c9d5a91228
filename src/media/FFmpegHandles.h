// Owners of FFmpeg's objects: each frees its object with the library's own function.
#pragma once

#include "media/FFmpeg.h"
#include "media/MediaError.h"
#include "media/VideoFrame.h"

#include <memory>

namespace pointloom::media {

struct FFmpegDeleter {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVFilterGraph* graph) const { avfilter_graph_free(&graph); }
    void operator()(SwrContext* context) const { swr_free(&context); }
    void operator()(AVAudioFifo* fifo) const { av_audio_fifo_free(fifo); }
};

using PacketPtr = std::unique_ptr<AVPacket, FFmpegDeleter>;
using CodecPtr = std::unique_ptr<AVCodecContext, FFmpegDeleter>;
using FilterGraphPtr = std::unique_ptr<AVFilterGraph, FFmpegDeleter>;
using ResamplerPtr = std::unique_ptr<SwrContext, FFmpegDeleter>;
using AudioFifoPtr = std::unique_ptr<AVAudioFifo, FFmpegDeleter>;

/// A dictionary of options; libraries take out what they know.
class Options {
public:
    Options() = default;
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;
    ~Options() { av_dict_free(&m_dictionary); }

    void set(const char* key, const char* value) { av_dict_set(&m_dictionary, key, value, 0); }
    void set(const char* key, std::int64_t value) { av_dict_set_int(&m_dictionary, key, value, 0); }
    AVDictionary** pointer() { return &m_dictionary; }

private:
    AVDictionary* m_dictionary = nullptr;
};

inline AVFramePtr makeFrame() {
    AVFramePtr frame(av_frame_alloc());
    if (!frame)
        throw MediaError("out of memory");
    return frame;
}

inline PacketPtr makePacket() {
    PacketPtr packet(av_packet_alloc());
    if (!packet)
        throw MediaError("out of memory");
    return packet;
}

}
