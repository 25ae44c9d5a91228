// The licence in the language of the person.
#pragma once

#include "l10n/Language.h"
#include "licensing/LicenceError.h"
#include "licensing/LicenceStatus.h"

namespace pointloom::LicenceWords {

/// One or two sentences on how this machine stands.
QString ofStatus(const LicenceStatus& status, Language language);

/// What went wrong. `detail` is what `licensing` said in English, which goes along where it says more.
QString ofFault(LicenceFault fault, const QString& detail, Language language);

}
