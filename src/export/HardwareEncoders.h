// Which encoders in hardware work on this machine for an export.
#pragma once

#include "export/ExportManager.h"

namespace pointloom {

/// Those that encode pictures of this job's size and layout: each is tried on a few, which takes a moment.
/// Throws ExportError when the video cannot be opened.
std::vector<media::EncoderKind> workingHardwareEncoders(const ExportJob& job);

struct EncoderFallback {
    media::EncoderKind wanted = media::EncoderKind::software;
    QString reason; // why it does not work here
};

/// Where the job's encoder does not work, gives the job the software encoder and tells why. Throws as above.
std::optional<EncoderFallback> settleEncoder(ExportJob& job);

}
