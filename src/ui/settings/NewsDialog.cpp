#include "ui/settings/NewsDialog.h"

#include "l10n/Format.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <QFile>
#include <QLabel>
#include <QLocale>
#include <QScrollArea>
#include <QVBoxLayout>

// Resources of a static library are not registered by themselves. The macro must be in the global namespace.
static void registerNews() {
    Q_INIT_RESOURCE(news);
}

namespace pointloom {

namespace {

constexpr int newsHeight = 30; // lines of text
constexpr int leastOfNews = 5; // lines
constexpr int newsWidth = 76;  // letters

QString changelog() {
    registerNews();
    QFile file(QStringLiteral(":/news/CHANGELOG.md"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

L10nKey titleOf(ChangeKind kind) {
    switch (kind) {
    case ChangeKind::added:
        return L10nKey::newsAdded;
    case ChangeKind::changed:
        return L10nKey::newsChanged;
    case ChangeKind::fixed:
        return L10nKey::newsFixed;
    }
    Q_UNREACHABLE();
}

QString titleOf(const Release& release, const UiContext& context) {
    if (release.version.isNull())
        return context.text(L10nKey::newsUnreleased);
    const QString version = format(context.text(L10nKey::aboutVersion), release.version.toString());
    const QDate day = QDate::fromString(release.day, Qt::ISODate);
    return day.isValid() ? version + QStringLiteral("   ·   ") +
                               localeOf(context.state.language).toString(day, QLocale::LongFormat)
                         : version;
}

}

bool NewsDialog::hasNewsAfter(const QVersionNumber& version) {
    return !readReleases(changelog(), version).empty();
}

NewsDialog::NewsDialog(const UiContext& context, const QVersionNumber& after, QWidget* parent)
    : TitledDialog(context, newsWidth, parent) {
    auto* area = new QScrollArea(this);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setMinimumHeight(fontMetrics().lineSpacing() * leastOfNews);
    area->setWidget(makePage(readReleases(changelog(), after)));
    body().addWidget(area);
    inEachLanguage([this, area] {
        setTitle(this->context().text(L10nKey::newsTitle));
        area->setAccessibleName(windowTitle());
    });
    resize(minimumWidth(), fontMetrics().lineSpacing() * newsHeight);
    area->setFocus();
}

QWidget* NewsDialog::makePage(const std::vector<Release>& releases) {
    auto* page = new QWidget;
    auto* layout = Controls::layout<QVBoxLayout>(page, {0, 0, Space::m, 0}, Space::m);
    for (const Release& release : releases) {
        QLabel* heading = Controls::label(Controls::TextRole::section, page);
        if (layout->count() > 0)
            layout->addSpacing(Space::s);
        layout->addWidget(heading);
        inEachLanguage([this, heading, release] { heading->setText(titleOf(release, context())); });
        for (const ChangeList& changes : release.changes)
            addChanges(*layout, changes);
    }
    layout->addStretch();
    return page;
}

void NewsDialog::addChanges(QVBoxLayout& layout, const ChangeList& changes) {
    QFrame* card = Controls::card(this);
    auto* inside = Controls::layout<QVBoxLayout>(card, {Space::l, Space::m, Space::l, Space::m}, Space::s);
    QLabel* heading = Controls::label(Controls::TextRole::strong, card);
    inside->addWidget(heading);
    for (const QString& item : changes.items) {
        QLabel* text = paragraph(card);
        text->setTextFormat(Qt::PlainText);
        text->setText(item);
        inside->addWidget(text);
    }
    layout.addWidget(card);
    inEachLanguage([this, heading, kind = changes.kind] { heading->setText(context().text(titleOf(kind))); });
}

}
