// Numbers, times, sizes and faults of the export in the user's language.
#pragma once

#include "export/ExportQueue.h"
#include "l10n/Language.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

namespace pointloom::ExportWords {

/// "1,204 of 5,400 frames, 61 fps, 1 min 9 s left". The pace is left out while it is too early to tell.
QString progress(const ExportProgress& progress, double elapsedSeconds, Language language);

/// "Exports left: 2, done at about 18:40", "Paused" and the like: what the whole queue does. Empty for an
/// empty one.
QString queue(const QueueStatus& status, const QDateTime& now, Language language);

/// A line for each kind of damage: "Damaged pictures in the video: 12". Empty without damage.
QStringList damage(const media::Damage& damage, Language language);

/// The damage, and a line for captions that are missing: what the finished video lacks.
QStringList flaws(const ExportReport& report, Language language);

/// "1 h 12 min", "1 min 9 s" or "9 s"; rounded up to whole seconds, and to minutes from an hour on.
QString span(double seconds);

/// "1:05.20" or "1:02:05.20": a place in the clip.
QString place(double seconds);

/// "~/Downloads/match.mp4" for a file in the user's home, otherwise the path as it is.
QString path(const QString& path);

/// "1.2 GB".
QString bytes(std::int64_t bytes, Language language);

/// The reason why an export or a frame of it failed: the usual reasons (the video or the folder is missing,
/// the disk is full, a damaged video) in `language`, followed by the exporter's own message where that tells
/// more; the latter alone for the rest. `writes` is false for a frame, which needs no folder. Reads the disk:
/// for a background thread.
QString fault(const std::exception& error, const ExportJob& job, bool writes, Language language);

}
