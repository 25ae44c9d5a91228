#include "ui/export/ExportWords.h"

#include "l10n/Format.h"
#include "l10n/L10nKey.h"

#include <algorithm>
#include <cmath>

namespace pointloom::ExportWords {

QString progress(const ExportProgress& progress, double elapsedSeconds, Language language) {
    constexpr double tooEarly = 0.8; // seconds; the first frames say nothing of the rest
    const QLocale locale = localeOf(language);
    QString line =
        format(t(language, L10nKey::exportProgressFrames), locale.toString(qlonglong{progress.frames}),
               locale.toString(qlonglong{std::max(progress.expectedFrames, progress.frames)}));
    const auto pace = paceOf(progress, elapsedSeconds);
    if (!pace || elapsedSeconds < tooEarly)
        return line;
    line += QStringLiteral(", ") + format(t(language, L10nKey::exportFramesPerSecond),
                                          locale.toString(std::llround(pace->framesPerSecond)));
    return line + QStringLiteral(", ") +
           format(t(language, L10nKey::exportTimeLeft), span(pace->secondsLeft));
}

QStringList damage(const media::Damage& damage, Language language) {
    constexpr double shortest = 0.1; // seconds; that one decimal can say
    QStringList lines;
    const QLocale locale = localeOf(language);
    if (const std::int64_t pictures = damage.lostFrames + damage.faultyFrames; pictures > 0)
        lines += format(t(language, L10nKey::exportDamagedPictures), locale.toString(qlonglong{pictures}));
    if (damage.secondsMissing > 0)
        lines += format(t(language, L10nKey::exportEndMissing),
                        locale.toString(std::max(damage.secondsMissing, shortest), 'f', 1));
    return lines;
}

QString span(double seconds) {
    const auto whole = static_cast<qint64>(std::ceil(std::max(seconds, 0.0)));
    if (whole >= 3600)
        return QStringLiteral("%1 h %2 min").arg(whole / 3600).arg(whole / 60 % 60);
    if (whole >= 60)
        return QStringLiteral("%1 min %2 s").arg(whole / 60).arg(whole % 60);
    return QStringLiteral("%1 s").arg(whole);
}

QString place(double seconds) {
    const qint64 hundredths = std::llround(std::max(seconds, 0.0) * 100);
    const QLatin1Char zero('0');
    const QString rest =
        QStringLiteral("%1.%2").arg(hundredths / 100 % 60, 2, 10, zero).arg(hundredths % 100, 2, 10, zero);
    const qint64 minutes = hundredths / 6000;
    if (minutes >= 60)
        return QStringLiteral("%1:%2:%3").arg(minutes / 60).arg(minutes % 60, 2, 10, zero).arg(rest);
    return QStringLiteral("%1:%2").arg(minutes).arg(rest);
}

QString bytes(std::int64_t bytes, Language language) {
    return localeOf(language).formattedDataSize(bytes, bytes < 1'000'000'000 ? 0 : 1,
                                                QLocale::DataSizeSIFormat);
}

}
