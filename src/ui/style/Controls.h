// Kinds of label, button and card that all screens are made of.
#pragma once

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QString>
#include <QToolButton>

class QApplication;

namespace pointloom {

/// A label of one line that ends in dots where its text is wider; its tool tip has all of it.
class ElidedLabel : public QLabel {
public:
    using QLabel::QLabel;

    void setFullText(const QString& text);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void elide();

    QString m_fullText;
};

/// Markup that shows the lines as they are, for tool tips with text from files.
QString plainToolTip(const QStringList& lines);

namespace Controls {

/// The wheel scrolls the page under a closed list, a spin box or a slider and never changes their values.
void keepWheelForPages(QApplication& application);

enum class TextRole { title, section, strong, body, quiet, danger, warning, success };
enum class ButtonKind { normal, primary, danger, plain };

/// A label that wraps nothing; sizes follow the desktop's font.
QLabel* label(TextRole role, QWidget* parent);

/// Gives a label another role.
void setRole(QLabel* label, TextRole role);

QPushButton* button(ButtonKind kind, QWidget* parent);

/// A button with an icon alone; give it a name.
QToolButton* iconButton(const QString& icon, QWidget* parent);

/// A rounded surface.
QFrame* card(QWidget* parent);

/// A line one point thick.
QFrame* separator(Qt::Orientation orientation, QWidget* parent);

/// The name of a control without a text, as its tool tip and for screen readers.
void setName(QWidget* control, const QString& name);

/// A layout for the children of `owner`; margins and spacing in points.
template <class Layout>
Layout* layout(QWidget* owner, QMargins margins, int spacing) {
    auto* result = new Layout(owner);
    result->setContentsMargins(margins);
    result->setSpacing(spacing);
    return result;
}

}

}
