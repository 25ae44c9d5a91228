#include "ui/settings/HelpDialog.h"

#include "l10n/Format.h"
#include "ui/settings/KeysDialog.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace pointloom {

namespace {

constexpr int pageHeight = 38; // lines of text
constexpr int leastHeight = 5; // lines; with more, a low screen shows a second scroll bar around this one

struct Section {
    L10nKey title;
    L10nKey detail;
};

constexpr Section steps[] = {{L10nKey::helpStep0, L10nKey::helpStep0Detail},
                             {L10nKey::helpStep1, L10nKey::helpStep1Detail},
                             {L10nKey::helpStep2, L10nKey::helpStep2Detail},
                             {L10nKey::helpStep3, L10nKey::helpStep3Detail},
                             {L10nKey::helpStep4, L10nKey::helpStep4Detail},
                             {L10nKey::helpCounting, L10nKey::helpCountingDetail},
                             {L10nKey::helpTipsSection, L10nKey::helpTipsDetail},
                             {L10nKey::helpCSVSection, L10nKey::helpCSVDetail},
                             {L10nKey::helpPointsSection, L10nKey::helpPointsDetail}};

QString textOf(L10nKey detail, const UiContext& context) {
    const QString text = withKeysInUse(context.text(detail), context.keys, context.state.language);
    if (detail != L10nKey::helpCountingDetail)
        return text;
    const auto key = [&](Command command) {
        return keyOrName(command, context.keys, context.state.language);
    };
    return format(format(text, key(Command::pointFirst), key(Command::pointSecond)), key(Command::swapServe));
}

}

HelpDialog::HelpDialog(const UiContext& context, QWidget* parent)
    : TitledDialog(context, 84, parent) {
    auto* area = new QScrollArea(this);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setMinimumHeight(fontMetrics().lineSpacing() * leastHeight);
    area->setWidget(makePage());
    body().addWidget(area);
    QPushButton* sample = Controls::button(Controls::ButtonKind::normal, this);
    sample->setAutoDefault(false);
    footer().insertWidget(0, sample);
    connect(sample, &QPushButton::clicked, this, &HelpDialog::sampleRequested);
    inEachLanguage([this, area, sample] {
        setTitle(this->context().text(L10nKey::helpTitle));
        area->setAccessibleName(windowTitle());
        sample->setText(this->context().text(L10nKey::downloadSampleCSV));
    });
    resize(minimumWidth(), fontMetrics().lineSpacing() * pageHeight);
    area->setFocus();
}

QWidget* HelpDialog::makePage() {
    auto* page = new QWidget;
    auto* layout = Controls::layout<QVBoxLayout>(page, {0, 0, Space::m, 0}, Space::m);
    QLabel* intro = paragraph(page);
    layout->addWidget(intro);
    inEachLanguage([this, intro] { intro->setText(context().text(L10nKey::helpIntro)); });
    for (const auto& [title, detail] : steps)
        addSection(*layout, title, detail);
    addShortcuts(*layout);
    layout->addStretch();
    return page;
}

void HelpDialog::addSection(QVBoxLayout& layout, L10nKey title, L10nKey detail) {
    QFrame* card = Controls::card(this);
    auto* inside = Controls::layout<QVBoxLayout>(card, {Space::l, Space::m, Space::l, Space::m}, Space::xs);
    QLabel* heading = Controls::label(Controls::TextRole::strong, card);
    QLabel* text = paragraph(card);
    inside->addWidget(heading);
    inside->addWidget(text);
    layout.addWidget(card);
    const auto showTexts = [this, heading, text, title, detail] {
        heading->setText(context().text(title));
        text->setText(textOf(detail, context()));
    };
    bindings().watchAll(showTexts, context().state.language, context().keys.chosen());
}

// Replaced when the keys or, in another language, their labels change.
void HelpDialog::addShortcuts(QVBoxLayout& layout) {
    QLabel* heading = Controls::label(Controls::TextRole::section, this);
    QPushButton* change = Controls::button(Controls::ButtonKind::normal, this);
    change->setAutoDefault(false);
    connect(change, &QPushButton::clicked, this, [this] { (new KeysDialog(context(), this))->open(); });
    auto* head = new QHBoxLayout;
    head->addWidget(heading, 1);
    head->addWidget(change);
    layout.addSpacing(Space::s);
    layout.addLayout(head);
    auto* holder = new QWidget(this);
    auto* place = new QVBoxLayout(holder);
    place->setContentsMargins(0, 0, 0, 0);
    layout.addWidget(holder);
    const auto showKeys = [this, heading, change, place] {
        heading->setText(context().text(L10nKey::helpShortcutsTitle));
        change->setText(context().text(L10nKey::keysChange));
        if (const std::unique_ptr<QLayoutItem> before{place->takeAt(0)})
            before->widget()->deleteLater();
        QFrame* card = Controls::card(this);
        auto* grid = new QGridLayout(card);
        grid->setContentsMargins(Space::l, Space::m, Space::l, Space::m);
        grid->setHorizontalSpacing(Space::xl);
        grid->setVerticalSpacing(Space::s);
        grid->setColumnStretch(1, 1);
        for (const auto& [group, groupTitle] : {std::pair(CommandGroup::editor, L10nKey::helpKeysEditor),
                                                std::pair(CommandGroup::menu, L10nKey::helpKeysProject)}) {
            QLabel* groupHeading = Controls::label(Controls::TextRole::quiet, card);
            groupHeading->setText(context().text(groupTitle));
            if (grid->rowCount() > 1)
                grid->setRowMinimumHeight(grid->rowCount(), Space::s);
            grid->addWidget(groupHeading, grid->rowCount(), 0, 1, 2);
            for (const auto& [keys, does] : keyList(group, context().keys, context().state.language)) {
                QLabel* effect = paragraph(card);
                effect->setText(context().text(does));
                const int row = grid->rowCount();
                grid->addWidget(makeKeys(keys, card), row, 0, Qt::AlignTop);
                grid->addWidget(effect, row, 1);
            }
        }
        place->addWidget(card);
    };
    bindings().watchAll(showKeys, context().state.language, context().keys.chosen());
}

QWidget* HelpDialog::makeKeys(const QStringList& labels, QWidget* parent) const {
    auto* row = new QWidget(parent);
    auto* layout = Controls::layout<QHBoxLayout>(row, {0, 0, 0, 0}, Space::xs);
    for (const QString& label : labels) {
        QLabel* key = Controls::label(Controls::TextRole::body, row);
        key->setProperty("kind", QStringLiteral("key"));
        key->setText(label);
        key->setAlignment(Qt::AlignCenter);
        key->setMinimumWidth(fontMetrics().lineSpacing() + Space::s);
        layout->addWidget(key, 0, Qt::AlignTop);
    }
    layout->addStretch();
    return row;
}

}
