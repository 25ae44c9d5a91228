#include "ui/settings/KeysDialog.h"

#include "files/FileDescriptor.h"
#include "l10n/Format.h"
#include "persistence/DocumentFile.h"
#include "ui/common/KeyFile.h"
#include "ui/common/Preferences.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <algorithm>
#include <QAccessible>
#include <QApplication>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QVBoxLayout>
#include <tuple>
#include <utility>

namespace pointloom {

namespace {

constexpr int keysWidth = 84;  // letters
constexpr int keysHeight = 34; // lines of text
constexpr int leastOfKeys = 5; // lines
constexpr int fieldWidth = 18; // letters

const QString keysEnding = QStringLiteral(".json");

QString labelsOf(const CommandKeys::Keys& keys, Language language) {
    QStringList labels;
    for (const QKeyCombination key : keys)
        labels << keyLabel(key, language);
    return labels.join(QStringLiteral(", "));
}

}

KeysDialog::KeysDialog(const UiContext& context, QWidget* parent)
    : TitledDialog(context, keysWidth, parent)
    , m_search(new QLineEdit(this))
    , m_nothingFound(Controls::label(Controls::TextRole::quiet, this))
    , m_allUsual(Controls::button(Controls::ButtonKind::normal, this)) {
    setAttribute(Qt::WA_DeleteOnClose);
    m_search->setClearButtonEnabled(true);
    connect(m_search, &QLineEdit::textChanged, this, &KeysDialog::find);
    body().addWidget(m_search);
    body().addWidget(makeList(), 1);
    body().addWidget(makeMessage());
    makeFooter();
    bindings().watchAll([this] { showRows(); }, context.state.language, context.keys.chosen());
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        const bool isHere = !now || now == m_asking || now == m_answers[0] || now == m_answers[1];
        if (m_asking && !isHere)
            stopAsking();
    });
    say(this->context().text(L10nKey::keysHint));
    resize(minimumWidth(), fontMetrics().lineSpacing() * keysHeight);
    m_search->setFocus();
}

QWidget* KeysDialog::makeList() {
    auto* area = new QScrollArea(this);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    area->setMinimumHeight(fontMetrics().lineSpacing() * leastOfKeys);
    area->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored); // as high as the message leaves
    auto* page = new QWidget;
    auto* layout = Controls::layout<QVBoxLayout>(page, {0, 0, Space::m, 0}, Space::xs);
    layout->addWidget(m_nothingFound);
    for (const auto group : {CommandGroup::editor, CommandGroup::menu}) {
        Group& made = m_groups.emplace_back(Controls::label(Controls::TextRole::section, page));
        layout->addSpacing(Space::s);
        layout->addWidget(made.heading);
        for (const CommandRow& command : commandTable()) {
            if (command.group != group || command.fixedKeys)
                continue;
            made.rows.push_back(makeRow(command, page));
            layout->addWidget(made.rows.back().widget);
        }
    }
    layout->addStretch();
    area->setWidget(page);
    inEachLanguage([this, area] {
        setTitle(context().text(L10nKey::helpShortcutsTitle));
        area->setAccessibleName(windowTitle());
        m_search->setPlaceholderText(context().text(L10nKey::keysSearch));
        m_search->setAccessibleName(m_search->placeholderText());
        m_nothingFound->setText(context().text(L10nKey::keysNotFound));
        m_groups[0].heading->setText(context().text(L10nKey::helpKeysEditor));
        m_groups[1].heading->setText(context().text(L10nKey::helpKeysProject));
    });
    return area;
}

KeysDialog::Row KeysDialog::makeRow(const CommandRow& command, QWidget* parent) {
    auto* widget = new QWidget(parent);
    auto* layout = Controls::layout<QHBoxLayout>(widget, {}, Space::m);
    auto* name = new ElidedLabel(widget);
    QLabel* usual = Controls::label(Controls::TextRole::quiet, widget);
    auto* field = new KeyField(context(), command.id, widget);
    field->setMinimumWidth(fontMetrics().averageCharWidth() * fieldWidth);
    layout->addWidget(name, 1);
    layout->addWidget(usual);
    layout->addWidget(field);
    inEachLanguage(
        [this, name, id = command.id] { name->setFullText(commandName(id, context().state.language)); });
    connect(field, &KeyField::clicked, this, [this, field] { ask(*field); });
    connect(field, &KeyField::keyPressed, this, &KeysDialog::take);
    connect(field, &KeyField::gaveUp, this, &KeysDialog::stopAsking);
    connect(field, &KeyField::leftByTab, this, [this] {
        if (m_answers[0]->isVisible())
            m_answers[0]->setFocus(Qt::TabFocusReason);
        else
            stopAsking();
    });
    return {widget, usual, field, {}};
}

