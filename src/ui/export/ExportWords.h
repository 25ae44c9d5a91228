// Numbers, times and sizes of the export in a person's own language.
#pragma once

#include "export/ExportJob.h"
#include "l10n/Language.h"

#include <QString>
#include <QStringList>

namespace pointloom::ExportWords {

L10nKey nameOf(WatermarkCorner corner);

/// One line that says what a format or a size is good for.
L10nKey useOf(ExportFormat format);
L10nKey useOf(ExportPreset preset);

/// "1,204 of 5,400 frames, 61 fps, 1 min 9 s left". The pace is left out while it is too early to tell.
QString progress(const ExportProgress& progress, double elapsedSeconds, Language language);

/// A line for each kind of damage: "Damaged pictures in the video: 12". Empty without damage.
QStringList damage(const media::Damage& damage, Language language);

/// "1 h 12 min", "1 min 9 s" or "9 s"; rounded up to whole seconds, and to minutes from an hour on.
QString span(double seconds);

/// "1:05.20" or "1:02:05.20": a place in the clip.
QString place(double seconds);

/// "1.2 GB".
QString bytes(std::int64_t bytes, Language language);

}
