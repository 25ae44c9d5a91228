// The files of a split recording, with length and gap, each of which can be left out.
#pragma once

#include "ui/common/BackgroundTask.h"
#include "ui/common/RecordingOffer.h"
#include "ui/style/Bindings.h"

#include <QScrollArea>

class QGridLayout;

namespace pointloom {

/// Hidden unless the session's video has several files.
class RecordingList final : public QScrollArea {
    Q_OBJECT

public:
    RecordingList(const UiContext& context, QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void chosen(const pointloom::media::Recording& remaining);

private:
    void read();
    void show(const std::vector<RecordedFile>& files);

    UiContext m_context;
    BackgroundTask<std::vector<RecordedFile>> m_reading;
    Bindings m_bindings;
};

}
