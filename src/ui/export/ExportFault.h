// Why an export or a frame of it did not come to be, in the person's words.
#pragma once

#include "export/ExportJob.h"
#include "l10n/Language.h"

#include <QString>

namespace pointloom {

/// The usual reasons (a video, a folder or the room on the disk that is not there, a damaged video) in
/// `language`, followed by what the exporter says where that tells more; the latter alone for the rest.
/// `writes` is false for a frame, which needs no folder. Looks at the disk: for a worker thread.
QString reasonOf(const std::exception& error, const ExportJob& job, bool writes, Language language);

}
