#include "compatibility/HdrClips.h"

#include <array>
#include <QtEndian>
#include <stdexcept>

namespace pointloom::test {

namespace {

/// The boxes on the way to a sample description (ISO/IEC 14496-12) and the bytes before their children.
struct Level {
    const char* type;
    qsizetype header; // bytes
};
constexpr std::array<Level, 6> wayToDescription = {
    Level{"moov", 8}, {"trak", 8}, {"mdia", 8}, {"minf", 8}, {"stbl", 8}, {"stsd", 16},
};

quint32 sizeAt(const QByteArray& bytes, qsizetype box) {
    return qFromBigEndian<quint32>(bytes.constData() + box);
}

void grow(QByteArray& bytes, qsizetype box, qsizetype by) {
    qToBigEndian<quint32>(sizeAt(bytes, box) + static_cast<quint32>(by), bytes.data() + box);
}

/// The first box of that type among those from `begin` on.
qsizetype findBox(const QByteArray& bytes, qsizetype begin, const char* type) {
    for (qsizetype box = begin; box + 8 <= bytes.size(); box += std::max<quint32>(8, sizeAt(bytes, box)))
        if (bytes.mid(box + 4, 4) == type)
            return box;
    throw std::runtime_error(std::string("no box ") + type);
}

/// The next start code of a byte stream of NAL units (ITU-T H.265, annex B), or the end.
qsizetype nextStart(const QByteArray& stream, qsizetype from) {
    const qsizetype found = stream.indexOf(QByteArray("\0\0\1", 3), from);
    return found < 0 ? stream.size() : found;
}

}

QString withDolbyVision(const ClipFolder& folder, const QString& hevcClip) {
    QByteArray configuration(8 + 24, '\0');
    qToBigEndian<quint32>(static_cast<quint32>(configuration.size()), configuration.data());
    configuration.replace(4, 4, "dvvC");
    // Version 1.0; profile 8, level 3, RPU and base layer present; compatible with HLG.
    configuration.replace(8, 5, QByteArray("\x01\x00\x10\x1d\x40", 5));

    QByteArray bytes = readFile(hevcClip);
    qsizetype box = 0;
    for (const Level& level : wayToDescription) {
        box = findBox(bytes, box, level.type);
        grow(bytes, box, configuration.size());
        box += level.header;
    }
    const qsizetype end = box + sizeAt(bytes, box);
    grow(bytes, box, configuration.size());
    bytes.insert(end, configuration);
    return folder.write(QStringLiteral("dolby-vision.mp4"), bytes);
}

QString withHdr10Plus(const ClipFolder& folder, const QString& hevcClip) {
    // A prefix SEI message of 22 bytes (ITU-T T.35, country and provider codes of ST 2094-40): one window, no
    // curves, and values whose bytes cannot be taken for a start code.
    const QByteArray message = QByteArray::fromHex("000001"
                                                   "4e01"
                                                   "0416"
                                                   "b5003c00010401"
                                                   "411111111111111111111111011110"
                                                   "80");
    const QString plain = folder.make(QStringLiteral("plain.hevc"),
                                      {QStringLiteral("-i"), hevcClip, QStringLiteral("-map"),
                                       QStringLiteral("0:v"), QStringLiteral("-c"), QStringLiteral("copy")});
    const QByteArray stream = readFile(plain);
    QByteArray result;
    for (qsizetype unit = nextStart(stream, 0); unit < stream.size();) {
        const qsizetype following = nextStart(stream, unit + 3);
        const int type = (stream.at(unit + 3) >> 1) & 0x3f;
        constexpr int firstOfParameters = 32; // below it are slices
        if (type < firstOfParameters)
            result += message;
        result += stream.mid(unit, following - unit);
        unit = following;
    }
    const QString marked = folder.write(QStringLiteral("marked.hevc"), result);
    return folder.make(QStringLiteral("hdr10plus.mp4"),
                       {QStringLiteral("-i"), marked, QStringLiteral("-c"), QStringLiteral("copy"),
                        QStringLiteral("-tag:v"), QStringLiteral("hvc1")});
}

}
