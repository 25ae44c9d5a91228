#include "export/segments/ReusingExport.h"

#include "export/Captions.h"
#include "export/ExportManager.h"
#include "export/ExportSource.h"
#include "export/ExportTimeline.h"
#include "export/segments/SegmentExport.h"
#include "export/segments/SegmentKeys.h"

#include <chrono>
#include <cmath>
#include <condition_variable>
#include <future>
#include <mutex>
#include <QFile>
#include <thread>

namespace pointloom {

namespace {

// Of a small machine two encoders fill the moments in which one alone would wait for its first and its last
// frames.
int segmentsAtOnce(const ExportJob& job, const ReuseChoices& choices) {
    constexpr int processorsForOne = 4;
    if (job.settings.encoder != media::EncoderKind::software)
        return 1;
    if (choices.atOnce > 0)
        return choices.atOnce;
    return std::max(2, static_cast<int>(std::thread::hardware_concurrency()) / processorsForOne);
}

// Empty when the video cannot be cut, cannot be read at all, or is so short that its segments' ends would
// cost more time than they save. Opens the source.
std::optional<SegmentPlan> planOf(const ExportJob& job, const ReuseChoices& choices,
                                  std::optional<media::VideoReader>& source) {
    constexpr int fewest = 4;
    constexpr double hardwareSteps = 4; // it encodes a segment faster than it starts the next
    const bool isSoftware = job.settings.encoder == media::EncoderKind::software;
    try {
        source = openSource(job.recording());
        return SegmentPlan::onGrid(job, source->info(), choices.spacing * (isSoftware ? 1 : hardwareSteps),
                                   fewest, QStringLiteral(POINTLOOM_VERSION));
    } catch (const ExportError&) {
        return std::nullopt; // the export of the whole tells what is wrong
    }
}

// Makes the sound and the segments, in order, on threads of its own.
class PartMaker {
public:
    PartMaker(const SegmentPlan& plan, const SegmentFolder& folder, const SegmentCache& cache,
              const ExportControl& control, const ReuseChoices& choices);
    ~PartMaker() { m_isStopped = true; }
    PartMaker(const PartMaker&) = delete;
    PartMaker& operator=(const PartMaker&) = delete;

    /// Blocks until the part is there: a segment, or the sound as number 0. Throws what the first thread that
    /// failed threw, and ExportCancelled.
    void waitFor(int number);

    /// Call after the last part. Returns the damage of the source in all of them.
    media::Damage finish();

    /// Throws ExportCancelled. Where the question waits, as in a pause, the threads wait too.
    void throwIfCancelled();

private:
    struct Part {
        QString key;
        double seconds = 0;
        bool isReused = false; // counts as done
        bool isDone = false;
        ExportProgress progress{0, 0, 0};
    };

    template <class Work>
    void launch(const Work& work);
    void makeSound();
    void makeSegments();
    void makeSegment(int number);
    media::Damage encode(int number, const QString& path);
    void keep(const Part& part, const QString& path, const media::Damage& damage);
    void settle(int number, const media::Damage& damage);
    bool reuses(const QString& key) const { return !m_choices.isFresh && m_cache.contains(key); }
    ExportProgress progress();
    ExportControl workerControl() {
        return {[this] {
            const std::lock_guard lock(m_question);
            return m_isStopped.load();
        }};
    }

