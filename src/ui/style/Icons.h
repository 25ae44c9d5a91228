// Icons in one line style, tinted with the colours of the theme.
#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QString>

namespace pointloom::Icons {

/// Registers the icon files for style sheets; the functions below do so themselves.
void makeAvailable();

/// The icon `name` (a file of the icons folder without its ending) in the text colour, dimmed when
/// disabled, in the accent colour when checked. Sharp at every scale.
QIcon icon(const QString& name);

/// The icon with a side of `size` points in one colour.
QPixmap pixmap(const QString& name, int size, const QColor& color, double devicePixelRatio);

}
