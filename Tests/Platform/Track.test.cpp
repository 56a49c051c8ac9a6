// Which files are tracks, and what is in them.

#include "Track.h"

#include "Player.h"
#include "Room.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <random>
#include <sys/stat.h>
#include <tuple>
#include <utility>

using namespace fmodex;
using namespace std::string_literals;

/// Bytes that look like nothing, the same ones for the same seed.
static std::string noise(std::size_t bytes, unsigned seed) {
    std::mt19937 source(seed);
    std::string text(bytes, '\0');
    std::generate(text.begin(), text.end(), [&source] { return static_cast<char>(source() & 0xFF); });
    return text;
}

static std::vector<Frame> soundOf(const Track& track, std::int64_t first, std::size_t count) {
    std::vector<Frame> frames(count, Frame{7, 7});
    track.copy(first, count, frames.data());
    return frames;
}

/// A tag of the second kind that holds one frame of text, in the encoding of the given number.
static std::string tag(const std::string& name, char encoding, const std::string& text) {
    const auto size = [](std::size_t bytes) {
        return "\0\0"s + static_cast<char>(bytes / 128) + static_cast<char>(bytes % 128);
    };
    return "ID3\4\0\0"s + size(text.size() + 11) + name + size(text.size() + 1) + "\0\0"s + encoding + text;
}

TEST(Track, HasTheLengthAndTheSoundOfItsSourceWhateverItsKind) {
    // One side made of two has half the height.
    using Case = std::tuple<int, std::string, double>;
    for (const auto& [rate, options, height] :
         {Case(44100, "-b 320 -m s", 1), Case(44100, "-a -b 64", 0.5), Case(48000, "-V 0", 1),
          Case(32000, "-a -V 5", 0.5), Case(24000, "-b 96", 1), Case(8000, "-a -b 32", 0.5)}) {
        // Some way off a whole number of the encoder's blocks.
        const auto tone = sineLeft(rate / 100.0);
        const int samples = 10 * rate + 123;
        const std::string path = encode("kind.mp3", tone, samples, rate, options);
        const Track track(path, true);
        EXPECT_EQ(track.getLength(), samples) << rate << options;
        EXPECT_EQ(Track(path, false).getLength(), samples) << rate << options;
        EXPECT_EQ(track.getRate(), rate);
        EXPECT_EQ(std::pair(track.isOver(samples - 1), track.isOver(samples)), std::pair(false, true));
        const std::vector<Frame> frames = soundOf(track, -5, samples + 10);
        EXPECT_EQ(frames[0].left, 0) << "before its beginning";
        EXPECT_EQ(frames[samples + 5].left, 0) << "behind its end";
        for (int i = 2000; i < samples - 2000; ++i) {
            ASSERT_NEAR(frames[i].left, height * 32767 * tone((i - 5.0) / rate)[0], 2000) << rate << ' ' << i;
            ASSERT_NEAR(frames[i].right, height < 1 ? frames[i].left : 0, 700) << rate << ' ' << i;
        }
    }
}

TEST(Track, IsDecodedInTheBackground) {
    // Half silent, half noisy: its mean says nothing of its length.
    std::mt19937 source(1);
    const auto signal = [&source](double time) {
        return Sample{time < 2 ? 0 : static_cast<double>(source()) / std::mt19937::max()};
    };
    for (const char* const options : {"-V 4", "-b 128"}) {
        const std::string path = encode("stated.mp3", signal, 4 * 44100, 44100, options);
        const Track whole(path, true);
        const std::vector<Frame> expected = soundOf(whole, 100000, 70000);
        decodable = 3;
        const Track track(path, false);
        EXPECT_EQ(track.getLength(), 4 * 44100);
        EXPECT_EQ(std::pair(track.isComplete(), track.isOver(220500)), std::pair(false, false));
        EXPECT_EQ(soundOf(track, 100000, 1)[0].left, 0) << "as yet";
        decodable = INT_MAX;
        const std::vector<Frame> frames = soundOf(Track(path, true), 100000, 70000);
        EXPECT_EQ(std::memcmp(frames.data(), expected.data(), 70000 * sizeof(Frame)), 0) << "whoever waits";
        const std::string half = read(path).substr(0, read(path).size() / 2);
        EXPECT_LT(Track(write("half.mp3", half), true).getLength(), 3 * 44100) << "less than stated";
    }
    const std::string unstated = encode("unstated.mp3", signal, 4 * 44100, 44100, "-V 4 -t");
    const Track waited(unstated, false);
    EXPECT_GE(waited.getLength(), 4 * 44100);
    EXPECT_LE(waited.getLength(), 4 * 44100 + 3 * 1152);
    EXPECT_TRUE(waited.isComplete());
    // Hardly any file has more frames for its size.
    EXPECT_GE(Track(encode("small.mp3", sineLeft(100), 240000, 24000, "-a -b 8"), true).getLength(), 240000);
}

