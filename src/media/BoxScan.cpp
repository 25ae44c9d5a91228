#include "media/BoxScan.h"

#include <algorithm>
#include <array>
#include <QFile>
#include <QtEndian>
#include <string_view>

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
        if (!result.looksLikeMovie || result.hasIndex || result.damaged || box.size == 0)
            break;
        if (box.size > file.size() - position)
            break;
        position += box.size;
    }
    return result;
}

}
