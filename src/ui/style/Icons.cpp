#include "ui/style/Icons.h"

#include "ui/style/Theme.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

// Resources of a static library are not registered automatically. The macro needs the global namespace.
static void registerIcons() {
    Q_INIT_RESOURCE(icons);
}

namespace pointloom::Icons {

void makeAvailable() {
    static const bool isDone = (registerIcons(), true);
    Q_UNUSED(isDone);
}

namespace {

// The files name their colour "currentColor".
QByteArray tintedSource(const QString& name, const QColor& color) {
    makeAvailable();
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll().replace("currentColor", color.name().toUtf8());
}

class TintedIconEngine : public QIconEngine {
public:
    explicit TintedIconEngine(QString name)
        : m_name(std::move(name)) {}

    QIconEngine* clone() const override { return new TintedIconEngine(m_name); } // QIcon owns it

    void paint(QPainter* painter, const QRect& rectangle, QIcon::Mode mode, QIcon::State state) override {
        const ColorTokens& colors = tokens();
        QColor color = state == QIcon::On ? colors.accent : colors.text;
        if (mode == QIcon::Disabled)
            color = colors.quietText;
        QSvgRenderer(tintedSource(m_name, color)).render(painter, rectangle);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return picture;
    }

private:
    QString m_name;
};

}

QIcon icon(const QString& name) {
    return QIcon(new TintedIconEngine(name)); // QIcon owns it
}

QPixmap pixmap(const QString& name, int size, const QColor& color, double devicePixelRatio) {
    QPixmap picture(QSize(size, size) * devicePixelRatio);
    picture.setDevicePixelRatio(devicePixelRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    QSvgRenderer(tintedSource(name, color)).render(&painter, QRectF(0, 0, size, size));
    return picture;
}

}