    const SegmentPlan& m_plan;
    const SegmentFolder& m_folder;
    const SegmentCache& m_cache;
    const ExportControl& m_control;
    ReuseChoices m_choices;
    int m_atOnce;
    double m_frameRate;
    double m_seconds = 0;
    ProgressMeter m_meter;
    std::atomic<bool> m_isStopped = false;
    std::mutex m_question;       // held while it is asked whether the export is cancelled
    std::atomic<int> m_next = 1; // segment
    std::mutex m_mutex;          // guards the members from here to the threads
    std::condition_variable m_changed;
    std::vector<Part> m_parts; // the sound, then the segments
    int m_unfinished = 0;      // segments
    std::exception_ptr m_failure;
    media::Damage m_damage;
    std::vector<std::future<void>> m_threads; // end before what they use
};

PartMaker::PartMaker(const SegmentPlan& plan, const SegmentFolder& folder, const SegmentCache& cache,
                     const ExportControl& control, const ReuseChoices& choices)
    : m_plan(plan)
    , m_folder(folder)
    , m_cache(cache)
    , m_control(control)
    , m_choices(choices)
    , m_atOnce(segmentsAtOnce(plan.job, choices))
    , m_frameRate(openSource(plan.job.recording()).track().frameRate.value())
    , m_meter(control) {
    m_parts.push_back({.key = soundKey(plan), .isDone = !plan.hasSound});
    const std::vector<QString> keys = segmentKeys(plan);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const double seconds = plan.segments[i].seconds;
        m_seconds += seconds;
        m_parts.push_back({.key = keys[i], .seconds = seconds, .isReused = reuses(keys[i])});
        m_unfinished += m_parts.back().isReused ? 0 : 1;
    }
    if (plan.hasSound)
        launch([this] { makeSound(); });
    for (int i = 0; i < std::min(m_atOnce, plan.count()); ++i)
        launch([this] { makeSegments(); });
}

template <class Work>
void PartMaker::launch(const Work& work) {
    m_threads.push_back(std::async(std::launch::async, [this, work] {
        try {
            work();
        } catch (...) {
            const std::lock_guard lock(m_mutex);
            if (!m_failure)
                m_failure = std::current_exception();
            m_isStopped = true; // the others need not go on
        }
        m_changed.notify_all();
    }));
}

void PartMaker::waitFor(int number) {
    constexpr auto moment = std::chrono::milliseconds(50);
    const Part& part = m_parts[static_cast<std::size_t>(number)];
    while (true) {
        throwIfCancelled();
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, moment, [&] { return part.isDone || m_failure; });
        if (m_failure)
            std::rethrow_exception(m_failure);
        const bool isDone = part.isDone;
        const ExportProgress now = progress();
        lock.unlock();
        if (m_control.framesWritten != nullptr)
            *m_control.framesWritten = now.frames;
        if (now.frames > 0)
            m_meter.update(now);
        if (isDone)
            return;
    }
}

void PartMaker::throwIfCancelled() {
    const std::lock_guard lock(m_question);
    m_control.throwIfCancelled();
}

media::Damage PartMaker::finish() {
    m_meter.finish();
    const std::lock_guard lock(m_mutex);
    return m_damage;
}

void PartMaker::makeSound() {
    const Part& part = m_parts.front();
    const QString path = m_folder.sound();
    if (!reuses(part.key) || !m_cache.take(part.key, path)) {
        encodeSoundIfPossible(m_plan, path, workerControl());
        if (QFile::exists(path))
            keep(part, path, {});
    }
    const std::lock_guard lock(m_mutex);
    m_parts.front().isDone = true;
}

void PartMaker::makeSegments() {
    for (int number = m_next++; number <= m_plan.count() && !m_isStopped; number = m_next++)
        makeSegment(number);
}

void PartMaker::makeSegment(int number) {
    Part& part = m_parts[static_cast<std::size_t>(number)];
    const QString path = m_folder.segment(number);
    if (reuses(part.key)) {
        if (const auto damage = m_cache.take(part.key, path))
            return settle(number, *damage);
    }
    {
        const std::lock_guard lock(m_mutex);
        m_unfinished += std::exchange(part.isReused, false) ? 1 : 0;
    }
    const media::Damage damage = encode(number, path);
    keep(part, path, damage);
    settle(number, damage);
}

// The last segments share the processors with fewer others.
media::Damage PartMaker::encode(int number, const QString& path) {
    Part& part = m_parts[static_cast<std::size_t>(number)];
    ExportControl control = workerControl();
    control.onProgress = [&](const ExportProgress& progress) {
        const std::lock_guard lock(m_mutex);
        part.progress = progress;
    };
    ExportJob job = m_plan.job;
    {
        const std::lock_guard lock(m_mutex);
        job.exportsAtOnce = std::clamp(m_unfinished, 1, m_atOnce);
    }
    job.outputPath = path;
    job.segment = ExportSegment{m_plan.window(number), part.key};
    return ExportManager::exportVideo(job, control).damage;
}

