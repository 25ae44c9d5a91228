#include "playback/PictureFit.h"

#include <gtest/gtest.h>

namespace pointloom::playback {

TEST(PictureFit, PictureKeepsItsShapeInTheMiddle) {
    EXPECT_EQ(fitPicture({1920, 1080}, {0, 0, 960, 740}), QRect(0, 100, 960, 540));
    EXPECT_EQ(fitPicture({1080, 1920}, {0, 0, 960, 540}), QRect(328, 0, 304, 540));
    EXPECT_EQ(fitPicture({4, 4}, {10, 20, 100, 50}), QRect(35, 20, 50, 50));
}

TEST(PictureFit, ExtremeShapesStayVisible) {
    EXPECT_EQ(fitPicture({10000, 1}, {0, 0, 100, 100}).size(), QSize(100, 1));
    EXPECT_EQ(fitPicture({}, {0, 0, 100, 50}), QRect(0, 0, 100, 50));
    EXPECT_EQ(fitPicture({16, 9}, {0, 0, 0, 50}), QRect(0, 0, 0, 50));
}

}
