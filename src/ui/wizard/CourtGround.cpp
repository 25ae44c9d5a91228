#include "ui/wizard/CourtGround.h"

#include "ui/style/Tokens.h"

#include <QImage>
#include <QPainter>

namespace pointloom {

namespace {

const CourtTokens& courtOf(SportID sport) {
    switch (sport) {
    case SportID::tennis:
        return Court::clay;
    case SportID::padel:
        return Court::hard;
    case SportID::volleyball:
        return Court::parquet;
    case SportID::badminton:
        return Court::green;
    case SportID::tableTennis:
        return Court::table;
    case SportID::squash:
        return Court::wood;
    case SportID::pickleball:
        return Court::plum;
    }
    return Court::hard;
}

// A court seen from behind the baseline, in so few pixels that enlarging it blurs it.
QImage smallCourt(const CourtTokens& court) {
    QImage image(48, 24, QImage::Format_RGB32);
    image.fill(court.surround);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPolygonF floor{{QPointF(13, 3), QPointF(35, 3), QPointF(50, 26), QPointF(-2, 26)}};
    QColor line = court.line;
    line.setAlphaF(0.5F);
    painter.setBrush(court.floor);
    painter.setPen(QPen(line, 0.9));
    painter.drawPolygon(floor);
    painter.drawLine(QPointF(9, 9), QPointF(39, 9));
    painter.drawLine(QPointF(24, 9), QPointF(24, 20));
    painter.drawLine(QPointF(2, 20), QPointF(46, 20));
    return image;
}

}

QPixmap courtGround(SportID sport, QSizeF size, double devicePixelRatio) {
    const QSize pixels = (size * devicePixelRatio).toSize().expandedTo({1, 1});
    QImage ground = smallCourt(courtOf(sport));
    while (ground.width() < pixels.width()) // in small steps, which leaves no squares to be seen
        ground = ground.scaled(ground.size() * 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    ground = ground.scaled(pixels, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    ground = ground.copy((ground.width() - pixels.width()) / 2, (ground.height() - pixels.height()) / 2,
                         pixels.width(), pixels.height());
    QPixmap result = QPixmap::fromImage(std::move(ground));
    result.setDevicePixelRatio(devicePixelRatio);
    return result;
}

}
