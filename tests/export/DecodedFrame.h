// Frames of a file as players show them, decoded by other means than our own.
#pragma once

#include "support/TestClips.h"

#include <QImage>

namespace pointloom::test {

/// The frame shown at `time` (seconds), upright, as ffmpeg decodes it; `more` goes before the output.
inline QImage frameAt(const QString& path, double time, const QStringList& more = {}) {
    const ClipFolder folder;
    const QString picture =
        folder.make(QStringLiteral("frame.png"),
                    QStringList{QStringLiteral("-i"), path, QStringLiteral("-ss"), QString::number(time),
                                QStringLiteral("-frames:v"), QStringLiteral("1")} +
                        more);
    return QImage(picture);
}

}
