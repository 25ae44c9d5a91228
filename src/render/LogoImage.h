// Reads the pictures that people bring along: match logos and watermarks.
#pragma once

#include <QImage>
#include <QString>

namespace pointloom {

constexpr qint64 largestLogoPixels = 50'000'000;

/// A PNG or JPEG file of this machine, told by its content, as premultiplied ARGB and turned upright. Null
/// for anything else: other formats, pipes and devices, unreadable or oversized pictures.
QImage loadImage(const QString& path);

}
