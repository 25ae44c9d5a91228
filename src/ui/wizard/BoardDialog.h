// The editor of a board: its colours and choices, with the scoreboard above them.
#pragma once

#include "persistence/BoardFile.h"
#include "ui/common/UiContext.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

namespace pointloom {

class BoardPanel;
class ColorField;
class SegmentedControl;

class BoardDialog final : public QDialog {
    Q_OBJECT

public:
    /// `match` is drawn with the board; a kept board can be deleted.
    BoardDialog(const UiContext& context, const BoardFile& board, const MatchConfig& match, bool isKept,
                QWidget* parent);

    enum Outcome { cancelled = Rejected, saved = Accepted, deleted };

    /// As it is shown; the name is never empty.
    BoardFile board() const;

protected:
    void showEvent(QShowEvent* event) override;

private:
    struct ColorChoice {
        std::optional<BoardColor> BoardColors::*color;
        ColorField* field;
    };

    QWidget* makeColors();
    QWidget* makeChoices();
    QWidget* makeFooter(bool isKept);
    void addColor(L10nKey name, std::optional<BoardColor> BoardColors::*color, QWidget* parent);
    void showBoard();
    void showContrast();
    void saveAsFile();
    void askToDelete();

    UiContext m_context;
    BoardFile m_file;
    MatchConfig m_match;
    QImage m_logo; // stands for the match's
    BoardPanel* m_preview;
    QLabel* m_warning;
    QLineEdit* m_name = nullptr;
    std::vector<ColorChoice> m_colors;
};

}