TEST(Track, IsNamedByItsTitleInUtf8OrByItsFile) {
    const std::string sound = read(encode("plain.mp3", sineLeft(1000), 4410));
    const auto old = [](std::string title) {
        title.resize(125, title.size() < 30 ? ' ' : '\0');
        return "TAG" + title;
    };
    const auto nameOf = [&sound](const std::string& before, const std::string& behind, int bytes = 50) {
        const Player player;
        std::string name(50, '#');
        FMOD_Sound_GetName(player.load(write("named.mp3", before + sound + behind)), name.data(), bytes);
        EXPECT_EQ(name.find_last_not_of('#'), name.find('\0')) << "nothing is written behind";
        return name.substr(0, name.find('\0'));
    };
    const std::string sea = "Jüli 海";
    EXPECT_EQ(nameOf("", ""), "named.mp3");
    EXPECT_EQ(nameOf("", old("  Night  ")), "  Night");
    EXPECT_EQ(nameOf("", old("Night\0more"s)), "Night");
    EXPECT_EQ(nameOf("", old("J\xFCli \xBF\xC0\x7F\x80")), "Jüli ¿À\x7F\xC2\x80");
    EXPECT_EQ(nameOf("", old(std::string(30, 'x'))), std::string(30, 'x'));
    EXPECT_EQ(nameOf("", old("    ")), "named.mp3");
    EXPECT_EQ(nameOf(tag("TIT2", 0, "J\xFCli"), old("Old")), "Jüli");
    EXPECT_EQ(nameOf(tag("TIT2", 1, "\xFF\xFEJ\0\xFC\0l\0i\0 \0\x77\x6D"s), ""), sea);
    EXPECT_EQ(nameOf(tag("TIT2", 3, ""), old("Old")), "Old");
    EXPECT_EQ(nameOf(tag("TPE1", 3, "Somebody"), old("Old")), "Old");
    int bytes = 0;
    for (const char* const expected :
         {"", "J", "J", "Jü", "Jül", "Jüli", "Jüli ", "Jüli ", "Jüli ", "Jüli 海"}) {
        EXPECT_EQ(nameOf(tag("TIT2", 3, sea), "", ++bytes), expected);
    }
}

TEST(Track, IsRefusedForAReasonAndLeavesNothingOpen) {
    const std::string good = read(encode("good.mp3", sineLeft(1000), 44100));
    ::mkfifo((folder.path + "pipe").c_str(), 0600);
    const auto before = openFiles();
    using Case = std::pair<std::string, FMOD_RESULT>;
    for (const auto& [path, expected] :
         {Case(folder.path + "nowhere.mp3", FMOD_ERR_FILE_MISSING),
          Case(folder.path + "good.mp3/below.mp3", FMOD_ERR_FILE_MISSING),
          Case(folder.path + std::string(300, 'x'), FMOD_ERR_FILE_UNREADABLE),
          Case(folder.path + "pipe", FMOD_ERR_FILE_UNREADABLE), Case(folder.path, FMOD_ERR_FILE_FOLDER),
          Case(write("empty.mp3", ""), FMOD_ERR_FILE_EMPTY),
          Case(write("text.mp3", std::string(100000, 'x')), FMOD_ERR_FILE_NOT_MP3),
          Case(write("head.mp3", good.substr(0, 4)), FMOD_ERR_FILE_NOT_MP3),
          Case(write("late.mp3", noise(300000, 1) + good), FMOD_ERR_FILE_NOT_MP3),
          Case(folder.path + "good.mp3", FMOD_OK)}) {
        const Player player;
        FMOD_SOUND* sound = nullptr;
        EXPECT_EQ(FMOD_System_CreateStream(player.system, path.c_str(), MODE, nullptr, &sound), expected)
            << path;
    }
    EXPECT_EQ(openFiles(), before);
}

TEST(Track, IsPlayedAsFarAsItGoesWhenDamaged) {
    const std::string options = "-b 320 -m s -t"; // in whole frames, and without a word about its length
    const std::string whole = read(encode("whole.mp3", sineLeft(1000), 10 * 44100, 44100, options));
    const std::string other = read(encode("other.mp3", sineLeft(1000), 10 * 48000, 48000, options));
    const std::size_t half = whole.size() / 2;
    std::string layerTwo;
    for (int frame = 0; frame < 50; ++frame) {
        layerTwo += "\xFF\xFD\x84\x00"s + std::string(413, '\0');
    }
    testing::internal::CaptureStderr();
    // What stands in the middle, how much is left out there, and how many ms are there in the end, about.
    using Case = std::tuple<std::string, std::size_t, int, int>;
    std::vector<Case> cases{
        {"", whole.size() - half, 5000, 60}, {other, 0, 10000, 100}, {layerTwo, 0, 10000, 100}};
    for (unsigned int seed = 0; seed < 6; ++seed) {
        cases.emplace_back(noise(100000, seed), seed % 2 * 100000, 10000 - seed % 2 * 2500, 1500);
    }
    for (const auto& [middle, skipped, expected, tolerance] : cases) {
        const Track track(write("damaged.mp3", whole.substr(0, half) + middle + whole.substr(half + skipped)),
                          true);
        const std::int64_t length = track.getLength();
        EXPECT_NEAR(length / 44.1, expected, tolerance) << middle.size() << ' ' << skipped;
        for (const std::int64_t place : {4L * 44100, length - 22050}) {
            int loudest = 0;
            for (const Frame& frame : soundOf(track, place, 44)) {
                loudest = std::max<int>(loudest, frame.left);
            }
            EXPECT_NEAR(loudest, 32767, 1000) << middle.size() << ' ' << place;
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}
