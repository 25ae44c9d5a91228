#include "ui/wizard/WizardPage.h"

#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace pointloom {

namespace {

constexpr int scrollBarWidth = 10; // points, as in the style sheet

// Keeps its content as wide with a scroll bar as without.
class PageScroll final : public QScrollArea {
public:
    explicit PageScroll(QWidget* parent)
        : QScrollArea(parent) {
        const auto keepWidth = [this](int, int last) {
            setViewportMargins(0, 0, last > 0 ? 0 : scrollBarWidth, 0);
        };
        connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, keepWidth);
        keepWidth(0, 0);
    }
};

}

WizardPage::WizardPage(const UiContext& context, WizardFlow& flow, L10nKey title, L10nKey subtitle,
                       QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_flow(flow)
    , m_subtitle(subtitle)
    , m_subtitleLabel(Controls::label(Controls::TextRole::body, this)) {
    constexpr int widest = 1240;
    constexpr int columnStretch = 1000; // the sides get what the column cannot use
    auto* inner = new QWidget(this);
    inner->setMaximumWidth(widest);
    auto* sides = new QHBoxLayout(this);
    sides->setContentsMargins(Space::xl - cardMargin, Space::l, Space::xl - cardMargin - scrollBarWidth, 0);
    sides->setSpacing(0);
    sides->addStretch(1);
    sides->addWidget(inner, columnStretch);
    sides->addStretch(1);
    m_column = new QVBoxLayout(inner);
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(Space::l);

    QLabel* titleLabel = Controls::label(Controls::TextRole::title, this);
    m_subtitleLabel->setProperty("role", QStringLiteral("quiet"));
    m_subtitleLabel->setWordWrap(true);
    auto* words = new QVBoxLayout;
    words->setSpacing(Space::xs);
    words->addWidget(titleLabel);
    words->addWidget(m_subtitleLabel);
    m_header = new QHBoxLayout;
    m_header->setContentsMargins(cardMargin, 0, cardMargin + scrollBarWidth, 0);
    m_header->addLayout(words, 1);
    m_column->addLayout(m_header);
    m_bindings.watch(context.state.language, [this, titleLabel, title] {
        titleLabel->setText(m_context.text(title));
        setSubtitle(m_subtitle);
    });
}

void WizardPage::resizeEvent(QResizeEvent*) {
    m_subtitleLabel->setVisible(height() >= lowPage);
}

void WizardPage::setSubtitle(L10nKey subtitle) {
    m_subtitle = subtitle;
    m_subtitleLabel->setText(m_context.text(subtitle));
}

void WizardPage::addBesideTitle(QWidget* widget) {
    m_header->addWidget(widget, 0, Qt::AlignVCenter);
}

QScrollArea* WizardPage::addScrolled(QWidget* content) {
    auto* scroll = new PageScroll(this);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(content);
    m_column->addWidget(scroll, 1);
    return scroll;
}

void WizardPage::addUnscrolled(QWidget* widget, int stretch) {
    auto* row = new QHBoxLayout;
    row->setContentsMargins(cardMargin, 0, cardMargin + scrollBarWidth, 0);
    row->addWidget(widget);
    m_column->addLayout(row, stretch);
}

}
