// How one marker looks in the list: time, game, sets and label on one line.
#pragma once

#include "ui/common/UiContext.h"

#include <QStyledItemDelegate>

namespace pointloom {

class MarkerListModel;

class MarkerRowDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    MarkerRowDelegate(const UiContext& context, const MarkerListModel& model, QObject* parent);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

private:
    struct Columns {
        QRect time;
        QRect game;
        QRect rest; // sets, then the label
    };
    Columns columnsOf(const QStyleOptionViewItem& option) const;

    UiContext m_context;
    const MarkerListModel& m_model;
};

}