// A part made while an input changed would be taken for that of the input before.
void PartMaker::keep(const Part& part, const QString& path, const media::Damage& damage) {
    try {
        m_plan.requireUnchangedInputs();
        m_cache.keep(part.key, path, damage);
    } catch (const ExportError&) {
        return;
    }
}

void PartMaker::settle(int number, const media::Damage& damage) {
    const std::lock_guard lock(m_mutex);
    Part& part = m_parts[static_cast<std::size_t>(number)];
    part.isDone = true;
    m_unfinished -= part.isReused ? 0 : 1;
    m_damage.lostFrames += damage.lostFrames;
    m_damage.faultyFrames += damage.faultyFrames;
    m_damage.secondsMissing += damage.secondsMissing;
    m_changed.notify_all();
}

// Parts count by their lengths: how many frames one has is known only when it has begun. The mutex is held.
ExportProgress PartMaker::progress() {
    double done = 0;   // seconds
    double reused = 0; // seconds
    std::int64_t frames = 0;
    for (const Part& part : m_parts) {
        if (part.isReused)
            reused += part.seconds;
        else
            done += (part.isDone ? 1 : part.progress.fraction) * part.seconds;
        frames += part.progress.frames;
    }
    const auto framesIn = [&](double seconds) { return std::llround(seconds * m_frameRate); };
    return {(done + reused) / m_seconds, frames + framesIn(reused), framesIn(m_seconds), framesIn(reused)};
}

// Joins the parts while they are made, into the file at `path`. Throws also MediaError: they cannot be
// joined; and FileError: there is no place for them.
media::Damage joinWhileMade(const SegmentPlan& plan, const QString& path, const SegmentCache& cache,
                            const ExportControl& control, const ReuseChoices& choices) {
    const NewFolder parts(cache.folder() + QStringLiteral("/export"));
    const SegmentFolder folder(parts.temporaryPath(), plan.job.settings.format);
    PartMaker maker(plan, folder, cache, control, choices);
    maker.waitFor(0);
    media::JoinRequest request = joinRequest(plan, folder, path);
    if (QFile::exists(folder.sound()))
        request.soundPath = folder.sound();
    request.beforeSegment = [&](std::size_t place) {
        const int number = static_cast<int>(place) + 1;
        maker.waitFor(number);
        if (number > 2)
            QFile::remove(folder.segment(number - 2)); // is copied
    };
    media::joinSegments(request, [&](std::int64_t, std::int64_t) { maker.throwIfCancelled(); });
    return maker.finish();
}

// Empty when they do not come out.
std::optional<ExportReport> exportSegments(const SegmentPlan& plan, const ExportJob& job,
                                           const SegmentCache& cache, const ExportControl& control,
                                           const ReuseChoices& choices) {
    std::optional<NewFile> file;
    media::Damage damage;
    try {
        file.emplace(job.outputPath, job.ifExists);
        damage = joinWhileMade(plan, file->temporaryPath(), cache, control, choices);
    } catch (const ExportError& error) {
        if (error.fault() == media::MediaFault::diskFull)
            cache.clear();
        return std::nullopt;
    } catch (const media::MediaError&) {
        cache.clear(); // the disk is full, or a part does not fit the others
        return std::nullopt;
    } catch (const FileError&) {
        return std::nullopt;
    }
    const QString path =
        withExportErrors("Writer error: ", [&] { return file->keep(endingOfCaptions(job)); });
    ExportReport report{.damage = damage, .outputPath = path};
    writeCaptionsFor(plan, report, job.ifExists);
    return report;
}

}

ExportReport exportReusing(const ExportJob& job, const SegmentCache& cache, const ExportControl& control,
                           const ReuseChoices& choices) {
    requireOtherFile(job, job.outputPath);
    std::optional<media::VideoReader> source;
    if (const auto plan = planOf(job, choices, source)) {
        source.reset();
        if (auto report = exportSegments(*plan, job, cache, control, choices))
            return *report;
    }
    return ExportManager::exportVideo(job, control, std::move(source));
}

}
