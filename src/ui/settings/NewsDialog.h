// "What's New": the changes of each release.
#pragma once

#include "ui/common/TitledDialog.h"
#include "ui/settings/ReleaseNotes.h"

namespace pointloom {

class NewsDialog final : public TitledDialog {
    Q_OBJECT

public:
    /// Whether the changelog has releases after this one.
    static bool hasNewsAfter(const QVersionNumber& version);

    /// Of the releases after `after`; of all for a null version.
    NewsDialog(const UiContext& context, const QVersionNumber& after, QWidget* parent);

private:
    QWidget* makePage(const std::vector<Release>& releases);
    void addChanges(QVBoxLayout& layout, const ChangeList& changes);
};

}
