#include "media/OutputFile.h"

#include "media/FFmpeg.h"
#include "media/TextTrack.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <QFile>

namespace pointloom::media {

namespace {

/// The clock of the movie, in which edit lists give late starts of tracks: a multiple of the video's keeps
/// their times exact, and one no coarser than a sample of sound keeps the sound's place.
std::int64_t movieTimescale(Rational videoTimeBase) {
    constexpr std::int64_t finest = 44100;
    const std::int64_t denominator = videoTimeBase.denominator;
    return denominator >= finest ? denominator : (finest + denominator - 1) / denominator * denominator;
}

/// Rounded up: a player that seeks to a chapter must not show the frame before it.
std::int64_t ticksAtOrAfter(double seconds, int ticksPerSecond) {
    constexpr double rounding = 1e-4; // ticks
    return std::llround(std::ceil(seconds * ticksPerSecond - rounding));
}

}

OutputFile::OutputFile(const QString& path, const char* container)
    : m_path(path) {
    prepareFFmpeg();
    const QByteArray url =
        "file:" + QFile::encodeName(path); // else a colon in the name would end a protocol's
    check(avformat_alloc_output_context2(&m_context, nullptr, container, url.constData()),
          "the output file could not be set up");
    const int opened = avio_open(&m_context->pb, url.constData(), AVIO_FLAG_WRITE);
    if (opened < 0) {
        avformat_free_context(m_context);
        check(opened, "the output file could not be created");
    }
}

OutputFile::~OutputFile() {
    avio_closep(&m_context->pb);
    avformat_free_context(m_context);
}

bool OutputFile::wantsGlobalHeaders() const {
    return (m_context->oformat->flags & AVFMT_GLOBALHEADER) != 0;
}

AVStream& OutputFile::addTrack(const AVCodecContext& encoder) {
    AVStream* track = allocated(avformat_new_stream(m_context, nullptr));
    check(avcodec_parameters_from_context(track->codecpar, &encoder), "the output track could not be set up");
    track->time_base = encoder.time_base;
    track->avg_frame_rate = encoder.framerate;
    track->sample_aspect_ratio = encoder.sample_aspect_ratio;
    return *track;
}

AVStream& OutputFile::addTrack(const AVStream& source) {
    AVStream* track = allocated(avformat_new_stream(m_context, nullptr));
    check(avcodec_parameters_copy(track->codecpar, source.codecpar), "the output track could not be set up");
    if (!copySideData(*track, source))
        throw MediaError("out of memory");
    track->time_base = source.time_base;
    track->avg_frame_rate = source.avg_frame_rate;
    track->sample_aspect_ratio = source.sample_aspect_ratio;
    return *track;
}

void OutputFile::addTexts(const FileTexts& texts) {
    for (const Chapter& chapter : texts.chapters)
        addChapter(chapter);
    if (!texts.comment.isEmpty())
        check(av_dict_set(&m_context->metadata, "comment", texts.comment.toUtf8().constData(), 0),
              "out of memory");
    if (texts.captions.empty())
        return;
    m_captions = texts.captions;
    m_textPacket = makePacket();
    m_textTrack = allocated(avformat_new_stream(m_context, nullptr));
    describeTextTrack(*m_textTrack);
}

// FFmpeg has no public function that adds one: its list of chapters is filled by hand.
void OutputFile::addChapter(const Chapter& chapter) {
    constexpr int ticks = 1000; // a second
    auto* added = static_cast<AVChapter*>(allocated(av_mallocz(sizeof(AVChapter))));
    added->id = m_context->nb_chapters;
    added->time_base = {1, ticks};
    added->start = ticksAtOrAfter(chapter.start, ticks);
    added->end = ticksAtOrAfter(chapter.end, ticks);
    av_dict_set(&added->metadata, "title", chapter.title.toUtf8().constData(), 0);
    int count = static_cast<int>(m_context->nb_chapters);
    const int result = av_dynarray_add_nofree(&m_context->chapters, &count, added);
    if (result < 0) {
        av_dict_free(&added->metadata);
        av_free(added);
        check(result, "a chapter could not be added");
    }
    m_context->nb_chapters = static_cast<unsigned>(count);
}

void OutputFile::writeHeader(Rational videoTimeBase) {
    Options options;
    // While one track has no packets, because its sound is over or its encoder looks ahead, the other's are
    // held back: by default ten seconds of them, which are 0.7 GB of ProRes in 4K.
    m_context->max_interleave_delta = 2 * AV_TIME_BASE;
    options.set("movflags", "+faststart");
    options.set("video_track_timescale", videoTimeBase.denominator);
    options.set("movie_timescale", movieTimescale(videoTimeBase));
    const int written = avformat_write_header(m_context, options.pointer());
    if (written < 0)
        fail(written);
}

void OutputFile::write(AVPacket& packet, const AVStream& track, AVRational timeBase) {
    writeCaptionsUntil(static_cast<double>(packet.dts) * av_q2d(timeBase));
    writePacket(packet, track, timeBase);
}

void OutputFile::writeCaptionsUntil(double time) {
    while (m_writtenCaptions < m_captions.size() && m_captions[m_writtenCaptions].start <= time) {
        fillPacket(*m_textPacket, m_captions[m_writtenCaptions++]);
        writePacket(*m_textPacket, *m_textTrack, {1, captionTicks});
    }
}

void OutputFile::writePacket(AVPacket& packet, const AVStream& track, AVRational timeBase) {
    packet.stream_index = track.index;
    av_packet_rescale_ts(&packet, timeBase, track.time_base);
    const int written = av_interleaved_write_frame(m_context, &packet);
    if (written < 0)
        fail(written);
    if (m_context->pb->error < 0)
        fail(m_context->pb->error);
}

void OutputFile::finish() {
    writeCaptionsUntil(std::numeric_limits<double>::infinity());
    const int written = av_write_trailer(m_context);
    const int earlier = m_context->pb->error;
    const int closed = avio_closep(&m_context->pb);
    for (const int code : {earlier, written, closed})
        if (code < 0)
            fail(code);
    if (m_textTrack != nullptr)
        switchOffTextTracks(m_path);
}

void OutputFile::fail(int code) const {
    // The device's own error is more precise than the container's.
    if (m_context->pb != nullptr && m_context->pb->error < 0)
        code = m_context->pb->error;
    throw MediaError("the file could not be written: " + errorText(code), faultOf(code));
}

}
