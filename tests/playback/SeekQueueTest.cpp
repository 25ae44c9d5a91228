#include "playback/SeekQueue.h"

#include <gtest/gtest.h>

namespace pointloom::playback {

namespace {

constexpr Seek exact(double time) {
    return {Seek::Kind::exact, time};
}

}

TEST(SeekQueue, OnlyTheNewestOfManySeeksFollowsTheOneUnderWay) {
    SeekQueue queue;
    EXPECT_EQ(queue.request(exact(1)), exact(1));
    for (int i = 2; i < 100; ++i)
        EXPECT_EQ(queue.request(exact(i)), std::nullopt);
    EXPECT_EQ(queue.waiting(), exact(99));
    queue.finish();
    EXPECT_EQ(queue.takeWaiting(), exact(99));
    queue.finish();
    EXPECT_EQ(queue.takeWaiting(), std::nullopt);
    EXPECT_FALSE(queue.busy());
}

TEST(SeekQueue, StepsAddUpButAHeldKeyDoesNotRunOn) {
    SeekQueue queue;
    EXPECT_EQ(queue.requestSteps(-1), -1);
    EXPECT_EQ(queue.requestSteps(-1), 0);
    EXPECT_EQ(queue.requestSteps(-1), 0);
    EXPECT_EQ(queue.requestSteps(1), 0);
    queue.finish();
    EXPECT_EQ(queue.takeSteps(), -1);
    queue.finish();
    EXPECT_EQ(queue.takeSteps(), 0);

    queue.begin(exact(0));
    for (int i = 0; i < 50; ++i)
        queue.requestSteps(1);
    queue.finish();
    EXPECT_EQ(queue.takeSteps(), SeekQueue::maximumWaitingSteps);
    EXPECT_FALSE(queue.busy());
}

TEST(SeekQueue, ASeekForgetsTheStepsBeforeItAndStepsFollowTheSeek) {
    SeekQueue queue;
    queue.begin(exact(0));
    queue.requestSteps(-2);
    queue.request(exact(5));
    queue.requestSteps(1);
    queue.finish();
    EXPECT_EQ(queue.takeWaiting(), exact(5));
    queue.finish();
    EXPECT_EQ(queue.takeWaiting(), std::nullopt);
    EXPECT_EQ(queue.takeSteps(), 1);
}

}
