// List of the session's markers: selected, renamed in place, sought.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/editor/MarkerListModel.h"
#include "ui/style/Tokens.h"

#include <QListView>

namespace pointloom {

class MarkerListView : public QListView {
    Q_OBJECT

public:
    explicit MarkerListView(const UiContext& context, QWidget* parent = nullptr);

    /// Opens the field for the label of the selected marker.
    void renameSelected();

    QSize sizeHint() const override { return minimumSizeHint(); }
    /// A few rows.
    QSize minimumSizeHint() const override { return {200, 2 * (fontMetrics().height() + 2 * Space::s)}; }

Q_SIGNALS:
    /// The user chose a marker; `seconds` is its time.
    void seekRequested(double seconds);
    void addMarkerRequested();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    void jumpTo(const QModelIndex& index);
    void showSelection();

    UiContext m_context;
    MarkerListModel m_model;
    bool m_isFollowing = false; // the session's selection, which is no jump
    Bindings m_bindings;
};

}
