// Keeps a screen of the setup readable on wide windows: one column in the middle.
#pragma once

class QScrollArea;
class QVBoxLayout;
class QWidget;

namespace pointloom {

/// Gives `page` its margins and a column of limited width in the middle; returns that column.
QVBoxLayout* pageColumn(QWidget* page);

/// A scroll area without a frame around `content`, which it takes over.
QScrollArea* scrollAround(QWidget* content, QWidget* parent);

}
