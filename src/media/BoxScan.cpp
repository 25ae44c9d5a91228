#include "media/BoxScan.h"

#include <algorithm>
#include <array>
#include <QFile>
#include <QtEndian>
#include <string_view>
#include <utility>

namespace pointloom::media {

namespace {

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

/// FFmpeg 5 counts a billion steps for each run of samples in a fragment, without asking whether it should
/// stop, when any track has no number or one above 2^31.
bool wouldHang(QFile& file, qint64 movie, qint64 end) {
    bool isFragmented = false;
    bool areNumbered = true;
    forEachBox(file, movie, end, [&](const QByteArray& type, qint64 content, qint64 boxEnd) {
        isFragmented = isFragmented || type == "mvex";
        if (type != "trak")
            return;
        quint32 number = 0;
        forEachBox(file, content, boxEnd, [&](const QByteArray& inner, qint64 innerContent, qint64) {
            if (inner == "tkhd")
                number = trackNumber(file, innerContent);
        });
        areNumbered = areNumbered && number != 0 && std::in_range<int>(number);
    });
    return isFragmented && !areNumbered;
}

}

BoxScan scanBoxes(const QString& path) {
    BoxScan result;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return result;
    qint64 position = 0;
    for (int i = 0; i < mostBoxes && position < file.size(); ++i) {
        if (!file.seek(position))
            break;
        const Box box = readBox(file);
        if (i == 0)
            result.looksLikeMovie =
                std::ranges::find(firstBoxTypes, box.type.toStdString()) != firstBoxTypes.end();
        result.hasIndex = box.type == "moov";
        result.damaged = box.size != 0 && box.size < 8;
        if (result.hasIndex && !result.damaged) {
            const qint64 rest = file.size() - position;
            const qint64 end = position + (box.size == 0 ? rest : std::min(rest, box.size));
            result.damaged = wouldHang(file, file.pos(), end);
        }
        if (!result.looksLikeMovie || result.hasIndex || result.damaged || box.size == 0)
            break;
        if (box.size > file.size() - position)
            break;
        position += box.size;
    }
    return result;
}

}
