// What is read of somebody's own music, and how loud the scenes hear it.

#include "Song.h"

#include "Player.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <tuple>

using song::Song;

TEST(Song, HasTheSamplesOfItsFileWhateverTheFormat) {
    // Noise of all values, and so quiet that many a byte of it looks like the head of an MP3.
    const std::string noise = make("-wide:noise.wav", "-f lavfi -i anoisesrc=r=44100:d=2:a=0.9:s=1 -ac 2");
    const std::string quiet = make("quiet.wav", "-f lavfi -i anoisesrc=r=44100:d=2:a=0.0001:s=1 -ac 2");
    for (const std::string& path : {noise, quiet}) {
        const std::string file = read(path);
        const Song whole(path);
        ASSERT_EQ(whole.getCount(), 88200);
        EXPECT_EQ(whole.getDuration(), 2000);
        const std::size_t head = file.size() - 4UL * 88200;
        EXPECT_EQ(std::memcmp(whole.getSamples().data(), file.data() + head, 4UL * 88200), 0) << path;
        make("same.flac", "-i '" + path + "'");
        EXPECT_EQ(Song(folder.path + "same.flac").getSamples(), whole.getSamples());
    }
    // A tone at a quarter of full scale on the left, in what people have: how many ms it may be longer or
    // shorter, and the height on the left and on the right.
    make("tone.wav", "-f lavfi -i 'aevalsrc=sin(2*PI*500*t)/4|0:s=48000:d=3' -c:a pcm_s24le");
    for (const auto& [name, options, padding, left, right] :
         {std::tuple("tone.mp3", "", 60, 8192, 0), std::tuple("tone.ogg", "-c:a libvorbis", 30, 8192, 0),
          std::tuple("tone.opus", "", 30, 8192, 0), std::tuple("tone.m4a", "-c:a aac -b:a 256k", 60, 8192, 0),
          std::tuple("one side.wav", "-af pan=mono\\|c0=c0 -ar 22050", 1, 8192, 8192),
          std::tuple("film.mkv", "-f lavfi -i testsrc=d=3 -c:a flac", 1, 8192, 0)}) {
        const Song song(make(name, "-i tone.wav " + std::string(options)));
        EXPECT_NEAR(song.getDuration(), 3000, padding) << name;
        int highestLeft = 0;
        int highestRight = 0;
        for (std::int64_t i = 44100; i < 88200; ++i) {
            highestLeft = std::max<int>(highestLeft, song.getSamples()[2 * i]);
            highestRight = std::max<int>(highestRight, song.getSamples()[2 * i + 1]);
        }
        EXPECT_NEAR(highestLeft, left, 600) << name;
        EXPECT_NEAR(highestRight, right, 600) << name;
    }
}

TEST(Song, IsRefusedInOneSentenceThatNamesIt) {
    make("mute.mkv", "-f lavfi -i testsrc=d=1");
    write("text.mp3", std::string(100000, 'x'));
    write("empty.mp3", "");
    for (const auto& [name, fault] :
         {std::pair("none", "does not exist"), std::pair("empty.mp3/below", "not exist"),
          std::pair("", "is a folder"), std::pair("empty.mp3", "is empty"),
          std::pair("text.mp3", "no sound that FFmpeg can read"), std::pair("mute.mkv", "no sound")}) {
        try {
            const Song song(folder.path + name);
            ADD_FAILURE() << name << " is no song";
        } catch (const std::runtime_error& error) {
            EXPECT_THAT(error.what(), testing::StartsWith(folder.path + name + ": The music file "));
            EXPECT_THAT(error.what(), testing::HasSubstr(fault));
        }
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
