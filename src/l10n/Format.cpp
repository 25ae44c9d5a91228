#include "l10n/Format.h"

#include "l10n/L10nKey.h"

namespace pointloom {

namespace {

// Returns the place after the replacement, or `from` where the placeholder is missing.
qsizetype replaceFirst(QString& text, QStringView placeholder, const QString& value, qsizetype from = 0) {
    const auto position = text.indexOf(placeholder, from);
    if (position < 0)
        return from;
    text.replace(position, placeholder.size(), value);
    return position + value.size();
}

}

QString format(const QString& pattern, qint64 number) {
    QString text = pattern;
    replaceFirst(text, u"%d", QString::number(number));
    return text;
}

QString format(const QString& pattern, const QString& text) {
    QString filled = pattern;
    replaceFirst(filled, u"%@", text);
    return filled;
}

QString format(const QString& pattern, const QString& first, const QString& second) {
    QString filled = pattern;
    const qsizetype rest = replaceFirst(filled, u"%@", first);
    replaceFirst(filled, u"%@", second, rest);
    return filled;
}

QString forThisDesktop(QString text, Language language) {
    text.replace(QStringLiteral("⌘"), t(language, L10nKey::desktopControl));
    text.replace(QStringLiteral("⇧"), t(language, L10nKey::desktopShift));
    text.replace(t(language, L10nKey::desktopFinder), t(language, L10nKey::desktopFolder));
    return text;
}

}
