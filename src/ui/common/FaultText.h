// Sentences in the interface's language for errors of videos.
#pragma once

#include "l10n/Language.h"
#include "media/MediaError.h"

#include <QString>

namespace pointloom {

struct FaultText {
    QString sentence;
    QString detail; // the reason as the program found it, in English; empty where the sentence says it all

    /// Both, a line each.
    QString lines() const { return detail.isEmpty() ? sentence : sentence + u'\n' + detail; }
};

/// `fileName` is named in the sentence, except by that of a full disk. `reason` is what the error itself
/// says.
FaultText faultText(media::MediaFault fault, const QString& fileName, const QString& reason,
                    Language language);

}
