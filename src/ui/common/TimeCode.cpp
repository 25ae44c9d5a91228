#include "ui/common/TimeCode.h"

#include <algorithm>
#include <cmath>
#include <QRegularExpression>

namespace pointloom {

namespace {

struct Parts {
    qint64 hours;
    int minutes;
    int seconds;
    int hundredths;
};

Parts partsOf(double seconds) {
    constexpr double longest = 1e9;
    constexpr double rounding = 1e-6; // 0.29 x 100 is a hair below 29
    const double counted = std::isfinite(seconds) ? std::clamp(seconds, 0.0, longest) : 0;
    const auto hundredths = static_cast<qint64>(std::floor(counted * 100 + rounding));
    return {hundredths / 360'000, static_cast<int>(hundredths / 6000 % 60),
            static_cast<int>(hundredths / 100 % 60), static_cast<int>(hundredths % 100)};
}

QString twoDigits(qint64 number) {
    return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

}

QString timeCode(double seconds) {
    const Parts parts = partsOf(seconds);
    return QStringLiteral("%1:%2:%3.%4")
        .arg(twoDigits(parts.hours), twoDigits(parts.minutes), twoDigits(parts.seconds),
             twoDigits(parts.hundredths));
}

QString shortTime(double seconds, bool hundredths) {
    const Parts parts = partsOf(seconds);
    QString text = parts.hours > 0 ? QStringLiteral("%1:%2").arg(parts.hours).arg(twoDigits(parts.minutes))
                                   : QString::number(parts.minutes);
    text += u':' + twoDigits(parts.seconds);
    if (hundredths)
        text += u'.' + twoDigits(parts.hundredths);
    return text;
}

std::optional<double> typedTime(const QString& text) {
    static const QRegularExpression form(
        QStringLiteral(R"(^(?:(?:(\d{1,4}):)?(\d{1,6}):)?(\d{1,9})(?:[.,](\d{0,9}))?$)"));
    const auto parts = form.match(text.trimmed());
    const int minutes = parts.captured(2).toInt();
    const double seconds = (parts.captured(3) + u'.' + parts.captured(4)).toDouble();
    const bool isOverfull =
        (parts.hasCaptured(1) && minutes >= 60) || (parts.hasCaptured(2) && seconds >= 60);
    if (!parts.hasMatch() || isOverfull)
        return std::nullopt;
    return parts.captured(1).toInt() * 3600.0 + minutes * 60.0 + seconds;
}

}
