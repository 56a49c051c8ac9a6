// What is read of somebody's own music, how loud the scenes hear it, and that it takes the place of the
// track.

#include "Song.h"

#include "Player.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <tuple>

using song::Song;

TEST(Song, HasTheSamplesOfItsFileWhateverTheFormat) {
    std::filesystem::current_path(folder.path);
    // Under a name that looks like more.
    make("-a:b.wav", "-f lavfi -i anoisesrc=r=44100:d=2:s=1:a=0.9 -ac 2");
    std::vector<short> samples(2L * 88200);
    std::ifstream file("-a:b.wav", std::ios::binary);
    file.seekg(-4L * 88200, std::ios::end).read(reinterpret_cast<char*>(samples.data()), 4L * 88200);
    EXPECT_EQ(Song("-a:b.wav").getSamples(), samples);
    EXPECT_EQ(Song(make("same.flac", "-i file:-a:b.wav")).getSamples(), samples);
    // A tone at a quarter of full scale on the left, in what people have: how many ms it may be longer, and
    // the height on the right.
    make("tone.wav", "-f lavfi -i 'aevalsrc=sin(2*PI*500*t)/4|0:s=48000:d=3' -c:a pcm_s24le");
    for (const auto& [name, options, padding, right] :
         {std::tuple("tone.mp3", "", 60, 0), std::tuple("tone.opus", "", 30, 0),
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
