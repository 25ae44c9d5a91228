#include "ui/editor/MessageBar.h"

#include "ui/style/Announcement.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <QPainter>
#include <QVBoxLayout>

namespace pointloom {

MessageBar::MessageBar(const UiContext& context, QWidget* parent)
    : QFrame(parent)
    , m_icon(new QLabel(this))
    , m_message(Controls::label(Controls::TextRole::body, this))
    , m_detail(Controls::label(Controls::TextRole::quiet, this))
    , m_firstAction(Controls::button(Controls::ButtonKind::normal, this))
    , m_secondAction(Controls::button(Controls::ButtonKind::plain, this))
    , m_close(Controls::iconButton(QStringLiteral("close"), this))
    , m_actions(new QBoxLayout(QBoxLayout::LeftToRight)) {
    auto* words = new QVBoxLayout;
    words->setSpacing(2);
    for (QLabel* label : {m_message, m_detail}) {
        label->setWordWrap(true);
        label->setTextFormat(Qt::PlainText);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        words->addWidget(label);
    }
    auto* head = new QHBoxLayout;
    head->setSpacing(Space::s);
    head->addWidget(m_icon, 0, Qt::AlignTop);
    head->addLayout(words, 1);
    head->addWidget(m_close, 0, Qt::AlignTop);
    for (QPushButton* action : {m_firstAction, m_secondAction})
        action->setFocusPolicy(Qt::TabFocus); // a click leaves the keys with the editor
    m_actions->setSpacing(Space::s);
    m_actions->addStretch(1);
    m_actions->addWidget(m_secondAction);
    m_actions->addWidget(m_firstAction);
    auto* column = Controls::layout<QVBoxLayout>(this, {Space::m, Space::s, Space::s, Space::s}, Space::s);
    column->addLayout(head);
    column->addLayout(m_actions);

    const auto tint = [this] {
        constexpr int side = 20;
        m_icon->setPixmap(
            Icons::pixmap(QStringLiteral("warning"), side, tokens().warning, devicePixelRatioF()));
    };
    tint();
    connect(&Theme::shared(), &Theme::changed, this, tint);
    connect(m_firstAction, &QPushButton::clicked, this, &MessageBar::firstActionChosen);
    connect(m_secondAction, &QPushButton::clicked, this, &MessageBar::secondActionChosen);
    connect(m_close, &QToolButton::clicked, this, &QWidget::hide);
    connect(m_close, &QToolButton::clicked, this, &MessageBar::closed);
    m_bindings.watch(context.state.language, [this, context] {
        Controls::setName(m_close, context.text(L10nKey::editorCloseMessage));
    });
    hide();
}

void MessageBar::showMessage(const QString& message, const QString& detail, const QString& firstAction,
                             const QString& secondAction) {
    m_message->setText(message);
    m_detail->setText(detail);
    m_detail->setVisible(!detail.isEmpty());
    m_firstAction->setText(firstAction);
    m_firstAction->setVisible(!firstAction.isEmpty());
    m_secondAction->setText(secondAction);
    m_secondAction->setVisible(!secondAction.isEmpty());
    arrangeActions();
    show();
    announce(*this, detail.isEmpty() ? message : message + u'\n' + detail);
}

void MessageBar::resizeEvent(QResizeEvent*) {
    arrangeActions();
}

// Side by side where both fit.
void MessageBar::arrangeActions() {
    const QMargins margins = layout()->contentsMargins();
    const int room = width() - margins.left() - margins.right();
    const int needed = m_firstAction->sizeHint().width() + Space::s + m_secondAction->sizeHint().width();
    const bool isWide = m_secondAction->text().isEmpty() || needed <= room;
    m_actions->setDirection(isWide ? QBoxLayout::LeftToRight : QBoxLayout::BottomToTop);
}

void MessageBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(tokens().warning, 1));
    painter.setBrush(tokens().surface);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Radius::field, Radius::field);
}

}
