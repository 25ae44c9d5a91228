#include "export/ParallelExport.h"

#include "export/ExportSource.h"
#include "export/SegmentJoin.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace pointloom {

namespace {

// Threads that make the parts: one for each segment, and one for the sound.
class SegmentWorkers {
public:
    SegmentWorkers(const SegmentPlan& plan, const SegmentFolder& parts)
        : m_plan(plan)
        , m_segments(parts)
        , m_progress(plan.segments.size())
        , m_damage(plan.segments.size()) {}
    ~SegmentWorkers() { m_isStopped = true; }
    SegmentWorkers(const SegmentWorkers&) = delete;
    SegmentWorkers& operator=(const SegmentWorkers&) = delete;

    void start();

    /// Blocks until all parts are there. Throws what the first thread that failed threw.
    void wait(const ExportManager::CancelQuery& isCancelled, const ExportManager::ProgressReport& onProgress);

    /// Of all segments together.
    ExportReport report() const;

private:
    template <class Work>
    void launch(const Work& work);
    void encode(std::size_t index);
    ExportProgress progress() const;

    const SegmentPlan& m_plan;
    const SegmentFolder& m_segments;
    std::atomic<bool> m_isStopped = false;
    std::mutex m_mutex; // of what follows
    std::condition_variable m_threadEnded;
    std::size_t m_running = 0;
    std::exception_ptr m_failure;
    std::vector<ExportProgress> m_progress; // of each segment
    std::vector<media::Damage> m_damage;
    std::vector<std::jthread> m_threads; // end before what they use
};

void SegmentWorkers::start() {
    for (std::size_t i = 0; i < m_plan.segments.size(); ++i)
        launch([this, i] { encode(i); });
    if (m_plan.hasSound)
        launch([this] {
            SegmentExport::encodeSoundIfPossible(m_plan, m_segments.sound(),
                                                 [this] { return m_isStopped.load(); });
        });
}

template <class Work>
void SegmentWorkers::launch(const Work& work) {
    {
        const std::lock_guard lock(m_mutex);
        ++m_running;
    }
    m_threads.emplace_back([this, work] {
        std::exception_ptr failure;
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
        const std::lock_guard lock(m_mutex);
        if (!m_failure)
            m_failure = failure;
        m_isStopped = m_isStopped || failure; // the others need not go on
        --m_running;
        m_threadEnded.notify_all();
    });
}

void SegmentWorkers::encode(std::size_t index) {
    const int number = static_cast<int>(index) + 1;
    const auto report = SegmentExport::encode(
        m_plan, number, m_segments.pictures(number), [this] { return m_isStopped.load(); },
        [this, index](const ExportProgress& progress) {
            const std::lock_guard lock(m_mutex);
            m_progress[index] = progress;
        },
        m_plan.count());
    const std::lock_guard lock(m_mutex);
    if (report)
        m_damage[index] = report->damage;
}

void SegmentWorkers::wait(const ExportManager::CancelQuery& isCancelled,
                          const ExportManager::ProgressReport& onProgress) {
    constexpr auto moment = std::chrono::milliseconds(50);
    int lastPercent = -1;
    std::unique_lock lock(m_mutex);
    while (m_running > 0) {
        m_threadEnded.wait_for(lock, moment);
        const ExportProgress now = progress();
        lock.unlock();
        if (isCancelled && isCancelled())
            m_isStopped = true;
        const int percent = static_cast<int>(now.fraction * 100);
        if (onProgress && now.frames > 0 && percent != std::exchange(lastPercent, percent))
            onProgress(now);
        lock.lock();
    }
    if (m_failure)
        std::rethrow_exception(m_failure);
}

// Segments last unequally long, and the frames of one are known when it has begun.
ExportProgress SegmentWorkers::progress() const {
    constexpr double mostBeforeTheEnd = 0.95; // the parts have to be joined
    ExportProgress sum{0, 0, 0};
    double seconds = 0;
    for (std::size_t i = 0; i < m_progress.size(); ++i) {
        const double length = m_plan.segments[i].seconds;
        sum.fraction += m_progress[i].fraction * length;
        sum.frames += m_progress[i].frames;
        sum.expectedFrames += m_progress[i].expectedFrames;
        seconds += length;
    }
    sum.fraction = std::min(mostBeforeTheEnd, sum.fraction / seconds);
    return sum;
}

ExportReport SegmentWorkers::report() const {
    ExportReport report;
    for (const media::Damage& damage : m_damage) {
        report.damage.lostFrames += damage.lostFrames;
        report.damage.faultyFrames += damage.faultyFrames;
        report.damage.secondsMissing += damage.secondsMissing;
    }
    return report;
}

}

ExportReport ParallelExport::run(const SegmentPlan& plan, const ExportManager::CancelQuery& isCancelled,
                                 const ExportManager::ProgressReport& onProgress, IfExists ifExists) {
    if (plan.count() == 1) {
        ExportJob job = plan.job();
        job.ifExists = ifExists;
        return ExportManager::exportVideo(job, isCancelled, onProgress);
    }
    ExportSource::requireOtherFile(plan.job(), plan.output);
    const auto folder = ExportSource::writing("Writer failed: ", [&] {
        const NewFile output(plan.output, ifExists); // what cannot be written is refused before the work
        return std::make_unique<NewFolder>(plan.output, ifExists);
    });
    const SegmentFolder parts(folder->temporaryPath(), plan.format);
    SegmentWorkers workers(plan, parts);
    workers.start();
    workers.wait(isCancelled, onProgress);
    ExportReport report = workers.report();
    report.outputPath = SegmentJoin::join(plan, parts, plan.output, isCancelled, {}, ifExists);
    if (onProgress)
        onProgress({1.0});
    return report;
}

}
