// The FFmpeg headers this module uses, owners of the library's objects, and its errors in words. Only this
// module includes it.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavformat/avformat.h>
#include <libavutil/audio_fifo.h>
#include <libavutil/avutil.h>
#include <libavutil/channel_layout.h>
#include <libavutil/frame.h>
#include <libavutil/imgutils.h>
#include <libavutil/mastering_display_metadata.h>
#include <libavutil/mathematics.h>
#include <libavutil/mem.h>
#include <libavutil/opt.h>
#include <libavutil/pixdesc.h>
#include <libswresample/swresample.h>
}

#include "media/FFmpegVersions.h"
#include "media/MediaError.h"
#include "media/VideoFrame.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace pointloom::media {

/// The library's own text for an error code, for example "No space left on device".
std::string errorText(int code);

/// The fault of a file that a code of the system means; `other` for FFmpeg's own codes, which mean one thing
/// while reading and another while writing.
MediaFault faultOf(int code);

/// Throws MediaError("`what`: `errorText`", `faultOf`) when `code` is negative; returns it otherwise.
int check(int code, const char* what);

/// Allows the library single allocations of up to `bytes` until it is destroyed, in the whole process.
class LargerAllocations {
public:
    explicit LargerAllocations(std::size_t bytes);
    ~LargerAllocations();
    LargerAllocations(const LargerAllocations&) = delete;
    LargerAllocations& operator=(const LargerAllocations&) = delete;
};

/// Sets limits for the process: no allocation above 512 MiB, nothing on standard error. Every entry to the
/// library calls it; only the first call has an effect.
void prepareFFmpeg();

// Owners, each of which frees its object with the library's own function.

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

/// A dictionary of options, from which a library removes those that it knows.
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

/// `pointer` itself. Throws MediaError when it is null, which means that memory is short.
template <class Pointer>
Pointer allocated(Pointer pointer) {
    if (!pointer)
        throw MediaError("out of memory");
    return pointer;
}

inline AVFramePtr makeFrame() {
    return allocated(AVFramePtr(av_frame_alloc()));
}

/// A frame of its own that shares the samples of `frame`.
inline AVFramePtr cloned(const AVFrame& frame) {
    return allocated(AVFramePtr(av_frame_clone(&frame)));
}

inline PacketPtr makePacket() {
    return allocated(PacketPtr(av_packet_alloc()));
}

inline AVRational toAv(Rational value) {
    return {value.numerator, value.denominator};
}

inline Rational fromAv(AVRational value) {
    return {value.num, value.den};
}

}
