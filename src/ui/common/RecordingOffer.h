// Files that are chosen or dropped, as one recording: the question before several are taken together.
#pragma once

#include "media/SisterFiles.h"
#include "ui/common/UiContext.h"

#include <QStringList>

namespace pointloom {

/// What the interface says about one file of a recording.
struct RecordedFile {
    QString path;
    double length = 0;                          // seconds
    std::optional<double> gap;                  // seconds after the file before; empty when unknown
    std::vector<media::Difference> differences; // from the first file
    std::optional<media::MediaInfo> info;       // empty when it cannot be read
    media::MediaFault fault = media::MediaFault::other;
    QString reason; // why it cannot be read

    /// Whether it can be taken together with the first.
    bool fits() const;
};

/// Reads the files; the first of them need not be readable.
std::vector<RecordedFile> describeFiles(const media::Recording& recording);

/// Length, gap and differences of one file in the session's language, without its name.
QString factsText(const UiContext& context, const RecordedFile& file, const RecordedFile& first);

/// The files that the user wants as one recording out of several; asks once, with their names, lengths and
/// gaps. Otherwise only `chosen` is taken.
media::Recording askForRecording(const UiContext& context, QWidget* window,
                                 const std::vector<RecordedFile>& files, const QString& chosen);

/// The files of a recording of which some are missing, those found beside `chosen` under the same name. Empty
/// unless `chosen` has the name of one of them.
std::optional<std::vector<QString>> relinked(const std::vector<QString>& files, const QString& chosen);

}
