// The changelog, by release and kind of change.
#pragma once

#include <QStringList>
#include <QVersionNumber>
#include <vector>

namespace pointloom {

enum class ChangeKind { added, changed, fixed };

struct ChangeList {
    ChangeKind kind = ChangeKind::added;
    QStringList items; // each on one line, without marks of Markdown

    bool operator==(const ChangeList&) const = default;
};

struct Release {
    QVersionNumber version; // null for what is not released yet
    QString day;            // "2026-11-21"; empty for what is not released yet
    std::vector<ChangeList> changes;
};

/// The releases after `after` in their order; all of them, with what is not released yet, for a null version.
/// Headings of other kinds of change are left out with what is below them.
std::vector<Release> readReleases(const QString& changelog, const QVersionNumber& after);

}
