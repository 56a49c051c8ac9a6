// Which files are played, and as what.

#include "Player.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <sys/stat.h>
#include <tuple>
#include <utility>
#include <vector>

using namespace std::string_literals;

/// Bytes that look like nothing, the same ones for the same seed.
static std::string noise(std::size_t bytes, unsigned seed) {
    std::mt19937 source(seed);
    std::string text(bytes, '\0');
    std::generate(text.begin(), text.end(), [&source] { return static_cast<char>(source() & 0xFF); });
    return text;
}

TEST(Files, HaveTheirExactLengthAndSoundWhateverTheirKind) {
    // One side made of two has half the height. The title, or else the name, is asked for in five bytes.
    using Case = std::tuple<int, std::string, double, std::string>;
    for (const auto& [rate, options, height, title] :
         {Case(44100, "-a -b 64", 0.5, "kind\0##"s), Case(44100, "-V 4", 1, "kind\0##"s),
          Case(48000, "-V 0 --id3v2-only --tt Evening", 1, "Even\0##"s),
          Case(32000, "-a -V 5 --id3v1-only --tt Sea", 0.5, "Sea\0###"s),
          Case(24000, "-b 96", 1, "kind\0##"s), Case(8000, "-a -b 32", 0.5, "kind\0##"s)}) {
        // Some way off a whole number of the encoder's blocks, and a sine in the middle of entry 25.
        const auto tone = sineLeft(25 * rate / 1024.0);
        const std::string path = encode("kind.mp3", tone, 2 * rate + 123, rate, options);
        const unsigned int expected = 2000 + 123000 / rate;
        const Player player;
        FMOD_SOUND* const sound = player.load(path);
        EXPECT_EQ(length(sound), expected) << rate << ' ' << options;
        EXPECT_EQ(length(Player(REAL_TIME).load(path)), expected) << rate << ' ' << options;
        std::string name = "#######";
        FMOD_Sound_GetName(sound, name.data(), 5);
        EXPECT_EQ(name, title);
        FMOD_CHANNEL* const channel = player.play(sound);
        now += 1000000;
        EXPECT_NEAR(spectrum(channel)[25], height, 0.06) << rate << ' ' << options;
        now += 1000000 + 122 * 1000000ULL / rate;
        EXPECT_EQ(position(channel), expected) << rate << ' ' << options;
        now += 1000;
        EXPECT_EQ(position(channel), OVER) << rate << ' ' << options;
    }
}

TEST(Files, ThatCannotBePlayedAreRefusedEachForItsReason) {
    const std::string good = read(encode("good.mp3", sineLeft(1000), 44100));
    ::mkfifo((folder.path + "pipe").c_str(), 0600);
    const Player player;
    for (const auto& [path, expected] : std::vector<std::pair<std::string, FMOD_RESULT>>{
             {folder.path + "nowhere.mp3", FMOD_ERR_FILE_MISSING},
             {folder.path + "good.mp3/below.mp3", FMOD_ERR_FILE_MISSING},
             {folder.path, FMOD_ERR_FILE_FOLDER},
             {write("empty.mp3", ""), FMOD_ERR_FILE_EMPTY},
             {folder.path + "pipe", FMOD_ERR_FILE_UNREADABLE},
             {write("text.mp3", std::string(100000, 'x')), FMOD_ERR_FILE_NOT_MP3},
             {write("head.mp3", good.substr(0, 4)), FMOD_ERR_FILE_NOT_MP3},
             {write("late.mp3", noise(300000, 1) + good), FMOD_ERR_FILE_NOT_MP3}}) {
        FMOD_SOUND* sound = nullptr;
        EXPECT_EQ(FMOD_System_CreateStream(player.system, path.c_str(), MODE, nullptr, &sound), expected)
            << path;
    }
}

TEST(Files, ThatAreDamagedArePlayedAsFarAsTheyGo) {
    const std::string whole = read(encode("whole.mp3", sineLeft(1000), 10 * 44100));
    const std::size_t half = whole.size() / 2;
    testing::internal::CaptureStderr();
    for (unsigned int seed = 0; seed <= 16; ++seed) {
        // Cut off in the middle, or with noise there, in addition to the sound or in its place.
        const std::size_t size = seed == 0 ? 0 : 100000;
        const std::size_t rest = seed == 0 ? whole.size() : half + seed % 2 * size;
        const std::string bytes = whole.substr(0, half) + noise(size, seed) + whole.substr(rest);
        const Player player;
        FMOD_SOUND* const sound = player.load(write("damaged.mp3", bytes));
        EXPECT_NEAR(length(sound), seed == 0 ? 5000 : 9000, seed == 0 ? 60 : 2000) << seed;
        FMOD_CHANNEL* const channel = player.play(sound);
        for (const unsigned int place : {4500U, length(sound) - 500}) {
            FMOD_Channel_SetPosition(channel, place, FMOD_TIMEUNIT_MS);
            EXPECT_GT(spectrum(channel)[23], 0.5) << seed << ": " << place;
        }
        now += 1000000;
        EXPECT_EQ(position(channel), OVER) << seed;
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}
