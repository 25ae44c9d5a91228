// Writes a picture as a PNG file.
#pragma once

#include <QImage>
#include <QString>

namespace pointloom {

/// Replaces the file in one step. Throws DocumentError.
void writePng(const QImage& picture, const QString& path);

}
