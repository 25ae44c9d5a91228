// The files beside a video that belong to the same recording, by the names that cameras give.
#pragma once

#include "media/Recording.h"

#include <QStringList>

namespace pointloom::media {

/// Of the names in a folder those that continue `name` without a gap, itself among them, in the order of the
/// recording. Knows the chapters of action cameras (GH010123, GOPR0123 with GP010123), numbered parts
/// (…_001, … (1), …part1) and counters of clips (DJI_0001, C0001).
QStringList sisterNames(const QString& name, const QStringList& namesInFolder);

/// The recording of `path` and the files beside it that continue it: by name, alike in shape, size and codec,
/// and following on in time where files say when they were made. A camera that counts its clips gives the
/// same names to clips of their own: such files must follow within seconds, or after a file of the largest
/// size that memory cards hold. Reads those files' indexes.
Recording recordingOf(const QString& path);

/// Files that were chosen together, in order: by the number in their names, else by when they were made, else
/// by name. Reads their indexes.
Recording inOrder(const QStringList& paths);

/// Seconds between the end of a file and the start of the next; empty where the files do not say.
std::optional<double> gapBetween(const FileFacts& file, const FileFacts& next);

}
