#include "ui/settings/ReleaseNotes.h"

#include <QRegularExpression>

namespace pointloom {

namespace {

// "## [0.1.0] - 2026-11-21", "## [Unreleased]"
std::optional<Release> releaseOf(const QString& line) {
    static const QRegularExpression heading(QStringLiteral(R"(^## \[([^\]]+)\](?: - (\S+))?\s*$)"));
    const auto found = heading.match(line);
    if (!found.hasMatch())
        return std::nullopt;
    return Release{QVersionNumber::fromString(found.captured(1)), found.captured(2), {}};
}

std::optional<ChangeKind> kindOf(const QString& line) {
    if (line == u"### Added")
        return ChangeKind::added;
    if (line == u"### Changed")
        return ChangeKind::changed;
    if (line == u"### Fixed")
        return ChangeKind::fixed;
    return std::nullopt;
}

// Links keep their words.
QString withoutMarks(QString text) {
    static const QRegularExpression link(QStringLiteral(R"(\[([^\]]*)\]\([^)]*\))"));
    static const QRegularExpression marks(QStringLiteral(R"(</?kbd>|\*\*|`)"));
    return text.replace(link, QStringLiteral("\\1")).remove(marks).simplified();
}

}

std::vector<Release> readReleases(const QString& changelog, const QVersionNumber& after) {
    std::vector<Release> releases;
    bool isListed = false; // what follows belongs to a release and a kind of change
    for (const QString& line : changelog.split(u'\n')) {
        if (auto release = releaseOf(line)) {
            releases.push_back(std::move(*release));
            isListed = false;
        } else if (line.startsWith(u"###") && !releases.empty()) {
            const auto kind = kindOf(line.trimmed());
            isListed = kind.has_value();
            if (kind)
                releases.back().changes.push_back({*kind, {}});
        } else if (isListed && line.startsWith(u"- ")) {
            releases.back().changes.back().items << line.mid(2);
        } else if (isListed && line.startsWith(u"  ") && !releases.back().changes.back().items.isEmpty()) {
            releases.back().changes.back().items.last() += u' ' + line;
        }
    }
    std::erase_if(releases, [&](const Release& release) {
        return release.changes.empty() ||
               (!after.isNull() && release.version.normalized() <= after.normalized());
    });
    for (Release& release : releases) {
        for (ChangeList& list : release.changes) {
            for (QString& item : list.items)
                item = withoutMarks(item);
        }
    }
    return releases;
}

}
