#include "ui/wizard/BoardDialog.h"

#include "persistence/DocumentFile.h"
#include "render/BoardLook.h"
#include "ui/common/Dialogs.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Tokens.h"
#include "ui/wizard/BoardPanel.h"
#include "ui/wizard/ColorField.h"
#include "ui/wizard/SegmentedControl.h"

#include <cmath>
#include <QGridLayout>
#include <QLineEdit>
#include <QLocale>
#include <QPainter>
#include <QShowEvent>
#include <QVBoxLayout>

namespace pointloom {

namespace {

// In the place of a club's logo.
QImage logoPlaceholder() {
    constexpr int side = 120; // pixels
    QImage logo(side, side, QImage::Format_ARGB32_Premultiplied);
    logo.fill(Qt::transparent);
    QPainter painter(&logo);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 220));
    painter.drawRoundedRect(logo.rect(), side / 5.0, side / 5.0);
    constexpr int icon = side * 2 / 3;
    painter.drawPixmap((side - icon) / 2, (side - icon) / 2,
                       Icons::pixmap(QStringLiteral("image"), icon, lightTokens.quietText, 1));
    return logo;
}

BoardColor boardColor(const Rgba& color) {
    const auto part = [](double value) { return static_cast<std::uint8_t>(std::lround(value * 255)); };
    return {part(color.red), part(color.green), part(color.blue), part(color.alpha)};
}

/// The colours by which a style is drawn, each as the first row has it.
BoardColors drawnColors(const RowTemplateStyle& style) {
    const auto ground = [&](const RowColors& row) {
        return boardColor(row.bg.alpha > 0 ? row.bg : style.panel);
    };
    return {.main = ground(style.team1),
            .points = boardColor(style.team1.gameCell),
            .row2 = ground(style.team2),
            .sets = boardColor(style.team1.accent),
            .text = boardColor(style.team1.text),
            .pointsText = boardColor(style.team1.gameText)};
}

struct CornerStep {
    L10nKey name;
    double radius;
};

constexpr std::array cornerSteps{CornerStep{L10nKey::boardCornersSquare, 0},
                                 CornerStep{L10nKey::boardCornersSoft, 6},
                                 CornerStep{L10nKey::boardCornersRound, 16}};

/// The step that looks like the corners of a style: in many templates the rows cover those of the panel.
int cornerStepOf(const RowTemplateStyle& style) {
    constexpr double nearlySquare = 2;
    constexpr double nearlyRound = 11;
    const bool isRound = style.cutsCells || style.team1.bg.alpha == 0;
    return !isRound || style.radius < nearlySquare ? 0 : style.radius < nearlyRound ? 1 : 2;
}

}

BoardDialog::BoardDialog(const UiContext& context, const BoardFile& board, const MatchConfig& match,
                         bool isKept, QWidget* parent)
    : QDialog(parent)
    , m_context(context)
    , m_file(board)
    , m_match(match)
    , m_logo(logoPlaceholder())
    , m_preview(new BoardPanel(context, this, 2.4))
    , m_warning(Controls::label(Controls::TextRole::warning, this)) {
    constexpr int narrowest = 720;
    constexpr int lowestPreview = 110;
    constexpr int usualPreview = 230;
    setWindowTitle(m_context.text(L10nKey::boardTitle));
    setMinimumWidth(narrowest);
    m_preview->setMinimumHeight(lowestPreview);
    m_preview->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_warning->setWordWrap(true);

    auto* columns = new QHBoxLayout;
    columns->setSpacing(Space::xxl);
    columns->addWidget(makeColors(), 1);
    columns->addWidget(makeChoices(), 1);
    auto* layout = Controls::layout<QVBoxLayout>(this, {Space::xl, Space::xl, Space::xl, Space::l}, Space::l);
    QLabel* title = Controls::label(Controls::TextRole::title, this);
    title->setText(windowTitle());
    layout->addWidget(title);
    layout->addWidget(m_preview, 1);
    layout->addWidget(m_warning);
    layout->addLayout(columns);
    layout->addWidget(makeFooter(isKept));
    resize(sizeHint().width(), sizeHint().height() - m_preview->sizeHint().height() + usualPreview);
    showBoard();
}

