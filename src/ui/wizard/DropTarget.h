// A large dashed field to drop a file on or to click for a dialog.
#pragma once

#include <QAbstractButton>

class QMimeData;

namespace pointloom {

/// The local files of a drag.
QStringList droppedFiles(const QMimeData* data);

class DropTarget final : public QAbstractButton {
    Q_OBJECT

public:
    explicit DropTarget(QWidget* parent);

    /// `invitation` is shown large, the others below it. An error replaces `formats`.
    void setTexts(const QString& invitation, const QString& alternative, const QString& formats);
    void setError(const QString& message); // empty for none
    void setBusy(const QString& message);  // empty for none
    void setHighlighted(bool isHighlighted);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void paintWords(QPainter& painter, const QRectF& area);

    QString m_alternative;
    QString m_formats;
    QString m_error;
    QString m_busy;
    bool m_isHighlighted = false;
};

}
