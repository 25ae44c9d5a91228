#include "ui/wizard/PageHeader.h"

#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"
#include "ui/wizard/PageColumn.h"

#include <QVBoxLayout>

namespace pointloom {

PageHeader::PageHeader(const UiContext& context, L10nKey title, L10nKey subtitle, QWidget* parent)
    : QWidget(parent) {
    QLabel* titleLabel = Controls::label(Controls::TextRole::title, this);
    QLabel* subtitleLabel = Controls::label(Controls::TextRole::body, this);
    subtitleLabel->setProperty("role", QStringLiteral("quiet"));
    subtitleLabel->setWordWrap(true);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(cardRingRoom, 0, cardRingRoom, 0);
    column->setSpacing(Space::xs);
    column->addWidget(titleLabel);
    column->addWidget(subtitleLabel);
    m_bindings.watch(context.state.language, [context, titleLabel, subtitleLabel, title, subtitle] {
        titleLabel->setText(context.text(title));
        subtitleLabel->setText(context.text(subtitle));
    });
}

}