BoardFile BoardDialog::board() const {
    BoardFile file = m_file;
    file.board.name = boardName(m_name->text());
    if (file.board.name.isEmpty())
        file.board.name = m_context.text(L10nKey::boardFirstName);
    return file;
}

QWidget* BoardDialog::makeColors() {
    auto* box = new QWidget(this);
    auto* column = Controls::layout<QVBoxLayout>(box, {}, Space::s);
    QLabel* title = Controls::label(Controls::TextRole::quiet, box);
    title->setText(m_context.text(L10nKey::boardColors));
    column->addWidget(title);
    addColor(L10nKey::boardMain, &BoardColors::main, box);
    addColor(L10nKey::boardRow2, &BoardColors::row2, box);
    addColor(L10nKey::boardSets, &BoardColors::sets, box);
    addColor(L10nKey::boardText, &BoardColors::text, box);
    addColor(L10nKey::boardPoints, &BoardColors::points, box);
    addColor(L10nKey::boardPointsText, &BoardColors::pointsText, box);
    column->addStretch(1);
    return box;
}

void BoardDialog::addColor(L10nKey name, std::optional<BoardColor> BoardColors::*color, QWidget* parent) {
    auto* field = new ColorField(m_context, name, parent);
    parent->layout()->addWidget(field);
    m_colors.push_back({color, field});
    connect(field, &ColorField::picked, this, [this, color](BoardColor picked) {
        m_file.board.colors.*color = picked;
        showBoard();
    });
    connect(field, &ColorField::givenBack, this, [this, color] {
        (m_file.board.colors.*color).reset();
        showBoard();
    });
}

QWidget* BoardDialog::makeChoices() {
    auto* box = new QWidget(this);
    auto* column = Controls::layout<QVBoxLayout>(box, {}, Space::xs);
    const auto add = [&](L10nKey name, QWidget* control) {
        if (column->count() > 0)
            column->addSpacing(Space::s);
        QLabel* label = Controls::label(Controls::TextRole::quiet, box);
        label->setText(m_context.text(name));
        label->setBuddy(control);
        control->setAccessibleName(label->text());
        column->addWidget(label);
        column->addWidget(control);
    };
    const auto addChoice = [&](L10nKey name, const std::vector<L10nKey>& texts, int value, auto take) {
        auto* control = new SegmentedControl(box);
        std::vector<int> values;
        for (int each = 0; each < static_cast<int>(texts.size()); ++each)
            values.push_back(each);
        control->setValues(values);
        for (const int each : values)
            control->setText(each, m_context.text(texts[static_cast<std::size_t>(each)]));
        control->setValue(value);
        connect(&control->group(), &QButtonGroup::idClicked, this, [this, take](int chosen) {
            take(m_file.board, chosen);
            showBoard();
        });
        add(name, control);
    };

    const RowTemplateStyle style = styleOf(m_file.base, m_file.board);
    m_name = new QLineEdit(m_file.board.name, box);
    add(L10nKey::boardName, m_name);
    addChoice(L10nKey::boardFont,
              {L10nKey::boardFontSans, L10nKey::boardFontNarrow, L10nKey::boardFontGeometric,
               L10nKey::boardFontSerif},
              static_cast<int>(style.font),
              [](BoardStyle& board, int chosen) { board.font = static_cast<BoardFont>(chosen); });
    std::vector<L10nKey> corners;
    for (const CornerStep& step : cornerSteps)
        corners.push_back(step.name);
    addChoice(L10nKey::boardCorners, corners, cornerStepOf(style), [](BoardStyle& board, int chosen) {
        board.corner = cornerSteps[static_cast<std::size_t>(chosen)].radius;
    });
    addChoice(L10nKey::boardOrder, {L10nKey::boardSetsFirst, L10nKey::boardPointsFirst},
              static_cast<int>(style.order),
              [](BoardStyle& board, int chosen) { board.order = static_cast<BoardOrder>(chosen); });
    addChoice(L10nKey::boardLogo, {L10nKey::boardLogoLeft, L10nKey::boardLogoRight, L10nKey::boardLogoNone},
              static_cast<int>(style.logo),
              [](BoardStyle& board, int chosen) { board.logo = static_cast<BoardLogo>(chosen); });
    column->addStretch(1);
    return box;
}

