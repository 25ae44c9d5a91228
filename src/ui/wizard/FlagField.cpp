#include "ui/wizard/FlagField.h"

#include "l10n/Countries.h"
#include "model/MatchConfig.h"
#include "ui/style/Icons.h"
#include "ui/style/Tokens.h"

#include <QAbstractItemView>
#include <QAction>
#include <QCompleter>
#include <QKeyEvent>
#include <QLabel>
#include <QScreen>
#include <QStandardItemModel>
#include <QStyledItemDelegate>

namespace pointloom {

namespace {

constexpr int flagSpace = 34; // points, at the start of the field
constexpr int nameRole = Qt::UserRole;
const QString showAllIcon = QStringLiteral("chevron-down");

QString flagOf(const QString& code) {
    return TeamConfig{{}, {}, code, {}}.flagDisplayName(MatchFormat::singles).trimmed();
}

std::optional<Country> likeliest(const QString& typed, Language language) {
    if (typed.trimmed().isEmpty())
        return std::nullopt;
    const auto found = findCountries(typed, language);
    return found.empty() ? std::nullopt : std::optional(found.front());
}

// Marks the first row of a narrowed list until the user chooses another: it is the one that the text means.
class CountryRow final : public QStyledItemDelegate {
public:
    explicit CountryRow(const QCompleter& completer)
        : QStyledItemDelegate(completer.popup())
        , m_completer(completer) {}

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        const bool isNarrowed = !m_completer.completionPrefix().isEmpty();
        if (index.row() == 0 && isNarrowed && !m_completer.popup()->selectionModel()->hasSelection())
            option->state |= QStyle::State_Selected;
    }

private:
    const QCompleter& m_completer;
};

}

FlagField::FlagField(const UiContext& context, QWidget* parent)
    : QLineEdit(parent)
    , m_context(context)
    , m_language(context.state.language)
    , m_flag(new QLabel(this))
    , m_showAll(addAction(Icons::icon(showAllIcon), QLineEdit::TrailingPosition))
    , m_countries(new QStandardItemModel(this)) {
    constexpr int mostRows = 8;
    constexpr int narrowestList = 240; // points
    auto* completer = new QCompleter(m_countries, this);
    completer->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    completer->setCompletionRole(nameRole);
    completer->setMaxVisibleItems(mostRows);
    completer->popup()->setProperty("kind", QStringLiteral("popup"));
    completer->popup()->setMinimumWidth(narrowestList);
    completer->popup()->setItemDelegate(new CountryRow(*completer));
    completer->popup()->installEventFilter(this);
    setCompleter(completer);

    QFont flagFont = font();
    flagFont.setPointSizeF(flagFont.pointSizeF() * TypeScale::section);
    m_flag->setFont(flagFont);
    m_flag->setAlignment(Qt::AlignCenter);
    m_flag->setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(this, &QLineEdit::textEdited, this, &FlagField::offer);
    connect(this, &QLineEdit::textChanged, this, [this] {
        m_refused.clear();
        showFlag();
        Q_EMIT codeEdited();
    });
    connect(m_showAll, &QAction::triggered, this, &FlagField::showList);
    m_bindings.watch(m_context.state.language, [this] { showTexts(); });
}

void FlagField::setCode(const std::optional<QString>& given) {
    const auto country = given ? countryOf(*given, m_language) : std::nullopt;
    const QSignalBlocker quiet(this);
    setText(country ? country->name : QString());
    setCursorPosition(0);
    m_refused = country ? QString() : given.value_or(QString());
    showFlag();
}

std::optional<QString> FlagField::code() const {
    const auto country = likeliest(text(), m_language);
    return country ? std::optional(country->code) : std::nullopt;
}

QString FlagField::unknown() const {
    return code() ? QString() : m_refused + text().trimmed();
}

void FlagField::offer(const QString& typed) {
    m_countries->clear();
    for (const Country& country : findCountries(typed, m_language)) {
        auto* row = new QStandardItem(flagOf(country.code) + QStringLiteral("  ") + country.name);
        row->setData(country.name, nameRole);
        m_countries->appendRow(row); // which owns it
    }
}

void FlagField::showList() {
    setFocus(Qt::PopupFocusReason);
    offer({});
    completer()->setCompletionPrefix({});
    completer()->complete();
    const auto current = m_countries->match(m_countries->index(0, 0), nameRole, text(), 1, Qt::MatchExactly);
    if (!text().isEmpty() && !current.isEmpty())
        completer()->popup()->scrollTo(current.front(), QAbstractItemView::PositionAtCenter);
}

void FlagField::takeLikeliest() {
    const auto country = likeliest(text(), m_language);
    if (country && country->name != text())
        setText(country->name);
    setCursorPosition(0);
}

// The list may be wider than the field: it stays on the screen.
bool FlagField::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show) {
        auto* list = static_cast<QWidget*>(watched);
        const int beyond = list->geometry().right() - screen()->availableGeometry().right();
        if (beyond > 0)
            list->move(list->x() - beyond, list->y());
    }
    return QLineEdit::eventFilter(watched, event);
}

// The list passes its keys to the field first. Enter takes a country from it, the next one is the page's.
void FlagField::keyPressEvent(QKeyEvent* event) {
    const bool isListShown = completer()->popup()->isVisible();
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter)
        takeLikeliest();
    if (isEnter && isListShown)
        completer()->popup()->hide();
    else if (event->key() == Qt::Key_Down && !isListShown)
        showList();
    else
        QLineEdit::keyPressEvent(event);
}

void FlagField::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason)
        takeLikeliest();
}

void FlagField::resizeEvent(QResizeEvent* event) {
    QLineEdit::resizeEvent(event);
    m_flag->setGeometry(0, 0, flagSpace, height());
}

void FlagField::showFlag() {
    const auto shown = code();
    m_flag->setText(shown ? flagOf(*shown) : QString());
    setTextMargins(shown ? flagSpace - Space::s : 0, 0, 0, 0);
}

void FlagField::showTexts() {
    const auto shown = code();
    m_language = m_context.state.language;
    if (shown)
        setCode(shown);
    setPlaceholderText(m_context.text(L10nKey::flagCountry));
    m_showAll->setToolTip(m_context.text(L10nKey::flagShowAll));
    m_showAll->setText(m_context.text(L10nKey::flagShowAll));
}

}