QWidget* KeysDialog::makeMessage() {
    QFrame* card = Controls::card(this);
    auto* layout = Controls::layout<QHBoxLayout>(card, {Space::l, Space::s, Space::m, Space::s}, Space::s);
    m_message = paragraph(card);
    m_message->setObjectName(QStringLiteral("message"));
    m_message->setTextFormat(Qt::PlainText);
    layout->addWidget(m_message, 1);
    for (int i = 0; i < 2; ++i) {
        m_answers[i] = Controls::button(Controls::ButtonKind::normal, card);
        m_answers[i]->setObjectName(QStringLiteral("answer%1").arg(i));
        m_answers[i]->setFocusPolicy(Qt::TabFocus); // a click leaves the focus with the key
        layout->addWidget(m_answers[i]);
        connect(m_answers[i], &QPushButton::clicked, this, [this, i] {
            const auto act = m_acts[i]; // which may give the button another one
            act();
        });
    }
    card->setMinimumHeight(m_answers[0]->sizeHint().height() + 2 * Space::s); // whether it has buttons or not
    return card;
}

void KeysDialog::makeFooter() {
    const std::tuple<QPushButton*, L10nKey, std::function<void()>> buttons[] = {
        {m_allUsual, L10nKey::keysAllUsual, [this] { use({}, context().text(L10nKey::keysAllAreUsual)); }},
        {Controls::button(Controls::ButtonKind::normal, this), L10nKey::keysExport, [this] { exportKeys(); }},
        {Controls::button(Controls::ButtonKind::normal, this), L10nKey::keysImport,
         [this] { importKeys(); }}};
    for (const auto& [button, text, act] : buttons) {
        button->setAutoDefault(false);
        const std::string_view name = rawValue(text);
        button->setObjectName(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
        footer().insertWidget(0, button);
        connect(button, &QPushButton::clicked, this, act);
        inEachLanguage([this, button = button, text = text] { button->setText(context().text(text)); });
    }
}

void KeysDialog::showRows() {
    const Language language = context().state.language;
    const CommandKeys& keys = context().keys;
    for (Group& group : m_groups) {
        for (Row& row : group.rows) {
            const Command command = row.field->command();
            row.field->showKeys();
            const QString usual = labelsOf(usualKeys(command), language);
            row.usual->setText(format(context().text(L10nKey::keysUsual), usual));
            row.usual->setVisible(!keys.areUsual(command) && !usual.isEmpty());
            const auto does = commandRow(command).does;
            row.words = commandName(command, language) + u' ' + labelsOf(keys.shown(command), language) +
                        u' ' + (does ? context().text(*does) : QString());
        }
    }
    m_allUsual->setEnabled(!keys.chosen().value().empty());
    find();
}

// All words that were typed, in any order.
void KeysDialog::find() {
    const QStringList words = m_search->text().split(u' ', Qt::SkipEmptyParts);
    bool isAnyFound = false;
    for (const Group& group : m_groups) {
        bool isInGroup = false;
        for (const Row& row : group.rows) {
            const bool isFound = std::ranges::all_of(
                words, [&](const QString& word) { return row.words.contains(word, Qt::CaseInsensitive); });
            row.widget->setVisible(isFound);
            isInGroup |= isFound;
        }
        group.heading->setVisible(isInGroup);
        isAnyFound |= isInGroup;
    }
    m_nothingFound->setVisible(!isAnyFound);
}

// Escape first gives up a question. Enter in the search asks for the key of the first command that was found.
void KeysDialog::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && m_asking)
        return stopAsking();
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter || focusWidget() != m_search)
        return TitledDialog::keyPressEvent(event);
    for (const Group& group : m_groups) {
        for (const Row& row : group.rows) {
            if (!row.widget->isHidden())
                return ask(*row.field);
        }
    }
}

void KeysDialog::ask(KeyField& field) {
    if (m_asking == &field)
        return;
    stopAsking();
    m_asking = &field;
    field.setFocus();
    field.setAsking(true);
    const Command command = field.command();
    const Language language = context().state.language;
    const CommandKeys::Keys usual = usualKeys(command);
    std::vector<Answer> answers;
    if (!context().keys.areUsual(command) && !usual.isEmpty())
        answers.push_back({format(context().text(L10nKey::keysUseUsual), labelsOf(usual, language)),
                           [this, command, usual] { propose(command, usual); }});
    if (!context().keys.shown(command).isEmpty())
        answers.push_back({context().text(L10nKey::keysNone), [this, command] { give(command, {}); }});
    say(format(context().text(L10nKey::keysAsk), commandName(command, language)), answers);
}

