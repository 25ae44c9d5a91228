#include "compatibility/Pattern.h"

#include <QFile>

namespace pointloom::test {

namespace {

constexpr Rgb ground = {96, 96, 96};

// From the top left, row by row, the middle left to the scoreboard.
constexpr std::array<QPointF, Pattern::patches> corners = {
    QPointF(0, 0),       QPointF(0.4, 0),  QPointF(0.8, 0),    QPointF(0, 0.375),
    QPointF(0.8, 0.375), QPointF(0, 0.75), QPointF(0.4, 0.75), QPointF(0.8, 0.75),
};
constexpr QSizeF patchSize(0.2, 0.25);

constexpr std::array<Rgb, Pattern::patches> colors = {
    Rgb{196, 44, 52},   Rgb{},
    Rgb{40, 152, 72},   Rgb{},
    Rgb{220, 180, 156}, Rgb{48, 72, 176},
    Rgb{224, 196, 40},  Rgb{128, 128, 128},
};

void fill(QByteArray& picture, QRectF area, const Rgb& color) {
    const QRect pixels(qRound(area.x() * Pattern::size.width()), qRound(area.y() * Pattern::size.height()),
                       qRound(area.width() * Pattern::size.width()),
                       qRound(area.height() * Pattern::size.height()));
    for (int y = pixels.top(); y <= pixels.bottom(); ++y)
        for (int x = pixels.left(); x <= pixels.right(); ++x)
            for (int i = 0; i < 3; ++i)
                picture[(y * Pattern::size.width() + x) * 3 + i] =
                    static_cast<char>(color[static_cast<std::size_t>(i)]);
}

}

QRectF Pattern::areaOf(int patch) {
    return {corners.at(static_cast<std::size_t>(patch)), patchSize};
}

Rgb Pattern::colorOf(int patch, int frame, int frames) {
    if (patch == flash) {
        const bool isLit = frame >= flashFrame(frames) && frame < flashFrame(frames) + frames / 5;
        return isLit ? Rgb{255, 255, 255} : Rgb{0, 0, 0};
    }
    if (patch == counter) {
        const int grey = 30 + 200 * frame / frames;
        return {static_cast<double>(grey), static_cast<double>(grey), static_cast<double>(grey)};
    }
    return colors.at(static_cast<std::size_t>(patch));
}

int Pattern::flashFrame(int frames) {
    return 2 * frames / 5;
}

QString Pattern::write(const ClipFolder& folder, int frames) {
    const QString path = folder.path(QStringLiteral("pattern%1.rgb").arg(frames));
    if (QFile::exists(path))
        return path;
    QByteArray picture(qsizetype{3} * size.width() * size.height(), '\0');
    fill(picture, QRectF(0, 0, 1, 1), ground);
    QByteArray all;
    for (int frame = 0; frame < frames; ++frame) {
        for (int patch = 0; patch < patches; ++patch)
            fill(picture, areaOf(patch), colorOf(patch, frame, frames));
        all += picture;
    }
    return folder.write(QStringLiteral("pattern%1.rgb").arg(frames), all);
}

}
