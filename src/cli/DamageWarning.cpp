#include "cli/DamageWarning.h"

#include <QStringList>

namespace pointloom::cli {

namespace {

QString counted(std::int64_t count, const char* one, const char* many) {
    return QStringLiteral("%1 %2").arg(count).arg(QString::fromUtf8(count == 1 ? one : many));
}

QString missingEnd(double seconds) {
    constexpr double shortest = 0.1; // that one decimal can say
    if (seconds < shortest)
        return QStringLiteral("the very end of the video is missing");
    return QStringLiteral("the last %1 s of the video are missing").arg(seconds, 0, 'f', 1);
}

}

std::optional<QString> damageWarning(const media::Damage& damage) {
    QStringList parts;
    if (damage.lostFrames > 0)
        parts += counted(damage.lostFrames, "damaged picture was left out", "damaged pictures were left out");
    if (damage.faultyFrames > 0)
        parts += counted(damage.faultyFrames, "picture shows damage", "pictures show damage");
    if (damage.secondsMissing > 0)
        parts += missingEnd(damage.secondsMissing);
    if (parts.isEmpty())
        return std::nullopt;
    const QString last = parts.takeLast();
    return parts.isEmpty() ? last : parts.join(QStringLiteral(", ")) + QStringLiteral(", and ") + last;
}

}
