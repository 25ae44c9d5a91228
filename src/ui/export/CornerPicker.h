// Picks the corner that the watermark goes into, on a small frame in the shape of the export.
#pragma once

#include "export/ExportSettings.h"

#include <QButtonGroup>
#include <QRadioButton>
#include <QSizeF>
#include <QWidget>

namespace pointloom {

/// Four radio buttons, one a corner; arrow keys go from one to the next.
class CornerPicker : public QWidget {
    Q_OBJECT

public:
    explicit CornerPicker(QWidget* parent = nullptr);

    void setCorner(WatermarkCorner corner);
    void setCornerName(WatermarkCorner corner, const QString& name);
    void setShape(QSizeF shape);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    void picked(WatermarkCorner corner);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QRectF frame() const;
    void placeButtons();

    QButtonGroup m_buttons; // its numbers are the corners
    QSizeF m_shape{16, 9};
};

}
