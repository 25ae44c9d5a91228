#include "ui/common/Commands.h"

#include "l10n/L10nKey.h"

#include <algorithm>

namespace pointloom {

namespace {

// clang-format off

constexpr auto ctrlShift = Qt::CTRL | Qt::SHIFT;

using enum CommandGroup;

constexpr CommandRow rows[] = {
    {.id = Command::playPause, .group = editor, .does = L10nKey::helpPlayPause, .title = L10nKey::commandPlayPause, .keys = {Qt::Key_Space}},
    {.id = Command::frameBack, .group = editor, .does = L10nKey::helpStepFrame, .title = L10nKey::editorStepBack, .keys = {Qt::Key_Left}, .repeats = true},
    {.id = Command::frameForward, .group = editor, .does = L10nKey::helpStepFrame, .title = L10nKey::editorStepForward, .keys = {Qt::Key_Right}, .repeats = true},
    {.id = Command::secondBack, .group = editor, .does = L10nKey::helpStepSecond, .title = L10nKey::commandSecondBack, .keys = {Qt::SHIFT | Qt::Key_Left}, .repeats = true},
    {.id = Command::secondForward, .group = editor, .does = L10nKey::helpStepSecond, .title = L10nKey::commandSecondForward, .keys = {Qt::SHIFT | Qt::Key_Right}, .repeats = true},
    {.id = Command::previousMarker, .group = editor, .does = L10nKey::helpStepMarker, .title = L10nKey::commandPreviousMarker, .keys = {Qt::Key_Up}, .repeats = true},
    {.id = Command::nextMarker, .group = editor, .does = L10nKey::helpStepMarker, .title = L10nKey::commandNextMarker, .keys = {Qt::Key_Down}, .repeats = true},
    {.id = Command::previousRallyEnd, .group = editor, .does = L10nKey::helpStepRallyEnd, .title = L10nKey::commandPreviousRallyEnd, .keys = {Qt::Key_B}, .repeats = true},
    {.id = Command::nextRallyEnd, .group = editor, .does = L10nKey::helpStepRallyEnd, .title = L10nKey::commandNextRallyEnd, .keys = {Qt::Key_N}, .repeats = true},
    {.id = Command::jumpBack, .group = editor, .does = L10nKey::helpShuttle, .title = L10nKey::commandJumpBack, .keys = {Qt::Key_J}, .repeats = true},
    {.id = Command::pause, .group = editor, .does = L10nKey::helpShuttle, .title = L10nKey::commandPause, .keys = {Qt::Key_K}},
    {.id = Command::playFaster, .group = editor, .does = L10nKey::helpShuttle, .title = L10nKey::commandPlayFaster, .keys = {Qt::Key_L}},
    {.id = Command::goToStart, .group = editor, .does = L10nKey::helpStartEnd, .title = L10nKey::editorGoToStart, .keys = {Qt::Key_Home}},
    {.id = Command::goToEnd, .group = editor, .does = L10nKey::helpStartEnd, .title = L10nKey::editorGoToEnd, .keys = {Qt::Key_End}},
    {.id = Command::goToTime, .group = editor, .does = L10nKey::helpGoToTime, .title = L10nKey::commandGoToTime, .keys = {Qt::Key_G}},
    {.id = Command::playKept, .group = editor, .does = L10nKey::helpPlayKept, .title = L10nKey::editorPlayKept, .keys = {Qt::Key_P}},
    {.id = Command::addMarker, .group = editor, .does = L10nKey::helpAddMarker, .title = L10nKey::addMarker, .keys = {Qt::Key_M, Qt::Key_Plus}, .hiddenKeys = {Qt::SHIFT | Qt::Key_Plus}},
    {.id = Command::pointFirst, .group = editor, .does = L10nKey::helpPoint, .title = L10nKey::commandPointFirst, .keys = {Qt::Key_1}},
    {.id = Command::pointSecond, .group = editor, .does = L10nKey::helpPoint, .title = L10nKey::commandPointSecond, .keys = {Qt::Key_2}},
    {.id = Command::pointBackFirst, .group = editor, .does = L10nKey::helpPointBack, .title = L10nKey::commandPointBackFirst, .keys = {Qt::SHIFT | Qt::Key_1}},
    {.id = Command::pointBackSecond, .group = editor, .does = L10nKey::helpPointBack, .title = L10nKey::commandPointBackSecond, .keys = {Qt::SHIFT | Qt::Key_2}},
    {.id = Command::swapServe, .group = editor, .does = L10nKey::helpSwapServe, .title = L10nKey::editorSwapServe, .keys = {Qt::Key_S}},
    {.id = Command::trimStart, .group = editor, .does = L10nKey::helpTrim, .title = L10nKey::timelineTrimStart, .keys = {Qt::Key_I}},
    {.id = Command::trimEnd, .group = editor, .does = L10nKey::helpTrim, .title = L10nKey::timelineTrimEnd, .keys = {Qt::Key_O}},
    {.id = Command::addCut, .group = editor, .does = L10nKey::helpCut, .title = L10nKey::timelineAddCut, .keys = {Qt::Key_C}},
    {.id = Command::deleteSelection, .group = editor, .does = L10nKey::helpDelete, .title = L10nKey::remove, .keys = {Qt::Key_Delete}, .hiddenKeys = {Qt::Key_Backspace}},
    {.id = Command::renameMarker, .group = editor, .does = L10nKey::helpRenameMarker, .title = L10nKey::undoRenameMarker, .keys = {Qt::Key_F2}},
    {.id = Command::moveScoreboard, .group = editor, .does = L10nKey::helpMoveScoreboard, .fixedKeys = L10nKey::keysArrows},
    {.id = Command::scaleScoreboard, .group = editor, .does = L10nKey::helpScaleScoreboard, .fixedKeys = L10nKey::keysControlArrows},
    {.id = Command::goToItem, .group = editor, .does = L10nKey::helpTimelineItems, .fixedKeys = L10nKey::keysTimelineItems},
    {.id = Command::moveItem, .group = editor, .does = L10nKey::helpTimelineMove, .fixedKeys = L10nKey::keysTimelineMove},
    {.id = Command::zoomIn, .group = editor, .does = L10nKey::helpZoom, .title = L10nKey::timelineZoomIn, .keys = {Qt::CTRL | Qt::Key_Plus}, .hiddenKeys = {ctrlShift | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal}, .repeats = true},
    {.id = Command::zoomOut, .group = editor, .does = L10nKey::helpZoom, .title = L10nKey::timelineZoomOut, .keys = {Qt::CTRL | Qt::Key_Minus}, .repeats = true},
    {.id = Command::zoomToFit, .group = editor, .does = L10nKey::helpZoom, .title = L10nKey::timelineFit, .keys = {Qt::CTRL | Qt::Key_0}},
    {.id = Command::previewFrame, .group = editor, .title = L10nKey::previewFrame},
    {.id = Command::editNames, .group = editor, .title = L10nKey::commandEditNames},
    {.id = Command::resetScoreboardPlace, .group = editor, .title = L10nKey::commandResetPlace},
    {.id = Command::resetScoreboardSize, .group = editor, .title = L10nKey::commandResetSize},
    {.id = Command::undo, .does = L10nKey::commandUndo, .title = L10nKey::commandUndo, .keys = {Qt::CTRL | Qt::Key_Z}},
    {.id = Command::redo, .does = L10nKey::commandRedo, .title = L10nKey::commandRedo, .keys = {ctrlShift | Qt::Key_Z, Qt::CTRL | Qt::Key_Y}},
    {.id = Command::goToSport, .does = L10nKey::helpPages, .title = L10nKey::stepSport, .keys = {Qt::CTRL | Qt::Key_1}},
    {.id = Command::goToScoreboard, .does = L10nKey::helpPages, .title = L10nKey::templateLabel, .keys = {Qt::CTRL | Qt::Key_2}},
    {.id = Command::goToMatch, .does = L10nKey::helpPages, .title = L10nKey::stepMatch, .keys = {Qt::CTRL | Qt::Key_3}},
    {.id = Command::goToVideo, .does = L10nKey::helpPages, .title = L10nKey::stepVideo, .keys = {Qt::CTRL | Qt::Key_4}},
    {.id = Command::goToEditor, .does = L10nKey::helpPages, .title = L10nKey::stepEditor, .keys = {Qt::CTRL | Qt::Key_5}},
    {.id = Command::newSession, .does = L10nKey::helpStartOver, .title = L10nKey::commandNewSession, .keys = {Qt::CTRL | Qt::Key_N}},
    {.id = Command::openVideo, .does = L10nKey::helpOpenVideo, .title = L10nKey::commandOpenVideo, .keys = {Qt::CTRL | Qt::Key_O}},
    {.id = Command::openProject, .does = L10nKey::helpOpenProject, .title = L10nKey::commandOpenProject, .keys = {ctrlShift | Qt::Key_O}},
    {.id = Command::saveProject, .does = L10nKey::helpSaveProject, .title = L10nKey::commandSaveProject, .keys = {Qt::CTRL | Qt::Key_S}},
    {.id = Command::saveProjectAs, .does = L10nKey::helpSaveProjectAs, .title = L10nKey::commandSaveProjectAs, .keys = {ctrlShift | Qt::Key_S}},
    {.id = Command::exportVideo, .does = L10nKey::helpExport, .title = L10nKey::commandExportVideo, .keys = {ctrlShift | Qt::Key_E}},
    {.id = Command::showQueue, .title = L10nKey::commandShowQueue},
    {.id = Command::showPreferences, .does = L10nKey::preferencesTitle, .title = L10nKey::commandPreferences, .keys = {Qt::CTRL | Qt::Key_Comma}},
    {.id = Command::showHelp, .does = L10nKey::helpThisHelp, .title = L10nKey::commandHelp, .keys = {Qt::CTRL | Qt::Key_Question, Qt::Key_F1}},
    {.id = Command::quit, .does = L10nKey::commandQuit, .title = L10nKey::commandQuit, .keys = {Qt::CTRL | Qt::Key_Q}},
    {.id = Command::showAbout, .title = L10nKey::commandAbout},
    {.id = Command::showLicence, .title = L10nKey::commandLicence},
    {.id = Command::downloadSampleCSV, .title = L10nKey::commandSampleCsv},
    {.id = Command::openSample, .title = L10nKey::commandOpenSample},
    {.id = Command::showNews, .title = L10nKey::commandShowNews},
};
// clang-format on

}

std::span<const CommandRow> commandTable() {
    return rows;
}

const CommandRow& commandRow(Command command) {
    return *std::ranges::find(rows, command, &CommandRow::id);
}

}