QWidget* BoardDialog::makeFooter(bool isKept) {
    auto* box = new QWidget(this);
    auto* row = Controls::layout<QHBoxLayout>(box, {}, Space::s);
    const auto add = [&](Controls::ButtonKind kind, L10nKey text, auto act) {
        QPushButton* button = Controls::button(kind, box);
        button->setText(m_context.text(text));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, act);
        row->addWidget(button);
        return button;
    };
    if (isKept)
        add(Controls::ButtonKind::plain, L10nKey::boardDelete, [this] { askToDelete(); });
    add(Controls::ButtonKind::plain, L10nKey::boardShare, [this] { saveAsFile(); });
    row->addStretch(1);
    add(Controls::ButtonKind::normal, L10nKey::cancel, [this] { reject(); });
    add(Controls::ButtonKind::primary, L10nKey::boardSave, [this] { accept(); })->setDefault(true);
    return box;
}

void BoardDialog::showEvent(QShowEvent* event) {
    resize(size().boundedTo(availableSize(*this)));
    if (!event->spontaneous())
        placeOverWindow(*this);
    QDialog::showEvent(event);
    m_colors.front().field->setFocus();
}

void BoardDialog::showBoard() {
    MatchConfig match = m_match;
    match.board = m_file.board;
    m_preview->showBoard(m_file.base, match, m_logo);
    const BoardColors drawn = drawnColors(styleOf(m_file.base, m_file.board));
    for (const ColorChoice& choice : m_colors) {
        const auto& chosen = m_file.board.colors.*choice.color;
        choice.field->setColor(chosen.value_or(*(drawn.*choice.color)), chosen.has_value());
    }
    showContrast();
}

// What is as hard to read in the template itself is not told.
void BoardDialog::showContrast() {
    const BoardContrast own = contrastOf(styleOf(m_file.base, m_file.board));
    const BoardContrast before = contrastOf(rowTemplateStyle(m_file.base));
    QStringList lines;
    const auto check = [&](L10nKey text, double contrast, double usual) {
        constexpr double rounding = 0.05;
        if (contrast >= readableContrast || contrast >= usual - rounding)
            return;
        const QLocale locale = localeOf(m_context.state.language);
        lines << format(m_context.text(text), locale.toString(std::floor(contrast * 10) / 10, 'f', 1));
    };
    check(L10nKey::boardNamesHardToRead, own.names, before.names);
    check(L10nKey::boardPointsHardToRead, own.points, before.points);
    m_warning->setText(lines.join(u'\n'));
    m_warning->setVisible(!lines.isEmpty());
}

void BoardDialog::saveAsFile() {
    const BoardFile file = board();
    const auto path = chooseFileToSave(
        m_context, this, m_context.text(L10nKey::boardShare), boardFileName(file.board.name),
        m_context.text(L10nKey::boardFiles) + QStringLiteral(" (*.json)"), QStringLiteral(".json"));
    if (!path)
        return;
    try {
        file.save(*path);
    } catch (const DocumentError& error) {
        m_context.dialogs.alert(this, m_context.text(L10nKey::boardCannotSave),
                                QString::fromUtf8(error.what()));
    }
}

void BoardDialog::askToDelete() {
    if (m_context.dialogs.confirm(this, format(m_context.text(L10nKey::boardDeleteTitle), board().board.name),
                                  m_context.text(L10nKey::boardDeleteMessage),
                                  m_context.text(L10nKey::boardDelete), m_context.text(L10nKey::cancel)))
        done(deleted);
}

}
