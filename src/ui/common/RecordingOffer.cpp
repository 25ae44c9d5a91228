#include "ui/common/RecordingOffer.h"

#include "l10n/Format.h"
#include "ui/common/Dialogs.h"
#include "ui/common/FaultText.h"
#include "ui/common/TimeCode.h"

#include <algorithm>
#include <QDir>
#include <QFileInfo>

namespace pointloom {

namespace {

QString nameOf(const QString& path) {
    return QFileInfo(path).fileName();
}

QString sizeWords(const media::VideoTrackInfo& track) {
    const QSize size = track.uprightSize();
    return QStringLiteral("%1 × %2").arg(size.width()).arg(size.height());
}

QString codecWords(const QString& name) {
    if (name == QLatin1String("h264"))
        return QStringLiteral("H.264");
    return name.toUpper();
}

QString differenceText(const UiContext& context, media::Difference difference, const media::MediaInfo& info) {
    switch (difference) {
    case media::Difference::shape:
        return context.text(L10nKey::recordingOtherShape);
    case media::Difference::size:
        return sizeWords(*info.video);
    case media::Difference::rate:
        return format(context.text(L10nKey::recordingRate),
                      QString::number(info.video->frameRate.value(), 'g', 4));
    case media::Difference::codec:
        return codecWords(info.video->codecName);
    case media::Difference::light:
        return info.video->color.transfer == media::Transfer::sdr ? QStringLiteral("SDR")
                                                                  : QStringLiteral("HDR");
    case media::Difference::sound:
        return info.audioTracks == 0 ? context.text(L10nKey::recordingNoSound)
                                     : context.text(L10nKey::recordingOtherSound);
    }
    return {};
}

QString differencesText(const UiContext& context, const RecordedFile& file) {
    QStringList words;
    for (const media::Difference difference : file.differences)
        words += differenceText(context, difference, *file.info);
    return words.join(QStringLiteral(", "));
}

}

bool RecordedFile::fits() const {
    return info && std::ranges::find(differences, media::Difference::shape) == differences.end();
}

std::vector<RecordedFile> describeFiles(const media::Recording& recording) {
    std::vector<RecordedFile> files;
    std::optional<media::FileFacts> first;
    std::optional<media::FileFacts> before;
    for (const QString& path : recording.files()) {
        RecordedFile file;
        file.path = path;
        try {
            const media::FileFacts facts = media::factsOf(path);
            if (!first)
                first = facts;
            file.length = facts.length();
            file.info = facts.info;
            file.gap = before ? media::gapBetween(*before, facts) : std::nullopt;
            file.differences = media::differences(first->info, facts.info);
            before = facts;
        } catch (const media::MediaError& error) {
            file.fault = error.fault();
            file.reason = QString::fromUtf8(error.what());
        }
        files.push_back(file);
    }
    return files;
}

QString factsText(const UiContext& context, const RecordedFile& file, const RecordedFile& first) {
    if (!file.info)
        return faultText(file.fault, nameOf(file.path), file.reason, context.state.language).sentence;
    if (!file.fits())
        return format(context.text(L10nKey::recordingDoesNotFit), differencesText(context, file));
    QStringList facts{shortTime(file.length)};
    if (file.gap)
        facts += *file.gap > 0 ? format(context.text(L10nKey::recordingGap), shortTime(*file.gap))
                               : context.text(L10nKey::recordingFollows);
    if (!file.differences.empty())
        facts += format(context.text(L10nKey::recordingDiffers), nameOf(first.path),
                        differencesText(context, file));
    return facts.join(QStringLiteral("   ·   "));
}

media::Recording askForRecording(const UiContext& context, QWidget* window,
                                 const std::vector<RecordedFile>& files, const QString& chosen) {
    std::vector<QString> fitting;
    QStringList lines;
    const auto first = std::ranges::find_if(files, &RecordedFile::fits);
    for (const RecordedFile& file : files) {
        if (file.fits())
            fitting.push_back(file.path);
        lines += nameOf(file.path) + QStringLiteral("   ·   ") +
                 factsText(context, file, first == files.end() ? file : *first);
    }
    if (fitting.size() < 2)
        return {fitting.empty() || files.size() < 2 ? chosen : fitting.front()};
    // Enter and Escape take them together, which can be undone on the page for the video.
    const bool isAlone = context.dialogs.confirm(
        window, format(context.text(L10nKey::recordingTitle), static_cast<qint64>(fitting.size())),
        lines.join(u'\n'), format(context.text(L10nKey::recordingOnly), nameOf(chosen)),
        context.text(L10nKey::recordingTogether));
    return isAlone ? media::Recording(chosen) : media::Recording(fitting.front(), fitting);
}

std::optional<std::vector<QString>> relinked(const std::vector<QString>& files, const QString& chosen) {
    const QFileInfo place(chosen);
    const auto hasItsName = [&](const QString& path) { return nameOf(path) == place.fileName(); };
    if (files.size() < 2 || std::ranges::none_of(files, hasItsName))
        return std::nullopt;
    std::vector<QString> found;
    for (const QString& path : files) {
        const QString beside = place.absoluteDir().absoluteFilePath(nameOf(path));
        const bool takesBeside =
            hasItsName(path) || (!QFileInfo(path).isFile() && QFileInfo(beside).isFile());
        found.push_back(takesBeside ? beside : path);
    }
    return found;
}

}
