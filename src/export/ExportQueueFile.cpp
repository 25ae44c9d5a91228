#include "export/ExportQueueFile.h"

#include "files/NewFile.h"
#include "json/JsonDocument.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace pointloom {

namespace {

// An entry as it is written.
struct StoredExport {
    QUuid id;
    QString name;
    ExportJob job;
    QString projectPath; // this and the next are of the job, but not in its JSON
    bool replaces = false;
    double work = 0;
    QueueState state = QueueState::waiting;
    QString message;
    QString outputPath; // of one that is done
    int starts = 0;

    static constexpr auto jsonFields() {
        using Self = StoredExport;
        return std::tuple{json::field("id", &Self::id),
                          json::field("name", &Self::name),
                          json::field("job", &Self::job),
                          json::field("projectPath", &Self::projectPath),
                          json::field("replaces", &Self::replaces),
                          json::field("work", &Self::work),
                          json::field("state", &Self::state),
                          json::field("message", &Self::message),
                          json::field("outputPath", &Self::outputPath),
                          json::field("starts", &Self::starts)};
    }
};

struct QueueDocument {
    bool paused = false;
    std::vector<StoredExport> exports;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("paused", &QueueDocument::paused),
                          json::field("exports", &QueueDocument::exports)};
    }
};

StoredExport stored(const QueuedExport& entry) {
    return {.id = entry.id,
            .name = entry.name,
            .job = entry.job,
            .projectPath = entry.job.projectPath,
            .replaces = entry.job.ifExists == IfExists::replace,
            .work = entry.work,
            .state = entry.state,
            .message = entry.message,
            .outputPath = entry.report.outputPath,
            .starts = entry.starts};
}

QueuedExport restored(const StoredExport& stored) {
    QueuedExport entry{.id = stored.id,
                       .name = stored.name,
                       .job = stored.job,
                       .work = stored.work,
                       .state = stored.state,
                       .message = stored.message,
                       .report = {.damage = {}, .outputPath = stored.outputPath},
                       .starts = stored.starts};
    entry.job.projectPath = stored.projectPath;
    entry.job.ifExists = stored.replaces ? IfExists::replace : IfExists::addNumber;
    return entry;
}

}

StoredQueue readQueue(const QString& path) {
    const QFileInfo info(path);
    if (!info.exists())
        return {};
    QFile file(path);
    if (!info.isFile())
        throw FileError(path, "cannot be read", QStringLiteral("it is not a regular file"));
    if (!file.open(QIODevice::ReadOnly))
        throw FileError(path, "cannot be read", file.errorString());
    const auto document = json::decode<QueueDocument>(json::parse(file.read(json::ParseLimits{}.bytes + 1)));
    StoredQueue queue{.isPaused = document.paused, .entries = {}};
    for (const StoredExport& entry : document.exports)
        queue.entries.push_back(restored(entry));
    return queue;
}

void writeQueue(const QString& path, const StoredQueue& queue) {
    QueueDocument document{.paused = queue.isPaused, .exports = {}};
    for (const QueuedExport& entry : queue.entries)
        document.exports.push_back(stored(entry));
    QDir().mkpath(QFileInfo(path).absolutePath());
    writeWhole(path, json::write(document), Access::ownerOnly);
}

}
