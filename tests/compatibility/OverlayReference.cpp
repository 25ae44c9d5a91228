#include "compatibility/OverlayReference.h"

#include "export/Compositor.h"
#include "export/ExportJobs.h"

#include <cmath>
#include <QPainter>

namespace pointloom::test {

namespace {

constexpr double referenceWhite = 203; // cd/m2, BT.2408

double linearFromSrgb(double value) {
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

/// BT.2100, table 4: the signal for light of a display.
double pqOf(double light) {
    const double power = std::pow(light / 10000, 0.1593017578125);
    return std::pow((0.8359375 + 18.8515625 * power) / (1 + 18.6875 * power), 78.84375);
}

/// BT.2100, table 5, for grey light of a display of 1000 cd/m2.
double hlgOf(double light) {
    const double scene = std::pow(light / 1000, 1 / 1.2);
    return scene <= 1.0 / 12 ? std::sqrt(3 * scene)
                             : 0.17883277 * std::log(12 * scene - 0.28466892) + 0.55991073;
}

double greySignal(int grey, const SourceColor& tags) {
    const double light = referenceWhite * linearFromSrgb(grey / 255.0);
    return 255 * (tags.transfer == "smpte2084" ? pqOf(light) : hlgOf(light));
}

bool isGrey(QRgb color) {
    return qRed(color) == qGreen(color) && qGreen(color) == qBlue(color);
}

}

ExportJob OverlayReference::job(const ClipFolder& folder, const QString& video, ExportFormat format) {
    QImage mark(64, 64, QImage::Format_RGB32);
    mark.fill(Qt::white);
    QPainter painter(&mark);
    painter.fillRect(32, 0, 32, 32, QColor(200, 30, 60));
    painter.fillRect(0, 32, 32, 32, QColor(128, 128, 128));
    painter.fillRect(32, 32, 32, 32, QColor(20, 60, 120));
    painter.end();
    mark.save(folder.path(QStringLiteral("mark.png")));

    ExportJob job = jobFor(video, folder.path(QStringLiteral("out.") + fileExtension(format)));
    job.settings.format = format;
    job.lossless = true;
    job.overlay.scoreboardUserScale = 0.6;
    job.overlay.watermarkPath = folder.path(QStringLiteral("mark.png"));
    return job;
}

OverlayReference::OverlayReference(const ExportJob& job, QSizeF source, QSizeF exported)
    : m_picture(exported.toSize(), QImage::Format_ARGB32_Premultiplied) {
    m_picture.fill(Qt::transparent);
    const bool isOriginal = job.settings.preset == ExportPreset::original;
    QPainter painter(&m_picture);
    Compositor(job, {exported, isOriginal ? exported : source}).draw(painter, job.overlay.initialScore);
}

bool OverlayReference::covers(QPointF point) const {
    const QPoint pixel(static_cast<int>(point.x() * m_picture.width()),
                       static_cast<int>(point.y() * m_picture.height()));
    constexpr int reach = 6;
    for (int y = pixel.y() - reach; y <= pixel.y() + reach; ++y)
        for (int x = pixel.x() - reach; x <= pixel.x() + reach; ++x)
            if (m_picture.valid(x, y) && qAlpha(m_picture.pixel(x, y)) != 0)
                return true;
    return false;
}

std::vector<OverlayReference::Spot> OverlayReference::flatSpots(const SourceColor& tags) const {
    const bool isWide = tags.primaries == "bt2020" || tags.primaries == "smpte432";
    const int reach = std::max(4, m_picture.width() / 90);
    std::vector<Spot> spots;
    for (int y = reach; y < m_picture.height() - reach; y += reach / 2) {
        for (int x = reach; x < m_picture.width() - reach; x += reach / 2) {
            const QRgb color = m_picture.pixel(x, y);
            if (!isFlatAround({x, y}, reach) || (isWide && !isGrey(color)))
                continue;
            const QPointF point((x + 0.5) / m_picture.width(), (y + 0.5) / m_picture.height());
            if (tags.isHdr()) {
                const double signal = greySignal(qRed(color), tags);
                spots.push_back({point, {signal, signal, signal}});
            } else {
                spots.push_back({point,
                                 {static_cast<double>(qRed(color)), static_cast<double>(qGreen(color)),
                                  static_cast<double>(qBlue(color))}});
            }
        }
    }
    return spots;
}

bool OverlayReference::isFlatAround(QPoint pixel, int reach) const {
    const QRgb color = m_picture.pixel(pixel);
    if (qAlpha(color) != 255)
        return false;
    for (int y = pixel.y() - reach; y <= pixel.y() + reach; ++y)
        for (int x = pixel.x() - reach; x <= pixel.x() + reach; ++x)
            if (m_picture.pixel(x, y) != color)
                return false;
    return true;
}

}
