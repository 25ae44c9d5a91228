#include "ui/settings/Sheet.h"

#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <algorithm>
#include <QEvent>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace pointloom {

Sheet::Sheet(const UiContext& context, int characters, QWidget* parent)
    : QDialog(parent)
    , m_context(context)
    , m_title(Controls::label(Controls::TextRole::title, this))
    , m_body(new QVBoxLayout)
    , m_footer(new QHBoxLayout)
    , m_done(Controls::button(Controls::ButtonKind::primary, this)) {
    setMinimumWidth(fontMetrics().averageCharWidth() * characters + 2 * Space::xl);
    m_body->setSpacing(Space::l);
    m_footer->setSpacing(Space::s);
    m_footer->addStretch();
    m_footer->addWidget(m_done);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Space::xl, Space::xl, Space::xl, Space::l);
    layout->setSpacing(Space::l);
    layout->addWidget(m_title);
    layout->addLayout(m_body, 1);
    layout->addLayout(m_footer);
    m_done->setDefault(true);
    connect(m_done, &QPushButton::clicked, this, &QDialog::reject);
    inEachLanguage([this] { m_done->setText(m_context.text(L10nKey::done)); });
}

void Sheet::setTitle(const QString& title) {
    m_title->setText(title);
    setWindowTitle(title);
}

// Wrapped text has no smallest height of its own, and Qt makes dialogs no taller than two thirds of the
// screen.
bool Sheet::event(QEvent* event) {
    const bool result = QDialog::event(event);
    const bool mayNeedMore = event->type() == QEvent::LayoutRequest || event->type() == QEvent::Polish ||
                             (event->type() == QEvent::Resize && isVisible());
    if (mayNeedMore && layout())
        setMinimumHeight(layout()->totalHeightForWidth(std::max(width(), minimumWidth())));
    return result;
}

QLabel* Sheet::paragraph(QWidget* parent, bool isQuiet) {
    QLabel* label = Controls::label(isQuiet ? Controls::TextRole::quiet : Controls::TextRole::body, parent);
    label->setWordWrap(true);
    return label;
}

}
