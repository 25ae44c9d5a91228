// The picture with the scoreboard over it, or a hint while there is no video.
#pragma once

#include "playback/PlayerView.h"
#include "ui/editor/EditorPlayback.h"
#include "ui/editor/MessageBar.h"
#include "ui/editor/ScoreboardOverlayView.h"

#include <memory>

namespace pointloom {

class PictureStage : public QWidget {
    Q_OBJECT

public:
    /// `playback` outlives this.
    PictureStage(const UiContext& context, EditorPlayback& playback, QWidget* parent = nullptr);
    ~PictureStage() override;

    ScoreboardOverlayView& overlay() { return *m_overlay; }
    MessageBar& messages() { return *m_messages; }
    QSize minimumSizeHint() const override { return {320, 160}; }

Q_SIGNALS:
    void importRequested();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeEmptyState();
    void showPlayer(playback::Player& player);
    void showFailure(const QString& message, media::MediaFault fault);
    void showUnavailable(const QString& reason);
    void showWhatThereIs();
    void hostOverlay(QWidget* host);
    void place();
    QRectF videoRect() const;

    UiContext m_context;
    Bindings m_bindings; // before the parts that are made with it
    EditorPlayback& m_playback;
    QWidget* m_emptyState;
    ScoreboardOverlayView* m_overlay; // over the picture, a child of m_view as long as there is one
    MessageBar* m_messages;
    std::unique_ptr<playback::PlayerView> m_view;
};

}
