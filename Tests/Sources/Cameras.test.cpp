#include "3D/Camera/LinearCamera.h"
#include "3D/Camera/RotatingCamera.h"
#include "3D/Camera/TopDownCamera.h"
#include "StandIns/Stage.h"

namespace {
using testing::ElementsAre;

class Cameras : public OnStage {
protected:
    static void expectAt(const Camera& camera, const Vector3f& place) {
        const Vector3f p = camera.getPosition();
        EXPECT_LT((p - place).dot(p - place), 1e-8f) << p << ", not " << place;
    }
};

TEST_F(Cameras, lookAlongTheirDirection) {
    GLUCamera camera({0, 5, 10}, {0.1f, 0.2f, -1}, {0, 1, 0});
    camera.apply();
    EXPECT_THAT(calls(), ElementsAre("glLoadIdentity", call("gluLookAt", 0, 5, 10, 0.1f, 5.2f, 9, 0, 1, 0)));
    camera.display();
    EXPECT_EQ(out(), "Position: X: 0 Y: 5 Z: 10\nDirection: X: 0.1 Y: 0.2 Z: -1\nUp: X: 0 Y: 1 Z: 0\n");
}

TEST_F(Cameras, linearMoveRunsOnceAndStaysWhereItWasSeenLast) {
    LinearCamera camera({0, 0, 0}, {10, 20, 30}, {1, 1, 1}, {3, 5, 7}, {0, 1, 0}, 1000);
    EXPECT_EQ(camera.getMsTime(), 1000U);
    EXPECT_TRUE(camera.update(0)); // no start yet
    EXPECT_TRUE(camera.update(0xFFFFFF00));
    expectAt(camera, {0, 0, 0});
    EXPECT_TRUE(camera.update(500 - 0x100)); // the clock wraps on the way
    camera.apply();
    EXPECT_THAT(calls(), ElementsAre("glLoadIdentity", call("gluLookAt", 5, 10, 15, 2, 3, 4, 0, 1, 0)));
    EXPECT_FALSE(camera.update(1001 - 0x100));
    EXPECT_FALSE(camera.update(0xFFFFFEFF)); // before its start
    expectAt(camera, {5, 10, 15});
    EXPECT_TRUE(camera.update(1000 - 0x100));
    expectAt(camera, {10, 20, 30});
}

TEST_F(Cameras, rotatingOneCircles) {
    RotatingCamera camera({6, 0, 6}, 6, 0.3f);
    camera.update();
    expectAt(camera, {6, 6, 0});
    for (int i = 0; i < 300; ++i) {
        camera.update();
    }
    expectAt(camera, {0, 6, 6}); // a quarter later
    camera.apply();
    EXPECT_THAT(calls().back(), testing::EndsWith(" 6 0 6 0 1 0"));
}

TEST_F(Cameras, topDownOnePans) {
    TopDownCamera camera({1, 2, 3}, 0.5f);
    camera.update(1 | 4);
    expectAt(camera, {1, 2, 3});
    camera.update(1 | 2);
    expectAt(camera, {1.5f, 2, 3.5f});
    camera.update(4);
    camera.update(8);
    camera.update(8);
    expectAt(camera, {1, 2, 2.5f});
    EXPECT_LT(camera.getDirection().y, 0);
}
} // namespace
