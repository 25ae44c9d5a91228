// Clips with HDR data that FFmpeg cannot write, made by adding its bytes.
#pragma once

#include "support/TestClips.h"

namespace pointloom::test {

/// The clip, whose index comes after its media, with a Dolby Vision configuration (profile 8.4) added.
QString withDolbyVision(const ClipFolder& folder, const QString& hevcClip);

/// The clip's pictures alone, each with dynamic metadata of SMPTE ST 2094-40 (HDR10+) added.
QString withHdr10Plus(const ClipFolder& folder, const QString& hevcClip);

}
