// Vectors, angles and settings.

#include <cstdio>
#include <fstream>
#include <random>

#include "StandIns/Stage.h"
#include "Types/Vector4.h"
#include "Utils/MathUtils.h"
#include "Utils/Settings.h"

namespace {
using testing::ElementsAre;

std::vector<float> components(const Vector3f& v) { return {v.x, v.y, v.z}; }
std::vector<float> components(const Colour4& v) { return {v.x, v.y, v.z, v.w}; }

TEST(Values, calculate) {
    static_assert(sizeof(Vector3f) == 12 && sizeof(Colour4) == 16 && sizeof(Point) == 28,
                  "as OpenGL reads them");
    EXPECT_THAT(components(Colour4()), ElementsAre(0, 0, 0, 1));
    EXPECT_THAT(components(Colour4(Colour3(0.2f, 0.4f, 0.6f))), ElementsAre(0.2f, 0.4f, 0.6f, 1));
    const Vector3f a(1, 2.5f, -3);
    const Vector3f b(-4, 0.5f, 2);
    EXPECT_EQ(a.dot(b), -8.75f);
    EXPECT_THAT(components(a.cross(b)), ElementsAre(6.5f, 10, 10.5f));
    EXPECT_THAT(components(Colour4(1, 2, 3, 4) - Colour4(4, 3, 2, 2) * 2), ElementsAre(-7, -4, -1, 0));
    Vector3f direction(0, 3, 4);
    direction.normalise();
    EXPECT_THAT(components(direction), ElementsAre(0, 0.6f, 0.8f));
    Vector3f nothing;
    nothing.normalise();
    EXPECT_THAT(components(nothing), ElementsAre(0, 0, 0));
    EXPECT_EQ(MathUtils::degToRan(180), 3.1415927f);
    EXPECT_EQ(MathUtils::degToRan(1), 0.017453292f);
    EXPECT_THAT(components(MathUtils::lerp(Colour4(0, 1, 0, 0.5f), Colour4(1, 0, 0, 1), 0.5f)),
                ElementsAre(0.5f, 0.5f, 0, 0.75f));
    EXPECT_THAT(components(MathUtils::lerp(a, Vector3f(3, 2.5f, -3), 1.5f)), ElementsAre(4, 2.5f, -3));
}

/// Settings of a file that holds the text.
class SettingsTest : public OnStage {
protected:
    ~SettingsTest() override { std::remove(name.c_str()); }

    Settings settings(const std::string& text) {
        std::remove(name.c_str()); // writing over it would wait for the disk
        std::ofstream(name, std::ios::binary) << text;
        return Settings(name);
    }

    const std::string name = testing::TempDir() + "settings." + std::to_string(getpid());
};

TEST_F(SettingsTest, arePairsOfWhichTheLastCounts) {
    const Settings s = settings("seed 7\nhres\n\n800 vres\t-3.5\r\nhres 1e3 hres=5 6\n\n");
    EXPECT_EQ(s.getSetting("seed", 42), 7);
    EXPECT_EQ(s.getSetting("hres", 640), 1000);
    EXPECT_EQ(s.getSetting("vres", 480), -3.5f);
    EXPECT_EQ(s.getSetting("hres=5", 0), 6);
    EXPECT_EQ(s.getSetting("HRES", 640), 640);
    EXPECT_EQ(s.getSetting("", 1), 1);
    EXPECT_EQ(err(), "");
}

TEST_F(SettingsTest, leaveOutAndReportWhatIsBroken) {
    const Settings s = settings("a x1 b 2 c 3z d 4 e");
    for (const char* left : {"a", "c", "e"}) {
        EXPECT_EQ(s.getSetting(left, 9), 9) << left;
    }
    EXPECT_EQ(s.getSetting("b", 9), 2);
    EXPECT_EQ(s.getSetting("d", 9), 4);
    EXPECT_EQ(err(), "The setting 'a' is not a number: 'x1'\nThe setting 'c' is not a number: '3z'\n"
                     "The setting 'e' has no value\n");
    EXPECT_EQ(settings("").getSetting("seed", 42), 42);
    for (const std::string& unreadable : {name + ".none", testing::TempDir()}) {
        EXPECT_EQ(Settings(unreadable).getSetting("seed", 42), 42);
        EXPECT_EQ(err(), "Fail to open the setting file\n");
    }
}

TEST_F(SettingsTest, ofAnyBytesEndAndHoldNumbers) {
    std::mt19937 random(1);
    const std::string some = std::string("se\t\n 0123456789eE+-.xinfanNaN\xE9") + '\0';
    for (int i = 0; i < 3000; ++i) {
        std::string text;
        for (std::size_t length = random() % 40; length > 0; --length) {
            text += some[random() % some.size()];
        }
        const float value = settings(text + "\nseed 5").getSetting("seed", 42);
        EXPECT_TRUE(value == 5 || value == 42) << text; // an odd token before it makes its name a value
    }
}
} // namespace
