// What a person is told about the damage of a video.
#pragma once

#include "media/MediaInfo.h"

#include <optional>
#include <QString>

namespace pointloom::cli {

/// "12 damaged pictures were left out, and the last 3.2 s of the video are missing"; empty without damage.
std::optional<QString> damageWarning(const media::Damage& damage);

}
