// The frame at the playhead exactly as it will be exported.
#pragma once

#include "ui/common/BackgroundTask.h"
#include "ui/common/UiContext.h"
#include "ui/export/StillView.h"
#include "ui/style/Bindings.h"

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>

namespace pointloom {

class FramePreview : public QDialog {
    Q_OBJECT

public:
    FramePreview(const UiContext& context, QWidget* parent);

private:
    void build();
    void bind();
    void showWords();
    void showZoom(bool isActualSize);
    void requestStill();
    QString place() const;
    void showStill();
    void offerRetry();
    void save();

    UiContext m_context;
    QLabel* m_title;
    QLabel* m_facts; // place in the clip and size
    QScrollArea* m_area;
    StillView* m_still;
    QPushButton* m_retry;
    QPushButton* m_actualSize;
    QPushButton* m_save;
    QPushButton* m_close;
    BackgroundTask<QString> m_saving; // why it failed; empty when it did not
    Bindings m_bindings;              // ends first
};

}
