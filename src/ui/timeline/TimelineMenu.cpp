#include "ui/timeline/TimelineMenu.h"

#include "ui/common/CommandMenu.h"
#include "ui/timeline/MarkerDrop.h"

#include <algorithm>
#include <cmath>

namespace pointloom {

namespace {

class MenuMaker {
public:
    MenuMaker(CommandMenu& menu, const UiContext& context, const TimelineScene& scene,
              const std::function<void(Command)>& run)
        : m_menu(menu)
        , m_context(context)
        , m_scene(scene)
        , m_run(run) {}

    void addForMarker(const QUuid& id) {
        const Flag* flag = m_scene.flags.find(id);
        if (!flag)
            return;
        const ClipFrames clip{1 / m_scene.frameRate, m_scene.scale.duration()};
        add(L10nKey::timelineToPlayhead, std::abs(flag->time - m_scene.playhead) >= clip.frame / 2,
            [context = m_context, id, clip] { dropMarker(context, id, context.state.currentTime, clip); });
        m_menu.addSeparator();
        add(Command::swapServe);
        add(Command::renameMarker);
        add(Command::deleteSelection);
    }

    void addForCut(const QUuid& id) {
        const auto cut = std::ranges::find(m_scene.cuts, id, &CutZone::id);
        if (cut == m_scene.cuts.end())
            return;
        const auto [start, end] = std::minmax(cut->start, cut->end);
        const double playhead = m_scene.playhead;
        add(L10nKey::timelineCutEndsHere, playhead > start && playhead != end,
            [context = m_context, id, start = start] {
                context.state.updateCut({id, start, context.state.currentTime}, &context.undo);
            });
        m_menu.addSeparator();
        add(Command::deleteSelection);
    }

    void addForTrimStart() {
        add(Command::trimStart);
        add(L10nKey::timelineWholeStart, m_scene.trim.start > 0, [context = m_context] {
            context.state.setTrim({0, context.state.trimEnd}, &context.undo);
        });
    }

    void addForTrimEnd() {
        add(Command::trimEnd);
        add(L10nKey::timelineWholeEnd, m_scene.trim.end.has_value(), [context = m_context] {
            context.state.setTrim({context.state.trimStart, {}}, &context.undo);
        });
    }

    void addForTime() {
        add(Command::addMarker);
        m_menu.addSeparator();
        add(Command::trimStart);
        add(Command::trimEnd);
        add(Command::addCut);
        m_menu.addSeparator();
        add(Command::zoomIn);
        for (const Command command : {Command::zoomOut, Command::zoomToFit})
            add(command)->setEnabled(!m_scene.scale.isFitted());
    }

private:
    QAction* add(Command command) {
        return m_menu.add(command, [run = m_run, command] { run(command); });
    }

    void add(L10nKey text, bool isPossible, std::function<void()> run) {
        QAction* action = m_menu.addAction(m_context.text(text));
        action->setEnabled(isPossible);
        QObject::connect(action, &QAction::triggered, action, std::move(run));
    }

    CommandMenu& m_menu;
    const UiContext& m_context;
    const TimelineScene& m_scene;
    const std::function<void(Command)>& m_run;
};

}

void fillTimelineMenu(CommandMenu& menu, const UiContext& context, const TimelineScene& scene,
                      const TimelineHit& hit, const std::function<void(Command)>& run) {
    using Kind = TimelineHit::Kind;
    MenuMaker maker(menu, context, scene, run);
    switch (hit.kind) {
    case Kind::marker:
        return maker.addForMarker(hit.id);
    case Kind::cut:
    case Kind::cutStart:
    case Kind::cutEnd:
        return maker.addForCut(hit.id);
    case Kind::trimStart:
        return maker.addForTrimStart();
    case Kind::trimEnd:
        return maker.addForTrimEnd();
    case Kind::time:
    case Kind::trimLane:
        return maker.addForTime();
    case Kind::nothing:
        break;
    }
}

}
