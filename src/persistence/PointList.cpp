#include "persistence/PointList.h"

#include <algorithm>
#include <span>

namespace pointloom {

namespace {

constexpr std::size_t pointColumns = 3;

std::variant<WonPoint, L10nKey> parsePoint(const std::vector<QString>& fields, qint64 line) {
    const auto time = DelimitedText::parseTime(fields[0]);
    if (!time)
        return L10nKey::importNoTime;
    const bool hasMore = std::ranges::any_of(std::span(fields).subspan(std::min(pointColumns, fields.size())),
                                             [](const QString& field) { return !field.isEmpty(); });
    if (fields.size() < 2 || hasMore || (fields[1] != u"1" && fields[1] != u"2"))
        return L10nKey::importNoPoint;
    WonPoint point{*time, fields[1] == u"1" ? Side::first : Side::second, {}, line};
    if (fields.size() >= pointColumns && !fields[2].isEmpty())
        point.label = fields[2];
    return point;
}

}

PointList parsePointList(QStringView text, QChar separator) {
    PointList list;
    bool isFirst = true;
    DelimitedText::forEachLine(text, [&](QStringView line, qint64 number) {
        if (DelimitedText::trimmed(line).startsWith(u'#'))
            return;
        const std::vector<QString> fields = DelimitedText::quotedFields(line, separator);
        const auto parsed = parsePoint(fields, number);
        if (const auto* point = std::get_if<WonPoint>(&parsed))
            list.points.push_back(*point);
        else if (!isFirst || !DelimitedText::isHeading(fields.front()))
            list.leftOut.push_back({number, std::get<L10nKey>(parsed)});
        isFirst = false;
    });
    std::ranges::stable_sort(list.points, {}, &WonPoint::time);
    return list;
}

}
