// A large dashed field that takes a dropped file or opens a dialog when clicked.
#pragma once

#include <QAbstractButton>

class QMimeData;

namespace pointloom {

/// The file that a drag brings, if it brings one of this machine.
QString droppedFile(const QMimeData* data);

class DropTarget final : public QAbstractButton {
    Q_OBJECT

public:
    explicit DropTarget(QWidget* parent);

    /// What to do, in large letters, and how else, below. An error takes the place of the format line.
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