void KeysDialog::stopAsking() {
    if (KeyField* field = std::exchange(m_asking, nullptr)) {
        if (m_answers[0]->hasFocus() || m_answers[1]->hasFocus())
            field->setFocus();
        field->setAsking(false);
        say(context().text(L10nKey::keysHint));
    }
}

void KeysDialog::take(QKeyCombination key) {
    const Command command = m_asking->command();
    m_asking->showAsked(key);
    const auto fault = faultOf(key, commandRow(command).group);
    if (!fault)
        return propose(command, {key});
    const L10nKey text = fault == KeyFault::reserved ? L10nKey::keysReserved : L10nKey::keysNeedControl;
    say(format(context().text(text), keyLabel(key, context().state.language)));
}

// Asks first where another command has one of the keys.
void KeysDialog::propose(Command command, const CommandKeys::Keys& keys) {
    const Language language = context().state.language;
    for (const QKeyCombination key : keys) {
        const CommandRow* owner = context().keys.commandOf(key);
        if (!owner || owner->id == command)
            continue;
        return say(format(context().text(L10nKey::keysTaken), keyLabel(key, language),
                          commandName(owner->id, language)),
                   {{context().text(L10nKey::keysTakeOver), [this, command, keys] { give(command, keys); }},
                    {context().text(L10nKey::cancel), [this] { stopAsking(); }}});
    }
    give(command, keys);
}

void KeysDialog::give(Command command, const CommandKeys::Keys& keys) {
    const CommandKeys::Chosen chosen = context().keys.chosenWith(command, keys);
    const Language language = context().state.language;
    const auto nowOf = [&](Command each, const CommandKeys& inUse) {
        const QString name = commandName(each, language);
        const auto shown = inUse.shown(each);
        return shown.isEmpty() ? format(context().text(L10nKey::keysNowNone), name)
                               : format(context().text(L10nKey::keysNow), name, labelsOf(shown, language));
    };
    const CommandKeys after(chosen);
    QString message = nowOf(command, after);
    for (const CommandRow& row : commandTable()) { // those that lost a key
        if (row.id != command && after.shown(row.id) != context().keys.shown(row.id))
            message += u' ' + nowOf(row.id, after);
    }
    use(chosen, message);
}

void KeysDialog::use(const CommandKeys::Chosen& chosen, const QString& message) {
    stopAsking();
    const CommandKeys::Chosen before = context().keys.chosen().value();
    try {
        Preferences::chooseKeys(context(), chosen);
        const auto takeBack = [this, before] { use(before, context().text(L10nKey::keysHint)); };
        if (chosen == before)
            say(message);
        else
            say(message, {{context().text(L10nKey::commandUndo), takeBack}});
    } catch (const FileError& error) {
        say(format(context().text(L10nKey::preferencesNotKept), QString::fromUtf8(error.what())));
    }
}

void KeysDialog::say(const QString& message, const std::vector<Answer>& answers) {
    if (answers.empty() && (m_answers[0]->hasFocus() || m_answers[1]->hasFocus()))
        (m_asking ? static_cast<QWidget*>(m_asking) : m_search)->setFocus();
    m_message->setText(message);
    for (std::size_t i = 0; i < std::size(m_answers); ++i) {
        m_answers[i]->setVisible(i < answers.size());
        if (i < answers.size()) {
            m_answers[i]->setText(answers[i].text);
            m_acts[i] = answers[i].act;
        }
    }
    QAccessibleEvent alert(m_message, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void KeysDialog::importKeys() {
    const auto path = context().dialogs.chooseFileToOpen(this, context().text(L10nKey::keysImportTitle),
                                                         {context().text(L10nKey::keysFilter)});
    if (!path)
        return;
    try {
        const KeyFile file = readKeyFile(*path);
        QString message = format(context().text(L10nKey::keysImported), QFileInfo(*path).fileName());
        if (!file.unknown.isEmpty())
            message +=
                u' ' + format(context().text(L10nKey::keysSkipped), file.unknown.join(QStringLiteral(", ")));
        use(file.chosen, message);
    } catch (const DocumentError& error) {
        context().dialogs.alert(this, context().text(L10nKey::keysNotRead), QString::fromUtf8(error.what()));
    }
}

void KeysDialog::exportKeys() {
    const auto path = chooseFileToSave(context(), this, context().text(L10nKey::keysExportTitle),
                                       QStringLiteral("pointloom-keys") + keysEnding,
                                       context().text(L10nKey::keysFilter), keysEnding);
    if (!path)
        return;
    try {
        writeKeyFile(*path, context().keys.chosen().value());
        stopAsking();
        say(format(context().text(L10nKey::keysExported), QFileInfo(*path).fileName()));
    } catch (const DocumentError& error) {
        context().dialogs.alert(this, context().text(L10nKey::keysNotWritten),
                                QString::fromUtf8(error.what()));
    }
}

}
