// The choices of an export: size, format and watermark.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/export/OptionCard.h"
#include "ui/export/WatermarkBox.h"
#include "ui/style/Bindings.h"

#include <QButtonGroup>
#include <QLabel>
#include <QWidget>

namespace pointloom {

class ExportOptionsPanel : public QWidget {
    Q_OBJECT

public:
    ExportOptionsPanel(const UiContext& context, QWidget* parent);

    ExportPreset preset() const { return static_cast<ExportPreset>(m_presets.checkedId()); }
    ExportFormat format() const { return static_cast<ExportFormat>(m_formats.checkedId()); }

Q_SIGNALS:
    void presetChanged();
    void formatChanged();

private:
    void build();
    void bind();
    void showWords();
    void showShapes();
    QSizeF shapeOf(ExportPreset preset) const;
    QString detailOf(ExportPreset preset) const;
    OptionCard* card(const QButtonGroup& group, int id) const;

    UiContext m_context;
    QLabel* m_sizeHeading;
    QLabel* m_formatHeading;
    QLabel* m_watermarkHeading;
    WatermarkBox* m_watermark;
    QButtonGroup m_presets; // numbers are the presets
    QButtonGroup m_formats;
    Bindings m_bindings; // ends first
};

}
