// The job from which tests of whole exports start.
#pragma once

#include "export/ExportManager.h"
#include "model/ScoringEngine.h"

namespace pointloom::test {

/// Licensed, its scoreboard in the middle of the picture, without markers, encoded as fast as can be.
inline ExportJob jobFor(const QString& video, const QString& output) {
    ExportJob job;
    job.videoPath = video;
    job.outputPath = output;
    job.overlay.config.team1.player1 = QStringLiteral("Ana");
    job.overlay.config.team2.player1 = QStringLiteral("Eva");
    job.overlay.initialScore = ScoringEngine::getInitialScore(job.overlay.config);
    job.overlay.scoreboardPosition = {0.5, 0.5};
    job.overlay.isLicensed = true;
    job.settings.encoderPreset = QStringLiteral("ultrafast");
    return job;
}

}
