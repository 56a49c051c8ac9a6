// Which files are played, and as what.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <set>
#include <string>

#include "Music.h"
#include "Player.h"
#include "fmod_errors.h"

namespace {

using sound::Folder;
using sound::Player;
using sound::Sample;

// Something that a variable bit rate follows: quiet and loud stretches.
Sample varied(double time) {
    const double loudness = 0.5 - 0.5 * std::cos(2 * M_PI * time);
    return {loudness * std::sin(2 * M_PI * 1000 * time), loudness * std::sin(2 * M_PI * 600 * time * time)};
}

std::string name(FMOD_SOUND* sound, int bytes) {
    std::array<char, 64> buffer{};
    buffer.fill('#');
    EXPECT_EQ(FMOD_Sound_GetName(sound, buffer.data(), bytes), FMOD_OK);
    EXPECT_EQ(buffer[bytes], '#') << "written behind the end";
    return buffer.data();
}

TEST(Files, HaveTheirExactLengthAndPitchWhateverTheirKind) {
    struct Case {
        int rate;
        bool mono;
        const char* options;
    };
    const Folder folder;
    for (const Case c : {Case{44100, false, "-b 320"}, Case{44100, true, "-b 64"}, Case{44100, false, "-V 4"},
                         Case{48000, false, "-V 0"}, Case{32000, true, "-V 5"}, Case{24000, false, "-b 96"},
                         Case{22050, true, "-V 3"}, Case{8000, true, "-b 32"}}) {
        // Some way off a whole number of the encoder's blocks; 1 kHz all the way.
        const int samples = 2 * c.rate + 123;
        const auto expected = static_cast<unsigned>(samples * 1000 / c.rate);
        const std::string path =
            folder.encode("kind.mp3", sound::sineLeft(1000), samples, c.rate, c.options, c.mono);
        for (const auto time : {Player::Time::supplied, Player::Time::real}) {
            const Player player(time);
            EXPECT_EQ(sound::length(player.load(path)), expected) << c.rate << ' ' << c.options;
        }
        const Player player;
        FMOD_CHANNEL* const channel = player.play(path);
        sound::passTime(1000000);
        const std::vector<float> values = sound::spectrum(channel);
        const auto loudest = std::max_element(values.begin(), values.end()) - values.begin();
        EXPECT_EQ(loudest, std::lround(1000 * 1024.0 / c.rate)) << c.rate << ' ' << c.options;
        sound::passTime(1000000 + 122 * 1000000ULL / c.rate);
        EXPECT_TRUE(sound::alive(channel)) << c.rate << ' ' << c.options;
        sound::passTime(1000);
        EXPECT_FALSE(sound::alive(channel)) << c.rate << ' ' << c.options;
    }
}

TEST(Files, AreOpenedWithoutWaitingForTheirSound) {
    // Five minutes that do not say how long they are.
    const Folder folder;
    const std::string piece = sound::read(folder.encode("piece.mp3", varied, 441000, 44100, "-b 192 -t"));
    std::string bytes;
    for (int i = 0; i < 30; ++i) {
        bytes += piece;
    }
    const std::string path = folder.write("long.mp3", bytes);
    const Player player(Player::Time::real);
    const auto begin = std::chrono::steady_clock::now();
    FMOD_SOUND* const sound = player.load(path);
    const auto opened = std::chrono::steady_clock::now();
    EXPECT_NEAR(sound::length(sound), 300000, 3000);
    const auto decoded = std::chrono::steady_clock::now();
    EXPECT_LT((opened - begin) * 10, decoded - opened);
    // And given back without waiting, either.
    FMOD_SOUND* const second = player.load(path);
    const auto reopened = std::chrono::steady_clock::now();
    FMOD_Sound_Release(second);
    EXPECT_LT((std::chrono::steady_clock::now() - reopened) * 4, decoded - opened);
}

TEST(Files, AreCalledByTheirTitleOrElseByTheirName) {
    const Folder folder;
    const Player player;
    const auto encode = [&](const std::string& file, const std::string& tag) {
        return player.load(folder.encode(file, sound::silence, 4410, 44100, "-b 128 " + tag));
    };
    FMOD_SOUND* const untitled = encode("some track.mp3", "");
    EXPECT_EQ(name(untitled, 32), "some track.mp3");
    EXPECT_EQ(name(untitled, 5), "some");
    EXPECT_EQ(name(untitled, 1), "");
    EXPECT_EQ(name(encode("a.mp3", "--id3v2-only --tt 'Evening Tide'"), 32), "Evening Tide");
    EXPECT_EQ(name(encode("b.mp3", "--id3v1-only --tt 'Morning'"), 32), "Morning");
    const std::string v1 = sound::read(folder.path("b.mp3"));
    EXPECT_EQ(
        name(player.load(folder.write("c.mp3", std::string(v1).replace(v1.rfind("TAG") + 3, 3, "M\xFCn"))),
             32),
        "M\xC3\xBCnning");
    // A character of two bytes is not cut in half.
    EXPECT_EQ(name(player.load(folder.path("c.mp3")), 3), "M");
    EXPECT_EQ(FMOD_Sound_GetName(untitled, nullptr, 32), FMOD_ERR_ARGUMENT);
    char one = '#';
    EXPECT_EQ(FMOD_Sound_GetName(untitled, &one, 0), FMOD_ERR_ARGUMENT);
    EXPECT_EQ(one, '#');
}

TEST(Files, ThatCannotBePlayedAreRefusedEachForItsReason) {
    const Folder folder;
    const std::string good = sound::read(folder.encode("good.mp3", varied, 44100));
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    struct Case {
        std::string path;
        FMOD_RESULT expected;
    };
    const std::vector<Case> cases = {
        {folder.path("nowhere.mp3"), FMOD_ERR_FILE_MISSING},
        {folder.path("good.mp3/below.mp3"), FMOD_ERR_FILE_MISSING},
        {"", FMOD_ERR_FILE_MISSING},
        {folder.path(""), FMOD_ERR_FILE_FOLDER},
        {folder.write("empty.mp3", ""), FMOD_ERR_FILE_EMPTY},
        {pipe, FMOD_ERR_FILE_UNREADABLE},
        {"/dev/zero", FMOD_ERR_FILE_UNREADABLE},
        {folder.write("text.mp3", std::string(100000, 'x')), FMOD_ERR_FILE_NOT_MP3},
        {folder.write("one.mp3", "\xFF"), FMOD_ERR_FILE_NOT_MP3},
        {folder.write("head.mp3", good.substr(0, 4)), FMOD_ERR_FILE_NOT_MP3},
        {folder.write("noise.mp3", sound::noise(300000, 1)), FMOD_ERR_FILE_NOT_MP3},
        {folder.path("good.mp3.wav"), FMOD_ERR_FILE_NOT_MP3},
    };
    std::set<std::string> sentences;
    for (const auto time : {Player::Time::supplied, Player::Time::real}) {
        const Player player(time);
        for (const Case& c : cases) {
            FMOD_SOUND* sound = nullptr;
            const FMOD_RESULT result = sound::createStream(player.system(), c.path, &sound);
            EXPECT_EQ(result, c.expected) << c.path << ": " << FMOD_ErrorString(result);
            EXPECT_EQ(sound, nullptr);
            sentences.insert(FMOD_ErrorString(result));
        }
    }
    EXPECT_EQ(sentences.size(), 5U);
    for (const int value : {-2147483647 - 1, -1, 1000, 2147483647}) {
        EXPECT_EQ(sentences.count(FMOD_ErrorString(static_cast<FMOD_RESULT>(value))), 0U) << value;
    }
}

TEST(Files, ThatAreDamagedArePlayedAsFarAsTheyGo) {
    const Folder folder;
    const std::string whole = sound::read(folder.encode("whole.mp3", sound::sineLeft(1000), 10 * 44100));
    const std::size_t half = whole.size() / 2;
    const std::string truncated = folder.write("truncated.mp3", whole.substr(0, half));
    std::vector<std::string> paths = {truncated};
    for (unsigned seed = 1; seed <= 8; ++seed) {
        const std::string random = sound::noise(100000, seed);
        const std::string number = std::to_string(seed) + ".mp3";
        paths.push_back(folder.write("in" + number, whole.substr(0, half) + random + whole.substr(half)));
        std::string overwritten = whole;
        paths.push_back(folder.write("over" + number, overwritten.replace(half, random.size(), random)));
    }
    testing::internal::CaptureStderr();
    for (const std::string& path : paths) {
        const Player player;
        FMOD_SOUND* const sound = player.load(path);
        const unsigned length = sound::length(sound);
        FMOD_CHANNEL* const channel = player.play(sound);
        FMOD_Channel_SetPosition(channel, 4500, FMOD_TIMEUNIT_MS);
        EXPECT_GT(sound::spectrum(channel)[23], 0.5) << path;
        if (path == truncated) {
            EXPECT_NEAR(length, 5000, 60);
        } else {
            EXPECT_GT(length, 7000U) << path;
            // The sound comes back behind the damage.
            FMOD_Channel_SetPosition(channel, length - 500, FMOD_TIMEUNIT_MS);
            EXPECT_GT(sound::spectrum(channel)[23], 0.5) << path;
        }
        FMOD_Channel_SetPosition(channel, length, FMOD_TIMEUNIT_MS);
        sound::passTime(1000);
        EXPECT_FALSE(sound::alive(channel)) << path;
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
