#include "DraftFile.h"
#include "FrameQueue.h"
#include "StageFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <thread>

namespace fs = std::filesystem;

namespace {

std::string content(const fs::path& file) {
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), {}};
}

void write(const fs::path& file, const std::string& text) { std::ofstream(file) << text; }

// A folder of its own for each test.
class RecorderFiles : public testing::Test {
protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "recorder-test.XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
    }
    void TearDown() override { fs::remove_all(folder); }

    std::ptrdiff_t count() const { return std::distance(fs::directory_iterator(folder), {}); }

    fs::path folder;
};

using recorder::DraftFile;
using recorder::Frame;
using recorder::FrameQueue;
using recorder::StageFolder;

} // namespace

TEST_F(RecorderFiles, DraftTakesItsNameOnlyWhenPublished) {
    const fs::path file = folder / "video.mp4";
    write(file, "old");
    { const DraftFile abandoned(file.string()); }
    EXPECT_EQ(content(file), "old");
    EXPECT_EQ(count(), 1);

    const mode_t mask = umask(027);
    DraftFile draft(file.string());
    umask(mask);
    write(draft.getDraft(), "new");
    EXPECT_EQ(content(file), "old");
    draft.publish();
    EXPECT_EQ(content(file), "new");
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0640));
}

TEST_F(RecorderFiles, DraftGoesWhereALinkPoints) {
    fs::create_directory(folder / "elsewhere");
    write(folder / "elsewhere/real.mp4", "old");
    fs::create_symlink("elsewhere/real.mp4", folder / "link.mp4");
    DraftFile draft((folder / "link.mp4").string());
    write(draft.getDraft(), "new");
    draft.publish();
    EXPECT_TRUE(fs::is_symlink(folder / "link.mp4"));
    EXPECT_EQ(content(folder / "elsewhere/real.mp4"), "new");
}

TEST_F(RecorderFiles, DraftStaysUnpublishedIfItsNameIsTakenMeanwhile) {
    {
        DraftFile draft((folder / "video.mp4").string());
        fs::create_directory(folder / "video.mp4");
        EXPECT_THROW(draft.publish(), std::runtime_error);
    }
    EXPECT_EQ(count(), 1);
}

TEST_F(RecorderFiles, StageHoldsTheDataAndSettingsOfItsOwn) {
    const fs::path data = folder / "data";
    fs::create_directories(data / "shaders");
    write(data / "shaders/a.vs", "shader");
    write(data / "settings.ini", "speed 3\nseed 1 hres 7");
    fs::path path;
    {
        const StageFolder stage(data, recorder::FrameSize{320, 200}, 9U);
        path = stage.getPath();
        EXPECT_EQ(content(path / "data/shaders/a.vs"), "shader");
        EXPECT_EQ(content(path / "data/settings.ini"),
                  "speed 3\nseed 1 hres 7\nhres 320\nvres 200\n\nseed 9\n");
    }
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(content(data / "shaders/a.vs"), "shader");
    EXPECT_EQ(content(data / "settings.ini"), "speed 3\nseed 1 hres 7");

    fs::remove(data / "settings.ini");
    const StageFolder bare(data, std::nullopt, std::nullopt);
    EXPECT_EQ(content(bare.getPath() / "data/settings.ini"), "");
}

TEST(FrameQueue, HandsOnEveryFrameInOrderWhicheverSideIsSlow) {
    for (const bool slowWriter : {true, false}) {
        FrameQueue queue(3, 16);
        unsigned int expected = 0;
        std::thread drawing([&] {
            for (unsigned int i = 0; i < 60; ++i) {
                Frame& frame = queue.beginFill();
                frame.number = i;
                frame.pixels.assign(16, static_cast<unsigned char>(i));
                queue.endFill();
                if (!slowWriter) {
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
                }
            }
            queue.close();
        });
        while (const Frame* const frame = queue.beginTake()) {
            if (slowWriter) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            // Still untouched after the wait: the slot is ours until it is given back.
            EXPECT_EQ(frame->number, expected);
            EXPECT_EQ(frame->pixels, std::vector<unsigned char>(16, static_cast<unsigned char>(expected)));
            ++expected;
            queue.endTake();
        }
        drawing.join();
        EXPECT_EQ(expected, 60U);
    }
}
