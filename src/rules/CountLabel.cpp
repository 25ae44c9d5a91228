#include "rules/CountLabel.h"

#include <QRegularExpression>

namespace pointloom {

QString tieBreakPhrase(const PointGameScore& points) {
    return QStringLiteral("Tie-break %1\u2013%2").arg(points.team1).arg(points.team2);
}

QString secondServerPhrase() {
    return QStringLiteral("Server 2");
}

std::optional<PointGameScore> tieBreakPoints(const QString& label) {
    static const QRegularExpression pattern(QStringLiteral("\\bTie-break (\\d{1,9})[-\u2013](\\d{1,9})\\b"));
    const auto match = pattern.match(label);
    if (!match.hasMatch())
        return std::nullopt;
    return PointGameScore{match.capturedView(1).toLongLong(), match.capturedView(2).toLongLong()};
}

bool namesSecondServer(const QString& label) {
    static const QRegularExpression pattern(QStringLiteral("\\bServer 2\\b"));
    return pattern.match(label).hasMatch();
}

std::optional<QString> withPhrase(const std::optional<QString>& label, const std::optional<QString>& phrase) {
    static const QRegularExpression pattern(
        QStringLiteral("(^|[,;]?\\s*)\\b(?:Tie-break \\d{1,9}[-\u2013]\\d{1,9}|Server 2)\\b"));
    static const QRegularExpression leadingSeparator(QStringLiteral("^[\\s,;]+"));
    QString text = label.value_or(QString());
    const auto found = pattern.match(text);
    QString words = text;
    if (found.hasMatch())
        words.remove(pattern).remove(leadingSeparator);
    if (!phrase)
        return words.isEmpty() ? std::nullopt : std::optional(words);
    if (words.isEmpty())
        return phrase;
    if (!found.hasMatch())
        return text + QStringLiteral(", ") + *phrase;
    return text.replace(found.capturedStart(), found.capturedLength(), found.captured(1) + *phrase);
}

}
