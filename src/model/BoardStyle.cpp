#include "model/BoardStyle.h"

#include "json/JsonCoding.h"

#include <QRegularExpression>

namespace pointloom {

namespace {

constexpr qsizetype longestBoardName = 60;

}

QString BoardColor::text() const {
    QString text = QStringLiteral("#");
    const auto append = [&](std::uint8_t part) {
        text += QStringLiteral("%1").arg(part, 2, 16, QLatin1Char('0')).toUpper();
    };
    append(red);
    append(green);
    append(blue);
    if (alpha != 255)
        append(alpha);
    return text;
}

std::optional<BoardColor> BoardColor::parse(const QString& text) {
    static const QRegularExpression form(QStringLiteral("\\A#(?:[0-9A-Fa-f]{2}){3,4}\\z"));
    if (!form.match(text).hasMatch())
        return std::nullopt;
    const QByteArray parts = QByteArray::fromHex(text.sliced(1).toLatin1());
    const auto part = [&](qsizetype index) { return static_cast<std::uint8_t>(parts[index]); };
    BoardColor color{part(0), part(1), part(2)};
    if (parts.size() == 4)
        color.alpha = part(3);
    return color;
}

json::OrderedValue json::Codec<BoardColor>::encode(BoardColor color) {
    return color.text().toStdString();
}

BoardColor json::Codec<BoardColor>::decode(const Value& value, const Path& path) {
    const QString text = json::decode<QString>(value, path);
    if (const auto color = BoardColor::parse(text))
        return *color;
    throw DecodingError(path,
                        "expected a colour as #RRGGBB or #RRGGBBAA, found " + inQuotes(text.toStdString()));
}

QString boardName(const QString& name) {
    QString shown = name.simplified().left(longestBoardName).trimmed();
    if (!shown.isEmpty() && shown.back().isHighSurrogate())
        shown.chop(1);
    return shown;
}

}
