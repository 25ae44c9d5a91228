// An overlay as a match has it, for the programs that measure drawing and blending.
#pragma once

#include "export/ExportJob.h"
#include "model/ScoringEngine.h"

namespace pointloom {

/// Two players with flags; the service changes at second 1.
inline ExportJob sampleJob() {
    ExportJob job;
    OverlayDescription& description = job.overlay;
    description.config.team1 = {QStringLiteral("Dravnik"), {}, QStringLiteral("FR"), {}};
    description.config.team2 = {QStringLiteral("Solvane"), {}, QStringLiteral("ES"), {}};
    description.config.numberOfSets = 3;
    description.initialScore = ScoringEngine::getInitialScore(description.config);
    SportScoreState other = description.initialScore;
    std::get<ScoreState>(other).servingTeam = 2;
    description.markers = {{QUuid::createUuid(), 1.0, other, {}}};
    return job;
}

}
