// A scoreboard template on its card, drawn by the template itself over a court out of focus.
#pragma once

#include "model/MatchConfig.h"
#include "render/TemplateID.h"
#include "ui/wizard/PickerCard.h"

#include <QPixmap>

namespace pointloom {

class TemplateCard final : public PickerCard {
    Q_OBJECT

public:
    TemplateCard(TemplateID templateID, SportID sport, QWidget* parent);

protected:
    double pictureShape() const override;
    void paintPicture(QPainter& painter, const QRectF& area) override;

private:
    QPixmap drawPicture(QSizeF size) const;

    TemplateID m_templateID;
    SportID m_sport;
    QPixmap m_picture; // kept until the size changes
    QSizeF m_pictureSize;
};

}
