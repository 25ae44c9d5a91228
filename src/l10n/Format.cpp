#include "l10n/Format.h"

namespace pointloom {

namespace {

QString replaceFirst(const QString& pattern, QStringView placeholder, const QString& value) {
    const auto position = pattern.indexOf(placeholder);
    if (position < 0)
        return pattern;
    return QString(pattern).replace(position, placeholder.size(), value);
}

}

QString format(const QString& pattern, qint64 number) {
    return replaceFirst(pattern, u"%d", QString::number(number));
}

QString format(const QString& pattern, const QString& text) {
    return replaceFirst(pattern, u"%@", text);
}

}
