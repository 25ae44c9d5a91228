#include "cli/PlanInputs.h"

namespace pointloom::cli {

CLI::Option* addPlanArgument(CLI::App& app, std::string& path) {
    return app.add_option("plan", path, "The plan, as \"plan\" wrote it")
        ->type_name(planFile.placeholder)
        ->required();
}

std::vector<InputFile> inputFiles(const SegmentPlan& plan, const QString& planPath) {
    std::vector<InputFile> files{{planPath, QStringLiteral("the plan itself")},
                                 {plan.job.videoPath, QStringLiteral("the source video")}};
    for (const FileFingerprint& picture : plan.pictures)
        files.push_back({picture.path, QStringLiteral("a logo")});
    return files;
}

void noteFewerSegments(const SegmentPlan& plan, int wished, Remarks& remarks) {
    if (plan.count() < wished)
        remarks.notes += QStringLiteral("the video can be cut into %1 segments only").arg(plan.count());
}

}
