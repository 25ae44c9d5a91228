// A label that ends in dots where there is no room for all of it.
#pragma once

#include <QLabel>

namespace pointloom {

class ElidedLabel : public QLabel {
    Q_OBJECT

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

}
