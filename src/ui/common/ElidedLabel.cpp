#include "ui/common/ElidedLabel.h"

namespace pointloom {

void ElidedLabel::setFullText(const QString& text) {
    m_fullText = text;
    setToolTip(text);
    setAccessibleName(text);
    updateGeometry();
    elide();
}

QSize ElidedLabel::sizeHint() const {
    return {fontMetrics().horizontalAdvance(m_fullText) + 1, QLabel::sizeHint().height()};
}

void ElidedLabel::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    elide();
}

void ElidedLabel::elide() {
    setText(fontMetrics().elidedText(m_fullText, Qt::ElideRight, width()));
}

}
