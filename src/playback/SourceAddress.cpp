#include "playback/SourceAddress.h"

#include <algorithm>
#include <filesystem>
#include <QCoreApplication>
#include <QFile>
#include <QPointer>
#include <QThreadPool>

namespace pointloom::playback {

namespace {

QString absolutePath(const QString& path) {
    std::error_code error;
    const auto absolute = std::filesystem::absolute(QFile::encodeName(path).toStdString(), error);
    return QFile::decodeName(QByteArray::fromStdString(absolute.string()));
}

// The files at the times that they have in the layout.
QByteArray addressOf(const media::RecordingLayout& layout) {
    // libmpv drops frames outside of a file's range, and rounds: each range begins a little before its first
    // frame, where the file's times allow that.
    constexpr double margin = 0.0005; // seconds
    constexpr int decimals = 9;
    const auto firstTime = [&](std::size_t file) { return layout.beginOf(file) - layout.offsetOf(file); };
    const auto marginOf = [&](std::size_t file) { return std::min(margin, firstTime(file)); };
    QByteArray address = "edl://!no_chapters";
    for (std::size_t i = 0; i < layout.files.size(); ++i) {
        const bool isLast = i + 1 == layout.files.size();
        const double begin = layout.beginOf(i) - marginOf(i);
        const double end = isLast ? layout.duration : layout.beginOf(i + 1) - marginOf(i + 1);
        const QByteArray path = QFile::encodeName(layout.files[i].path);
        address += ";%" + QByteArray::number(path.size()) + '%' + path + ',' +
                   QByteArray::number(firstTime(i) - marginOf(i), 'f', decimals) + ',' +
                   QByteArray::number(end - begin, 'f', decimals);
    }
    return address;
}

using Told = std::function<void()>;

// Calls what `work` returns from the event loop, unless `receiver` is gone.
void measure(QObject* receiver, std::function<Told()> work) {
    QThreadPool::globalInstance()->start([receiver = QPointer(receiver), work = std::move(work)] {
        const auto tell = [receiver, told = work()] {
            if (receiver)
                told();
        };
        QMetaObject::invokeMethod(QCoreApplication::instance(), tell, Qt::QueuedConnection);
    });
}

}

media::Recording absolute(const media::Recording& recording) {
    std::vector<QString> files = recording.files();
    std::ranges::transform(files, files.begin(), absolutePath);
    return media::Recording(files.front(), files);
}

std::optional<PlaybackFault> faultOfFiles(const media::Recording& recording) {
    for (const QString& path : recording.files()) {
        auto fault = faultOfFile(path);
        if (fault && path != recording.first())
            fault->reason = path.section(u'/', -1) + QStringLiteral(": ") + fault->reason;
        if (fault)
            return fault;
    }
    return std::nullopt;
}

void findAddress(const media::Recording& recording, QObject* receiver,
                 std::function<void(const QByteArray&, const PlaybackFault&)> found) {
    measure(receiver, [recording, found = std::move(found)]() -> Told {
        try {
            return [found, address = addressOf(media::layoutOf(recording))] { found(address, {}); };
        } catch (const media::MediaError& error) {
            return [found, fault = PlaybackFault{error.fault(), QString::fromUtf8(error.what())}] {
                found({}, fault);
            };
        }
    });
}

void findDuration(const media::Recording& recording, QObject* receiver, std::function<void(double)> found) {
    measure(receiver, [recording, found = std::move(found)]() -> Told {
        try {
            return [found, duration = media::infoOf(recording).duration] { found(duration); };
        } catch (const media::MediaError&) {
            return [found] { found(0); };
        }
    });
}

}
