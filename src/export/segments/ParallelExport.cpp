#include "export/segments/ParallelExport.h"

#include "export/ExportManager.h"
#include "export/segments/SegmentExport.h"

#include <chrono>
#include <future>
#include <mutex>

namespace pointloom {

namespace {

// Encodes on threads of their own: one for each segment, and one for the sound.
class SegmentWorkers {
public:
    SegmentWorkers(const SegmentPlan& plan, const SegmentFolder& folder)
        : m_plan(plan)
        , m_folder(folder)
        , m_progress(plan.segments.size()) {}
    ~SegmentWorkers() { m_isStopped = true; }
    SegmentWorkers(const SegmentWorkers&) = delete;
    SegmentWorkers& operator=(const SegmentWorkers&) = delete;

    /// Blocks until all threads have ended. Throws what the first thread that failed threw.
    media::Damage run(const ExportControl& control, ProgressMeter& meter);

private:
    template <class Work>
    void launch(const Work& work);
    void encode(int number);
    ExportProgress progress();

    const SegmentPlan& m_plan;
    const SegmentFolder& m_folder;
    std::atomic<bool> m_isStopped = false;
    std::mutex m_mutex; // guards the members below but the threads
    std::exception_ptr m_failure;
    std::vector<ExportProgress> m_progress; // of each segment
    media::Damage m_damage;
    std::vector<std::future<void>> m_threads; // end before what they use
};

media::Damage SegmentWorkers::run(const ExportControl& control, ProgressMeter& meter) {
    constexpr auto moment = std::chrono::milliseconds(50);
    for (int number = 1; number <= m_plan.count(); ++number)
        launch([this, number] { encode(number); });
    if (m_plan.hasSound)
        launch([this] {
            encodeSoundIfPossible(m_plan, m_folder.sound(), {[this] { return m_isStopped.load(); }});
        });
    for (const auto& thread : m_threads) {
        while (thread.wait_for(moment) != std::future_status::ready) {
            if (control.isCancelled && control.isCancelled())
                m_isStopped = true;
            if (const ExportProgress now = progress(); now.frames > 0)
                meter.update(now);
        }
    }
    if (m_failure)
        std::rethrow_exception(m_failure);
    return m_damage;
}

template <class Work>
void SegmentWorkers::launch(const Work& work) {
    m_threads.push_back(std::async(std::launch::async, [this, work] {
        try {
            work();
        } catch (...) {
            const std::lock_guard lock(m_mutex);
            if (!m_failure)
                m_failure = std::current_exception();
            m_isStopped = true; // the others need not go on
        }
    }));
}

void SegmentWorkers::encode(int number) {
    const ExportControl control{[this] { return m_isStopped.load(); },
                                [this, number](const ExportProgress& progress) {
                                    const std::lock_guard lock(m_mutex);
                                    m_progress[static_cast<std::size_t>(number) - 1] = progress;
                                }};
    const auto report = encodeSegment(m_plan, number, m_folder.segment(number), control, m_plan.count());
    const std::lock_guard lock(m_mutex);
    if (report) {
        m_damage.lostFrames += report->damage.lostFrames;
        m_damage.faultyFrames += report->damage.faultyFrames;
        m_damage.secondsMissing += report->damage.secondsMissing;
    }
}

// Weighs segments by their length: the expected frames of one are known only when it has begun.
ExportProgress SegmentWorkers::progress() {
    const std::lock_guard lock(m_mutex);
    ExportProgress sum{0, 0, 0};
    double seconds = 0;
    for (std::size_t i = 0; i < m_progress.size(); ++i) {
        const double length = m_plan.segments[i].seconds;
        sum.fraction += m_progress[i].fraction * length;
        sum.frames += m_progress[i].frames;
        sum.expectedFrames += m_progress[i].expectedFrames;
        seconds += length;
    }
    sum.fraction /= seconds;
    return sum;
}

}

ExportReport exportInParallel(const SegmentPlan& plan, const ExportControl& control, IfExists ifExists) {
    ExportJob job = plan.job;
    job.ifExists = ifExists;
    if (plan.count() == 1)
        return ExportManager::exportVideo(job, control);
    requireOtherFile(job, job.outputPath);
    const auto folder = withExportErrors("Writer failed: ", [&] {
        const NewFile output(job.outputPath, ifExists); // fails before the work when it cannot be written
        return std::make_unique<NewFolder>(job.outputPath, ifExists);
    });
    const SegmentFolder segments(folder->temporaryPath(), job.settings.format);
    ProgressMeter meter(control);
    ExportReport report;
    report.damage = SegmentWorkers(plan, segments).run(control, meter);
    report.outputPath =
        joinSegments(plan, segments, job.outputPath, {.isCancelled = control.isCancelled}, ifExists);
    meter.finish();
    return report;
}

}
