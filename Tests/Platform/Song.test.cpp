// What is read of somebody's own music, how loud the scenes hear it, and that it takes the place of the
// track.

#include "Song.h"

#include "Player.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <stdexcept>
#include <tuple>

using song::Song;

TEST(Song, HasTheSamplesOfItsFileWhateverTheFormat) {
    std::filesystem::current_path(folder.path);
    // Of all values, or so quiet that many a byte looks like the head of an MP3; under a name that looks like
    // more.
    for (const std::string loudness : {"0.9", "0.0001"}) {
        make("-a:b.wav", "-f lavfi -i anoisesrc=r=44100:d=2:s=1:a=" + loudness + " -ac 2");
        std::vector<short> samples(2L * 88200);
        std::ifstream file("-a:b.wav", std::ios::binary);
        file.seekg(-4L * 88200, std::ios::end).read(reinterpret_cast<char*>(samples.data()), 4L * 88200);
        EXPECT_EQ(Song("-a:b.wav").getSamples(), samples) << loudness;
        EXPECT_EQ(Song(make("same.flac", "-i file:-a:b.wav")).getSamples(), samples) << loudness;
    }
    // A tone at a quarter of full scale on the left, in what people have: how many ms it may be longer, and
    // the height on the right.
    make("tone.wav", "-f lavfi -i 'aevalsrc=sin(2*PI*500*t)/4|0:s=48000:d=3' -c:a pcm_s24le");
    for (const auto& [name, options, padding, right] :
         {std::tuple("tone.mp3", "", 60, 0), std::tuple("tone.ogg", "-c:a libvorbis", 30, 0),
          std::tuple("tone.opus", "", 30, 0), std::tuple("tone.m4a", "-c:a aac -b:a 256k", 60, 0),
          std::tuple("mono.wav", "-af pan=mono\\|c0=c0 -ar 22050", 1, 8192),
          std::tuple("film.mkv", "-f lavfi -i testsrc=d=3 -c:a flac", 1, 0)}) {
        const Song song(make(name, "-i tone.wav " + std::string(options)));
        EXPECT_NEAR(song.getDuration(), 3000, padding) << name;
        std::array<int, 2> highest{};
        for (std::size_t i = 88200; i < 176400; ++i) {
            highest[i % 2] = std::max<int>(highest[i % 2], song.getSamples()[i]);
        }
        EXPECT_NEAR(highest[0], 8192, 600) << name;
        EXPECT_NEAR(highest[1], right, 600) << name;
    }
}

TEST(Song, IsRefusedInOneSentenceThatNamesIt) {
    make("mute.mkv", "-f lavfi -i testsrc=d=1");
    shell("", ">empty.mp3; yes | head -c 99999 >text.mp3");
    for (const auto& [name, fault] :
         {std::pair("none", "does not exist."), std::pair("", "is a folder."),
          std::pair("empty.mp3", "is empty."), std::pair("text.mp3", "has no sound that FFmpeg can read."),
          std::pair("mute.mkv", "has no sound")}) {
        const std::string path = folder.path + name;
        EXPECT_THAT([&] { const Song song(path); },
                    testing::ThrowsMessage<std::runtime_error>(
                        testing::StartsWith(path + ": The music file " + fault)));
    }
}

TEST(Song, IsHeardAsLoudAsTheShowsOwnTrack) {
    // R128 gives a sine on both sides its level in decibels of full scale, and on one side 3 less.
    for (const auto& [level, right, gain] : {std::tuple(-20, "c0", 6), std::tuple(-1, "c0", -13),
                                             std::tuple(-20, "0*c0", 9), std::tuple(-50, "c0", 20)}) {
        const std::string filter = "volume=" + std::to_string(level) + "dB,pan=stereo|c0=c0|c1=" + right;
        make("tone.wav", "-f lavfi -i 'aevalsrc=sin(2*PI*1000*t):d=5:s=44100' -af '" + filter + "'");
        EXPECT_NEAR(20 * std::log10(Song(folder.path + "tone.wav").getGain()), gain, 0.1) << filter;
    }
    EXPECT_EQ(Song(make("silence.wav", "-f lavfi -i anullsrc -t 1")).getGain(), 1);
}

TEST(Song, IsPlayedInPlaceOfTheTrackFromWhereTheShowBegins) {
    const Noise noise(3L * 44100, 1, 1700);
    FMOD_Song_Set(&noise.song);
    for (int round = 0; round < 2; ++round) {
        Player player;
        player.play(folder.path + "none");
        EXPECT_EQ(player.length(), 3000U);
        clockTime += 15000;
        EXPECT_EQ(player.position(), 1715U);
        EXPECT_EQ(FMOD_Song_IsOver(), 0);
        clockTime += 1285000;
        EXPECT_EQ(player.position(), Player::OVER);
        EXPECT_EQ(FMOD_Song_IsOver(), 1);
    }
    FMOD_Song_Set(nullptr);
    EXPECT_EQ(Player().load(folder.path + "none"), FMOD_ERR_FILE_MISSING) << "the track again";
}
