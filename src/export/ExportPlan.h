// What of an export is known before its first frame is decoded.
#pragma once

#include "export/ExportManager.h"
#include "export/PictureLayout.h"
#include "media/FrameConverter.h"
#include "media/MediaWriter.h"

namespace pointloom {

struct ExportPlan {
    PictureLayout layout;
    media::FrameFormat frameFormat;
    TrimRange range;
    double frameRate = 30; // frames a second
    std::int64_t expectedFrames = 0;
    std::vector<media::Chapter> chapters;
};

/// `info` describes the job's video, which has pictures.
ExportPlan makePlan(const ExportJob& job, const media::MediaInfo& info);

/// What the decoded frames are converted to.
media::FrameTarget pictureTarget(const ExportPlan& plan, const media::VideoTrackInfo& track);

/// What the video encoder is told.
media::VideoSettings videoSettings(const ExportJob& job, const ExportPlan& plan,
                                   const media::VideoTrackInfo& track);

}
