#include "media/InputFile.h"

#include "media/FFmpeg.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <QFile>
#include <QtEndian>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace pointloom::media {

using Clock = std::chrono::steady_clock;

namespace {

constexpr auto timeToOpen = std::chrono::seconds(10);
constexpr int mostTracks = 64;
constexpr std::int64_t probeSize = 20'000'000;           // bytes
constexpr std::int64_t probeDuration = 5 * AV_TIME_BASE; // microseconds

[[noreturn]] void failToReach(int code) {
    const MediaFault fault = faultOf(code);
    throw MediaError(fault == MediaFault::missing ? "the file does not exist" : errorText(code), fault);
}

void requireReadableFile(const QByteArray& path) {
    struct stat status {};
    if (stat(path.constData(), &status) != 0)
        failToReach(AVERROR(errno));
    if (S_ISDIR(status.st_mode))
        throw MediaError("this is a folder, not a video file", MediaFault::notAFile);
    if (!S_ISREG(status.st_mode))
        throw MediaError("this is not a regular file", MediaFault::notAFile);
    if (status.st_size == 0)
        throw MediaError("the file is empty", MediaFault::empty);
    if (access(path.constData(), R_OK) != 0)
        check(AVERROR(errno), "the file cannot be read");
}

constexpr int mostBoxes = 100'000; // of a long fragmented recording; a cap against crafted files

constexpr std::array<std::string_view, 16> firstBoxTypes = {
    "ftyp", "moov", "mdat", "free", "skip", "wide", "pnot", "uuid",
    "styp", "moof", "sidx", "junk", "pict", "udta", "meta", "prfl",
};

struct Box {
    QByteArray type;
    qint64 size = 0; // with its header; 0 reaches to the end of the file
};

Box readBox(QFile& file) {
    const QByteArray header = file.read(8);
    if (header.size() < 8)
        return {};
    Box box{header.mid(4), qFromBigEndian<quint32>(header.constData())};
    if (box.size == 1) { // a 64-bit size follows
        const QByteArray large = file.read(8);
        box.size = large.size() < 8 ? 0 : qFromBigEndian<qint64>(large.constData());
    }
    return box;
}

/// Calls `consume(type, content, end)` with the bounds of each whole box between `position` and `end`.
template <class Consumer>
void forEachBox(QFile& file, qint64 position, qint64 end, const Consumer& consume) {
    for (int i = 0; i < mostBoxes && position < end && file.seek(position); ++i) {
        const Box box = readBox(file);
        if (box.size < 8 || box.size > end - position)
            return;
        const qint64 content = file.pos();
        position += box.size;
        consume(box.type, content, position);
    }
}

/// ISO/IEC 14496-12, 8.3.2: after version and flags two times of 32 or 64 bits. 0 when it is missing.
quint32 trackNumber(QFile& file, qint64 trackHeader) {
    file.seek(trackHeader);
    const QByteArray header = file.read(24);
    const qsizetype at = header.startsWith('\1') ? 20 : 12;
    return header.size() < at + 4 ? 0 : qFromBigEndian<quint32>(header.constData() + at);
}

struct Movie {
    bool isFragmented = false;
    bool hasNumbers = true; // its tracks
};

Movie readMovie(QFile& file, qint64 content, qint64 end) {
    Movie movie;
    forEachBox(file, content, end, [&](const QByteArray& type, qint64 track, qint64 trackEnd) {
        movie.isFragmented = movie.isFragmented || type == "mvex";
        if (type != "trak")
            return;
        quint32 number = 0;
        forEachBox(file, track, trackEnd, [&](const QByteArray& inner, qint64 header, qint64) {
            if (inner == "tkhd")
                number = trackNumber(file, header);
        });
        movie.hasNumbers = movie.hasNumbers && number != 0 && std::in_range<int>(number);
    });
    return movie;
}

/// True when a run of samples of a fragment (ISO/IEC 14496-12, 8.8.8) declares more of them than the file has
/// bytes: FFmpeg takes memory for each.
bool declaresTooManySamples(QFile& file, qint64 fragment, qint64 end) {
    bool tooMany = false;
    forEachBox(file, fragment, end, [&](const QByteArray& type, qint64 track, qint64 trackEnd) {
        if (type != "traf")
            return;
        forEachBox(file, track, trackEnd, [&](const QByteArray& inner, qint64 run, qint64) {
            file.seek(run + 4); // after version and flags
            const QByteArray count = inner == "trun" ? file.read(4) : QByteArray();
            tooMany =
                tooMany || (count.size() == 4 && qFromBigEndian<quint32>(count.constData()) > file.size());
        });
    });
    return tooMany;
}

struct BoxScan {
    bool looksLikeMovie = false; // begins with a box that MP4 and MOV files begin with
    bool hasIndex = false;       // a movie box ("moov") is there, even if cut off
    bool damaged = false;        // a box has a size that cannot be, or FFmpeg would take too long for it
};

/// Reads only the headers of the boxes (ISO/IEC 14496-12, 4.2), the numbers of the tracks and those of
/// samples. A file that cannot be opened looks like no movie.
BoxScan scanBoxes(const QString& path) {
    BoxScan result;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return result;
    Movie movie;
    qint64 position = 0;
    for (int i = 0; i < mostBoxes && position < file.size() && file.seek(position); ++i) {
        const Box box = readBox(file);
        if (i == 0)
            result.looksLikeMovie =
                std::ranges::find(firstBoxTypes, box.type.toStdString()) != firstBoxTypes.end();
        // After the index of a fragmented movie, trouble with a box is where the recording was cut short.
        const bool isBad = box.size != 0 && box.size < 8;
        result.damaged = isBad && !result.hasIndex;
        if (!result.looksLikeMovie || isBad)
            break;
        const qint64 content = file.pos();
        const qint64 rest = file.size() - position;
        const qint64 end = position + (box.size == 0 ? rest : std::min(rest, box.size));
        if (box.type == "moov") {
            result.hasIndex = true;
            movie = readMovie(file, content, end);
            // FFmpeg 5 counts a billion steps for each run of samples, without asking whether it should stop.
            result.damaged = movie.isFragmented && !movie.hasNumbers;
        } else if (box.type == "moof") {
            result.damaged = declaresTooManySamples(file, content, end);
        }
        if (result.damaged || (result.hasIndex && !movie.isFragmented) || box.size == 0 || box.size > rest)
            break;
        position += box.size;
    }
    return result;
}

void requireMovieBoxes(const QString& path) {
    const BoxScan scan = scanBoxes(path);
    if (!scan.looksLikeMovie)
        throw MediaError("this is not an MP4 or MOV video", MediaFault::notAVideo);
    if (scan.damaged)
        throw MediaError("the file is damaged and cannot be read", MediaFault::damaged);
    if (!scan.hasIndex)
        throw MediaError("the file is cut short or was never finished: its index is missing",
                         MediaFault::cutShort);
}

MediaError openingError(int code) {
    if (code == AVERROR_EXIT)
        return MediaError("the file took too long to open");
    if (code == AVERROR(ENOMEM))
        return MediaError("the file has too many tracks or asks for too much memory");
    if (code == AVERROR_INVALIDDATA)
        return MediaError("the file is damaged and cannot be read", MediaFault::damaged);
    return MediaError(errorText(code), faultOf(code));
}

}

