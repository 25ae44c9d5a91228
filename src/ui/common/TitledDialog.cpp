#include "ui/common/TitledDialog.h"

#include "ui/common/Dialogs.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <algorithm>
#include <QEvent>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QShowEvent>
#include <QVBoxLayout>

namespace pointloom {

TitledDialog::TitledDialog(const UiContext& context, int characters, QWidget* parent)
    : QDialog(parent)
    , m_context(context)
    , m_title(Controls::label(Controls::TextRole::title, this))
    , m_area(new QScrollArea(this))
    , m_body(new QVBoxLayout)
    , m_footer(new QHBoxLayout)
    , m_done(Controls::button(Controls::ButtonKind::primary, this)) {
    setMinimumWidth(fontMetrics().averageCharWidth() * characters + 2 * Space::xl);
    auto* content = new QWidget(m_area);
    content->setLayout(m_body);
    m_body->setContentsMargins(0, 0, 0, 0);
    m_body->setSpacing(Space::l);
    content->installEventFilter(this);
    m_area->setWidget(content);
    m_area->setWidgetResizable(true);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_area->setFocusPolicy(Qt::NoFocus);
    m_area->setMinimumHeight(1); // until it is known
    m_footer->setSpacing(Space::s);
    m_footer->addStretch();
    m_footer->addWidget(m_done);
    auto* layout = Controls::layout<QVBoxLayout>(this, {Space::xl, Space::xl, Space::xl, Space::l}, Space::l);
    layout->addWidget(m_title);
    layout->addWidget(m_area, 1);
    layout->addLayout(m_footer);
    m_done->setDefault(true);
    connect(m_done, &QPushButton::clicked, this, &QDialog::reject);
    inEachLanguage([this] { m_done->setText(m_context.text(L10nKey::done)); });
}

void TitledDialog::setTitle(const QString& title) {
    m_title->setText(title);
    setWindowTitle(title);
}

bool TitledDialog::event(QEvent* event) {
    const bool result = QDialog::event(event);
    const bool mayNeedMore = event->type() == QEvent::LayoutRequest || event->type() == QEvent::Polish ||
                             (event->type() == QEvent::Resize && isVisible());
    if (mayNeedMore && layout())
        giveBodyItsHeight();
    return result;
}

// Changes of the body do not reach the dialog by themselves: the scroll area keeps them.
bool TitledDialog::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::LayoutRequest)
        giveBodyItsHeight();
    return QDialog::eventFilter(watched, event);
}

// Wrapped text has no smallest height of its own, and Qt makes dialogs no taller than two thirds of the
// screen.
void TitledDialog::giveBodyItsHeight() {
    const QMargins margins = layout()->contentsMargins();
    const int bodyWidth = std::max(width(), minimumWidth()) - margins.left() - margins.right();
    const int wanted = m_body->hasHeightForWidth() ? m_body->totalHeightForWidth(bodyWidth)
                                                   : m_body->totalMinimumSize().height();
    const int others = layout()->totalMinimumSize().height() - m_area->minimumHeight();
    const int least = std::min(wanted, fontMetrics().lineSpacing() * 5);
    m_area->setMinimumHeight(std::clamp(availableSize(*this).height() - others, least, wanted));
    setMinimumHeight(others + m_area->minimumHeight());
}

void TitledDialog::shrinkToBody() {
    giveBodyItsHeight();
    resize(width(), minimumHeight());
}

void TitledDialog::showEvent(QShowEvent* event) {
    if (testAttribute(Qt::WA_Resized))
        resize(size().boundedTo(availableSize(*this)));
    else
        shrinkToBody();
    if (!event->spontaneous()) // where it stays when it is minimised and comes back
        placeOverWindow(*this);
    QDialog::showEvent(event);
}

QLabel* TitledDialog::paragraph(QWidget* parent, bool isQuiet) {
    QLabel* label = Controls::label(isQuiet ? Controls::TextRole::quiet : Controls::TextRole::body, parent);
    label->setWordWrap(true);
    return label;
}

}
