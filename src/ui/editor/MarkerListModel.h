// The session's markers as rows of an item model.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <QAbstractListModel>
#include <QSet>

namespace pointloom {

/// Updates row by row, so that selection, scrolling and a label being edited survive edits of other markers.
/// Editing a row's text renames its marker.
class MarkerListModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        HoldsRole = Qt::UserRole, // whether it is the marker whose score holds at the playhead
        BreaksRole,               // whether it was entered by hand next to counted points
    };

    explicit MarkerListModel(const UiContext& context, QObject* parent = nullptr);

    const Marker& marker(int row) const { return m_markers.at(static_cast<std::size_t>(row)); }
    /// -1 for an unknown identifier.
    int rowOf(const std::optional<QUuid>& id) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    void followMarkers();
    void followPlayhead();
    void followCount();

    UiContext m_context;
    std::vector<Marker> m_markers; // what the rows show now
    std::optional<QUuid> m_holding;
    QSet<QUuid> m_breaks;
    Bindings m_bindings;
};

}