struct InputFile::Deadline {
    Clock::time_point end = Clock::time_point::max();

    static int hasPassed(void* self) { return Clock::now() >= static_cast<Deadline*>(self)->end ? 1 : 0; }
};

InputFile::InputFile()
    : m_deadline(std::make_unique<Deadline>()) {}

InputFile::InputFile(InputFile&& other) noexcept
    : m_context(std::exchange(other.m_context, nullptr))
    , m_deadline(std::move(other.m_deadline)) {}

InputFile& InputFile::operator=(InputFile&& other) noexcept {
    std::swap(m_context, other.m_context);
    std::swap(m_deadline, other.m_deadline);
    return *this;
}

InputFile::~InputFile() {
    avformat_close_input(&m_context);
}

InputFile InputFile::open(const QString& path) {
    prepareFFmpeg();
    const QByteArray localPath = QFile::encodeName(path);
    requireReadableFile(localPath);
    requireMovieBoxes(path);

    InputFile file;
    file.m_context = allocated(avformat_alloc_context());
    file.m_context->interrupt_callback = {&Deadline::hasPassed, file.m_deadline.get()};
    file.m_deadline->end = Clock::now() + timeToOpen;

    Options options;
    options.set("protocol_whitelist", "file");
    options.set("format_whitelist", "mov");
    options.set("enable_drefs", "0");
    options.set("use_absolute_path", "0");
    options.set("max_streams", mostTracks);
    options.set("probesize", probeSize);
    options.set("analyzeduration", probeDuration);
    const QByteArray url = "file:" + localPath; // else a colon in the name would end a protocol's
    const int opened =
        avformat_open_input(&file.m_context, url.constData(), av_find_input_format("mov"), options.pointer());
    if (opened < 0)
        throw openingError(opened);

    AVFormatContext* context = file.m_context;
    std::vector<AVDictionary*> perStream(context->nb_streams, nullptr);
    for (AVDictionary*& entry : perStream)
        av_dict_set_int(&entry, "max_pixels", largestFrameArea, 0);
    const int analysed = avformat_find_stream_info(context, perStream.empty() ? nullptr : perStream.data());
    for (AVDictionary*& entry : perStream)
        av_dict_free(&entry);
    if (analysed < 0)
        throw openingError(analysed);
    file.m_deadline->end = Clock::time_point::max();
    return file;
}

void InputFile::keepOnly(int streamIndex) {
    for (unsigned i = 0; i < m_context->nb_streams; ++i)
        m_context->streams[i]->discard =
            static_cast<int>(i) == streamIndex ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
}

bool canDecode(const AVStream& stream) {
    return avcodec_find_decoder(stream.codecpar->codec_id) != nullptr;
}

}
