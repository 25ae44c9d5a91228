// Chooses the watermark's picture and its corner.
#pragma once

#include "ui/common/BackgroundTask.h"
#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QSizeF>
#include <QToolButton>

namespace pointloom {

class CornerPicker;

class WatermarkBox : public QWidget {
    Q_OBJECT

public:
    WatermarkBox(const UiContext& context, QWidget* parent);

    /// Shape of the exported picture.
    void setShape(QSizeF shape);

private:
    void build();
    void bind();
    void showWords();
    void choose();
    void load();
    void showPicture();

    UiContext m_context;
    QLabel* m_thumbnail;
    QLabel* m_name;
    QLabel* m_fault;
    QPushButton* m_choose;
    QToolButton* m_remove;
    CornerPicker* m_corners;
    std::optional<QImage> m_picture; // null when it cannot be read; absent until that is known
    BackgroundTask<QImage> m_loading;
    Bindings m_bindings; // ends first
};

}
