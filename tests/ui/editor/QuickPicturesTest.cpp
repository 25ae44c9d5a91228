// The small copy in which the editor seeks: taken from the cache here, and switched off and on.
#include "export/preview/QuickCopy.h"
#include "persistence/KeptSegments.h"
#include "ui/editor/EditorFixture.h"

#include <QFile>

namespace pointloom::test {

namespace {

class QuickPicturesTest : public EditorFixture {
protected:
    bool showsCopy() const { return editor->playback().player()->showsCopy(); }
};

}

TEST_F(QuickPicturesTest, TheCopyIsShownAtTheSamePlaceUntilItIsSwitchedOff) {
    openEditor();
    openClip();
    const QString clip = state.videoURL.value()->toLocalFile();
    editor->playback().seek(2.2);
    ASSERT_TRUE(waitFor([&] { return !editor->playback().player()->isSeeking(); }));
    const double place = state.currentTime;
    const SegmentCache cache = KeptSegments::cache(defaults);
    const QString made = folder.path(QStringLiteral("made.mp4"));
    QuickCopy::make(clip, made, {});
    cache.keep(QuickCopy::keyOf(clip), made, {});
    editor->setQuickPictures(true);
    ASSERT_TRUE(waitFor([&] { return showsCopy(); }));
    ASSERT_TRUE(waitFor([&] { return !editor->playback().player()->isSeeking(); }));
    EXPECT_DOUBLE_EQ(state.currentTime, place);
    EXPECT_EQ(state.videoURL.value()->toLocalFile(), clip) << "exports and stills use the clip itself";

    editor->setQuickPictures(false);
    EXPECT_TRUE(waitFor([&] { return !showsCopy(); }));
    EXPECT_DOUBLE_EQ(state.currentTime, place);
    editor->setQuickPictures(true);
    ASSERT_TRUE(waitFor([&] { return showsCopy(); }));
    cache.clear();
    EXPECT_TRUE(waitFor([&] { return !showsCopy(); })) << "the cache was emptied";
}

}
