#include "ui/style/Controls.h"

#include "ui/style/Icons.h"
#include "ui/style/Tokens.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QScrollBar>
#include <QStyle>

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

QString plainToolTip(const QStringList& lines) {
    QString markup;
    for (const QString& line : lines)
        markup += QStringLiteral("<div style=\"white-space: pre\">%1</div>").arg(line.toHtmlEscaped());
    return markup;
}

namespace Controls {

namespace {

struct RoleLook {
    TextRole role;
    const char* name; // in the style sheet
    double scale;
    QFont::Weight weight;
};

constexpr RoleLook roleLooks[] = {
    {TextRole::title, "title", TypeScale::title, QFont::DemiBold},
    {TextRole::section, "section", TypeScale::section, QFont::DemiBold},
    {TextRole::strong, "strong", TypeScale::body, QFont::DemiBold},
    {TextRole::body, "body", TypeScale::body, QFont::Normal},
    {TextRole::quiet, "quiet", TypeScale::quiet, QFont::Normal},
    {TextRole::danger, "danger", TypeScale::body, QFont::Normal},
    {TextRole::warning, "warning", TypeScale::body, QFont::Normal},
    {TextRole::success, "success", TypeScale::body, QFont::Normal},
};

class WheelFilter final : public QObject {
public:
    using QObject::QObject;

protected:
    // Ignored, the event goes on to the parent of the control, and so to the page.
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Wheel || !changesByWheel(watched))
            return false;
        event->ignore();
        return true;
    }

private:
    static bool changesByWheel(const QObject* control) {
        return qobject_cast<const QComboBox*>(control) || qobject_cast<const QAbstractSpinBox*>(control) ||
               (qobject_cast<const QAbstractSlider*>(control) && !qobject_cast<const QScrollBar*>(control));
    }
};

constexpr const char* kindNames[] = {"normal", "primary", "danger", "plain"}; // in the order of ButtonKind

}

void keepWheelForPages(QApplication& application) {
    application.installEventFilter(new WheelFilter(&application));
}

QLabel* label(TextRole role, QWidget* parent) {
    auto* result = new QLabel(parent);
    setRole(result, role);
    return result;
}

void setRole(QLabel* label, TextRole role) {
    for (const RoleLook& look : roleLooks) {
        if (look.role != role)
            continue;
        QFont font = QFont();
        font.setPointSizeF(font.pointSizeF() * look.scale);
        font.setWeight(look.weight);
        label->setFont(font);
        label->setProperty("role", QString::fromUtf8(look.name));
        label->style()->unpolish(label);
        label->style()->polish(label);
    }
}

QPushButton* button(ButtonKind kind, QWidget* parent) {
    auto* result = new QPushButton(parent);
    result->setProperty("kind", QString::fromUtf8(kindNames[static_cast<std::size_t>(kind)]));
    result->setCursor(Qt::PointingHandCursor);
    result->setAutoDefault(true); // Enter presses it outside of dialogs too
    return result;
}

QToolButton* iconButton(const QString& icon, QWidget* parent) {
    auto* result = new QToolButton(parent);
    result->setProperty("kind", QStringLiteral("plain"));
    result->setIcon(Icons::icon(icon));
    result->setIconSize(QSize(20, 20));
    result->setFocusPolicy(Qt::TabFocus);
    return result;
}

QFrame* card(QWidget* parent) {
    auto* result = new QFrame(parent);
    result->setProperty("kind", QStringLiteral("card"));
    return result;
}

void setName(QWidget* control, const QString& name) {
    control->setAccessibleName(name);
    control->setToolTip(name);
}

QFrame* separator(Qt::Orientation orientation, QWidget* parent) {
    auto* result = new QFrame(parent);
    result->setProperty("kind", QStringLiteral("separator"));
    if (orientation == Qt::Horizontal)
        result->setFixedHeight(1);
    else
        result->setFixedWidth(1);
    return result;
}

}

}
