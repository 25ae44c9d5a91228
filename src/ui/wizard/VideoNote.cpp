#include "ui/wizard/VideoNote.h"

#include "l10n/Format.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"
#include "ui/wizard/WizardFlow.h"

#include <QAccessible>
#include <QHBoxLayout>

namespace pointloom {

VideoNote::VideoNote(const UiContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_icon(new QLabel(this))
    , m_words(new ElidedLabel(this)) {
    Controls::setRole(m_words, Controls::TextRole::quiet);
    m_words->setTextFormat(Qt::PlainText);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Space::s);
    row->addWidget(m_icon);
    row->addWidget(m_words, 1);
    tintIcon();
    connect(&Theme::shared(), &Theme::changed, this, &VideoNote::tintIcon);
    AppState& state = m_context.state;
    m_bindings.watchAll([this] { showVideo(); }, state.videoURL, state.step, state.language);
}

void VideoNote::showVideo() {
    const auto& url = m_context.state.videoURL.value();
    const bool isShown = url && m_context.state.step < Screen::video;
    m_words->setFullText(isShown ? format(m_context.text(L10nKey::videoChosen), url->fileName()) : QString());
    const bool appears = isShown && isHidden();
    setVisible(isShown);
    if (appears) {
        QAccessibleEvent alert(m_words, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

void VideoNote::tintIcon() {
    constexpr int side = 20;
    m_icon->setPixmap(Icons::pixmap(QStringLiteral("film"), side, tokens().accent, devicePixelRatioF()));
}

}
