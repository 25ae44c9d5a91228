// Opens the video of an export and settles what is known before its first frame is decoded.
#pragma once

#include "export/ExportJob.h"
#include "export/PictureLayout.h"
#include "media/FrameConverter.h"
#include "media/MediaWriter.h"
#include "media/VideoReader.h"

namespace pointloom {

/// Throws ExportError, also when the picture is too small for an overlay.
media::VideoReader openSource(const media::Recording& recording);

struct ResolvedExport {
    PictureLayout layout;
    media::FrameTarget target;    // of the conversion of decoded frames
    media::VideoSettings encoder; // `encoder.format` is the layout of the encoded frames
};

/// `info` describes the job's video, which has pictures.
ResolvedExport resolveExport(const ExportJob& job, const media::MediaInfo& info);

/// The hardware encoders that work on this machine for frames of this job's size and layout: each is tried on
/// a few, which takes a moment.
/// Throws ExportError when the video cannot be opened.
std::vector<media::EncoderKind> workingHardwareEncoders(const ExportJob& job);

/// Sets the software encoder when the job's encoder does not work here, and returns why. Throws as above.
std::optional<EncoderFallback> settleEncoder(ExportJob& job);

}
