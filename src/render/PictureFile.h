// Reads picture files that the user chose: match logos and watermarks.
#pragma once

#include <QImage>
#include <QString>

namespace pointloom {

constexpr qint64 mostPicturePixels = 50'000'000;

/// A PNG or JPEG file of this machine, recognised by its content, as premultiplied ARGB and turned upright.
/// Null for anything else: other formats, pipes and devices, unreadable or oversized pictures.
QImage loadPictureFile(const QString& path);

}
