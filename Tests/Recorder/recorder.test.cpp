#include "DraftFile.h"
#include "FrameQueue.h"
#include "Process.h"
#include "Scratch.h"
#include "StageFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

std::string content(const fs::path& file) {
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), {}};
}

void write(const fs::path& file, const std::string& text) { std::ofstream(file) << text; }

/// A folder of its own for each test.
class RecorderFiles : public testing::Test {
protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "recorder-test.XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
    }
    void TearDown() override { fs::remove_all(folder); }

    std::set<std::string> names() const {
        std::set<std::string> found;
        for (const auto& entry : fs::directory_iterator(folder)) {
            found.insert(entry.path().filename());
        }
        return found;
    }

    fs::path folder;
};

using recorder::DraftFile;
using recorder::Frame;
using recorder::FrameQueue;
using recorder::Process;
using recorder::Scratch;
using recorder::StageFolder;

using Names = std::set<std::string>;

} // namespace

TEST_F(RecorderFiles, DraftTakesItsNameOnlyWhenPublished) {
    const fs::path file = folder / "video.mp4";
    write(file, "old");
    { const DraftFile abandoned(file.string()); }
    EXPECT_EQ(content(file), "old");
    EXPECT_EQ(names(), Names{"video.mp4"});

    const mode_t before = umask(027);
    DraftFile draft(file.string());
    EXPECT_EQ(umask(before), 027U);
    write(draft.getDraft(), "new");
    EXPECT_EQ(content(file), "old");
    draft.publish();
    EXPECT_EQ(content(file), "new");
    EXPECT_EQ(names(), Names{"video.mp4"});
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0640));
}

TEST_F(RecorderFiles, DraftGoesWhereALinkPointsAndStaysIfThatIsTakenMeanwhile) {
    fs::create_directory(folder / "elsewhere");
    write(folder / "elsewhere/real.mp4", "old");
    fs::create_symlink("elsewhere/real.mp4", folder / "link.mp4");
    DraftFile draft((folder / "link.mp4").string());
    write(draft.getDraft(), "new");
    draft.publish();
    EXPECT_TRUE(fs::is_symlink(folder / "link.mp4"));
    EXPECT_EQ(content(folder / "elsewhere/real.mp4"), "new");
    {
        DraftFile late((folder / "late.mp4").string());
        fs::create_directory(folder / "late.mp4");
        EXPECT_THROW(late.publish(), std::runtime_error);
    }
    EXPECT_EQ(names(), (Names{"elsewhere", "late.mp4", "link.mp4"}));
}

TEST_F(RecorderFiles, WhatAKilledRunLeftIsRemovedByTheNextAndNothingElse) {
    const fs::path prefix = folder / ".a.mp4.";
    for (const auto kind : {Scratch::Kind::FILE, Scratch::Kind::FOLDER}) {
        const pid_t run = fork();
        if (run == 0) {
            const Scratch left(kind, prefix);
            if (kind == Scratch::Kind::FOLDER) {
                fs::create_directories(left.getPath() / "with/something");
            }
            std::raise(SIGKILL);
        }
        ASSERT_EQ(waitpid(run, nullptr, 0), run);
        ASSERT_EQ(names().size(), 1U);
        const std::string left = *names().begin();

        // Not of that name, not of that kind, not of that length.
        const Scratch other(Scratch::Kind::FOLDER, folder / ".b.mp4.");
        write(folder / ".a.mp4.1234567", "");
        fs::create_symlink("nowhere", folder / ".a.mp4.123456");
        {
            const Scratch alive(kind, prefix);
            EXPECT_EQ(names().count(left), 0U);
            const Scratch another(kind, prefix);
            EXPECT_TRUE(fs::exists(alive.getPath()));
            EXPECT_EQ(names().size(), 5U);
        }
        EXPECT_EQ(names(), (Names{".a.mp4.123456", ".a.mp4.1234567", other.getPath().filename()}));
        fs::remove(folder / ".a.mp4.123456");
        fs::remove(folder / ".a.mp4.1234567");
        fs::remove(other.getPath());
    }
}

TEST_F(RecorderFiles, StageHoldsTheDataAndWhatIsOfItsOwn) {
    const fs::path data = folder / "data";
    fs::create_directories(data / "shaders");
    fs::create_directories(data / "music");
    write(data / "shaders/a.vs", "shader");
    write(data / "music/quelar.mp3", "track");
    write(data / "settings.ini", "speed 3\nseed 1 hres 7");
    write(folder / "song", "song");
    fs::path path;
    {
        const StageFolder stage(data.string(),
                                {recorder::FrameSize{320, 200}, 9U, (folder / "song").string()});
        path = stage.getPath();
        EXPECT_EQ(fs::status(path).permissions(), fs::perms(0700));
        EXPECT_EQ(content(path / "data/shaders/a.vs"), "shader");
        EXPECT_EQ(content(path / "data/music/quelar.mp3"), "song");
        EXPECT_EQ(content(path / "data/settings.ini"),
                  "speed 3\nseed 1 hres 7\nhres 320\nvres 200\n\nseed 9\n");
    }
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(content(data / "shaders/a.vs"), "shader");
    EXPECT_EQ(content(data / "music/quelar.mp3"), "track");
    EXPECT_EQ(content(data / "settings.ini"), "speed 3\nseed 1 hres 7");

    fs::remove(data / "settings.ini");
    const StageFolder bare(data.string(), {});
    EXPECT_EQ(content(bare.getPath() / "data/settings.ini"), "");
    EXPECT_EQ(content(bare.getTrack()), "track");
}

TEST(RecorderProcess, IsToldHowItEndedAndKilledIfNobodyWaited) {
    Process ends({"sh", "-c", "exit 3"}, {}, Process::Keyboard::OURS);
    EXPECT_EQ(WEXITSTATUS(ends.wait()), 3);
    EXPECT_EQ(WEXITSTATUS(ends.poll().value()), 3);
    { const Process lasts({"sleep", "1000"}, {}, Process::Keyboard::OURS); }
    // Nobody is left, not even to be waited for.
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
    Process asked({"sleep", "1000"}, {}, Process::Keyboard::OURS);
    EXPECT_FALSE(asked.poll());
    asked.send(SIGTERM);
    EXPECT_EQ(WTERMSIG(asked.wait()), SIGTERM);
    EXPECT_THROW(Process({"/nowhere/at-all"}, {}, Process::Keyboard::OURS), std::runtime_error);
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
