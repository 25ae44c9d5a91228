#include "media/InputFile.h"

#include "media/BoxScan.h"
#include "media/FFmpegError.h"
#include "media/FFmpegHandles.h"

#include <chrono>
#include <QFile>
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
    file.m_context = avformat_alloc_context();
    if (file.m_context == nullptr)
        throw MediaError("out of memory");
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
    const QByteArray url = "file:" + localPath; // a colon in the name must not be taken for a protocol
    const int opened =
        avformat_open_input(&file.m_context, url.constData(), av_find_input_format("mov"), options.pointer());
    if (opened < 0)
        throw openingError(opened);

    AVFormatContext* context = file.m_context;
    std::vector<AVDictionary*> perStream(context->nb_streams, nullptr);
    for (AVDictionary*& entry : perStream)
        av_dict_set_int(&entry, "max_pixels", largestPictureArea, 0);
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
