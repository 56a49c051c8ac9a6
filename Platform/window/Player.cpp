#include "Player.h"

#include "StopSignals.h"
#include "Widths.h"
#include "report.h"

#include <fmod_song.h>

#include <string>
#include <thread>

namespace window {

namespace {

bool softwareDraws() {
    const std::string renderer = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    const auto isNamed = [&](const char* name) { return renderer.find(name) != std::string::npos; };
    return isNamed("llvmpipe") || isNamed("softpipe") || isNamed("Software Rasterizer");
}

} // namespace

int Player::play() {
    if (!song) {
        return host::playShow();
    }
    const FMOD_SONG music = song->playedFrom(0);
    FMOD_Song_Set(&music);
    int status = 0;
    do {
        playing = false;
        status = host::playShow();
        ++round;
    } while (playing && status == 0);
    FMOD_Song_Set(nullptr);
    return status;
}

host::Extent Player::openWindow(int /*width*/, int /*height*/) {
    if (!picture) {
        try {
            screen.open();
        } catch (const std::exception& error) {
            recorder::say(error.what());
            throw;
        }
        enlarged = !softwareDraws();
        picture.emplace(chooseSize());
    }
    return picture->getSize();
}

host::Extent Player::chooseSize() const {
    constexpr recorder::FrameSize USUAL = recorder::ShowOptions::USUAL_SIZE;
    if (sized || options.size->width != USUAL.width || options.size->height != USUAL.height) {
        return {options.size->width, options.size->height};
    }
    const host::Extent whole = screen.getSize();
    const host::Extent chosen = enlarged ? whole : host::Extent{USUAL.width, USUAL.height};
    recorder::say(std::string(enlarged ? "a graphics card draws here: the picture fills the screen, "
                                       : "software draws here: the picture is ") +
                  std::to_string(chosen.width) + "x" + std::to_string(chosen.height) +
                  " (--size asks for another)");
    return chosen;
}

float Player::getPixelScale() const { return host::scaleOf(picture->getSize().height); }

void Player::showFrame() {
    picture->show(screen.getWindowSize(), enlarged);
    screen.swap();
}

bool Player::wantsEscape() {
    playing = !screen.wantsEscape() && !StopSignals::came() && !(song && FMOD_Song_IsOver() != 0);
    return !playing;
}

unsigned int Player::getTicks() {
    return static_cast<unsigned int>(
        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count());
}

void Player::wait(unsigned int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

} // namespace window
