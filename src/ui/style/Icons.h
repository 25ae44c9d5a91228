// The drawn icons: one line style, tinted from the colours in use.
#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QString>

namespace pointloom::Icons {

/// Registers the icon files, for style sheets that name them; the functions below do so by themselves.
void makeAvailable();

/// The icon `name` (a file of the icons folder without its ending) in the text colour, dimmed when
/// disabled, in the accent colour when checked. Sharp at every scale.
QIcon icon(const QString& name);

/// The icon as a picture of `size` points in one colour.
QPixmap pixmap(const QString& name, int size, const QColor& color, double devicePixelRatio);

}
