// Finds or makes the small copy in which the preview seeks, in the background.
#pragma once

#include "media/Recording.h"
#include "ui/common/BackgroundTask.h"
#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <memory>
#include <optional>
#include <QObject>

namespace pointloom {

class QuickPictures : public QObject {
    Q_OBJECT

public:
    explicit QuickPictures(const UiContext& context, QObject* parent = nullptr);
    ~QuickPictures() override;

    /// Begins with a video, in place of the one before. Nothing is done while this is switched off.
    void open(const media::Recording& video);
    void close();

    void setEnabled(bool enabled);

    /// Of the copy that is being made, 0..1; empty while none is.
    std::optional<double> progress() const { return m_progress; }

Q_SIGNALS:
    /// The preview shows this file from now on; an empty path stands for the video itself.
    void found(const QString& copy);
    void progressChanged();

private:
    struct Pause;

    void start();
    void stop();
    void followExport();
    void setProgress(std::optional<double> progress);

    UiContext m_context;
    std::optional<media::Recording> m_video;
    bool m_isEnabled;
    std::optional<double> m_progress;
    std::shared_ptr<Pause> m_pause; // of the latest work
    BackgroundWorker m_worker;
    Bindings m_bindings;
};

}
