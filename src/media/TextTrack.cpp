#include "media/TextTrack.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <QFile>
#include <QtEndian>

namespace pointloom::media {

namespace {

// TextSampleEntry of TS 26.245, 5.16, from its display flags on: white text centred at the lower edge.
constexpr std::uint8_t sampleEntry[] = {
    0,   0,   0,   0,                       // display flags
    1,   255,                               // centred, at the bottom
    0,   0,   0,   0,                       // background, transparent
    0,   0,   0,   0,   0,   0,   0,   0,   // text box: all of the track
    0,   0,   0,   0,   0,   1,   0,   16,  // style: of all letters, font 1, plain, 16 points
    255, 255, 255, 255,                     // white
    0,   0,   0,   18,  'f', 't', 'a', 'b', // font table
    0,   1,   0,   1,   5,                  // one font, 1, of a name of five letters
    'A', 'r', 'i', 'a', 'l',
};

struct Box {
    QByteArray type;
    qint64 begin = 0; // of its content
    qint64 end = 0;
};

[[noreturn]] void failFor(const QFile& file) {
    throw MediaError("the text track could not be set up: " + file.errorString().toStdString());
}

QByteArray bytesAt(QFile& file, qint64 place, qint64 count) {
    QByteArray bytes;
    if (file.seek(place))
        bytes = file.read(count);
    if (bytes.size() != count)
        failFor(file);
    return bytes;
}

std::vector<Box> boxesIn(QFile& file, qint64 begin, qint64 end) {
    constexpr qint64 shortHeader = 8;
    constexpr qint64 longHeader = 16;
    std::vector<Box> boxes;
    while (begin + shortHeader <= end) {
        const QByteArray header = bytesAt(file, begin, shortHeader);
        const auto size = qFromBigEndian<quint32>(header.constData());
        const bool isLong = size == 1;
        const qint64 length =
            isLong ? qFromBigEndian<qint64>(bytesAt(file, begin + shortHeader, shortHeader).constData())
                   : size;
        if (length < (isLong ? longHeader : shortHeader))
            break; // up to the end of the file
        boxes.push_back({header.sliced(4), begin + (isLong ? longHeader : shortHeader), begin + length});
        begin += length;
    }
    return boxes;
}

std::vector<Box> boxesIn(QFile& file, const Box& box) {
    return boxesIn(file, box.begin, box.end);
}

const Box* find(const std::vector<Box>& boxes, const char* type) {
    const auto found = std::ranges::find(boxes, QByteArray(type), &Box::type);
    return found == boxes.end() ? nullptr : &*found;
}

bool isText(QFile& file, const Box& media) {
    constexpr qint64 handlerPlace = 8; // after version, flags and a reserved field
    const auto inside = boxesIn(file, media);
    const Box* handler = find(inside, "hdlr");
    return handler && bytesAt(file, handler->begin + handlerPlace, 4) == "sbtl";
}

}

void describeTextTrack(AVStream& track) {
    AVCodecParameters& parameters = *track.codecpar;
    parameters.codec_type = AVMEDIA_TYPE_SUBTITLE;
    parameters.codec_id = AV_CODEC_ID_MOV_TEXT;
    parameters.codec_tag = MKTAG('t', 'x', '3', 'g');
    parameters.extradata =
        static_cast<std::uint8_t*>(allocated(av_mallocz(sizeof(sampleEntry) + AV_INPUT_BUFFER_PADDING_SIZE)));
    parameters.extradata_size = sizeof(sampleEntry);
    std::ranges::copy(sampleEntry, parameters.extradata);
    track.time_base = {1, captionTicks};
    check(av_dict_set(&track.metadata, "handler_name", "Score", 0), "out of memory");
}

void fillPacket(AVPacket& packet, const Caption& caption) {
    constexpr qsizetype longest = 1000; // letters; names have no limit
    const QByteArray text = caption.text.left(longest).toUtf8();
    check(av_new_packet(&packet, static_cast<int>(text.size()) + 2), "out of memory");
    qToBigEndian(static_cast<quint16>(text.size()), packet.data);
    std::memcpy(packet.data + 2, text.constData(), static_cast<std::size_t>(text.size()));
    packet.pts = packet.dts = std::llround(caption.start * captionTicks);
    packet.duration = std::llround(caption.end * captionTicks) - packet.pts;
    packet.flags |= AV_PKT_FLAG_KEY;
}

void switchOffTextTracks(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite))
        failFor(file);
    const auto all = boxesIn(file, 0, file.size());
    const Box* movie = find(all, "moov");
    if (!movie)
        failFor(file);
    for (const Box& track : boxesIn(file, *movie)) {
        if (track.type != "trak")
            continue;
        const auto inside = boxesIn(file, track);
        const Box* header = find(inside, "tkhd");
        const Box* media = find(inside, "mdia");
        if (!header || !media || !isText(file, *media))
            continue;
        constexpr qint64 flagsPlace = 3; // the lowest eight of 24, after the version
        constexpr char enabled = 1;      // ISO/IEC 14496-12, 8.3.2
        QByteArray flags = bytesAt(file, header->begin + flagsPlace, 1);
        flags[0] = static_cast<char>(flags[0] & ~enabled);
        if (!file.seek(header->begin + flagsPlace) || file.write(flags) != 1)
            failFor(file);
    }
    if (!file.flush())
        failFor(file);
}

}
