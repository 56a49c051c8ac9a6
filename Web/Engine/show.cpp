// The show in a page: the host of its calls, and what the player calls in turn.

#include "Host.h"
#include "OpenGL.h"
#include "Timeline.h"
#include "Widths.h"
#include "page.h"

#include <emscripten.h>

int shownMain(int argc, char** argv); // of the show, named so by the build

namespace {

/// Time stands still while a frame is run, and moves by what the show waits.
class Page : public host::Host {
public:
    host::Extent openWindow(int width, int height) override {
        // The canvas has as many pixels as it likes: nothing in the show depends on them.
        return {static_cast<unsigned int>(width), static_cast<unsigned int>(height)};
    }
    float getPixelScale() const override { return host::scaleOf(pageHeight()); }
    unsigned int seedFor(unsigned int asked) override { return pageSeedFor(asked); }
    void closeWindow() override {}
    void showFrame() override { web::setDrawing(pageShowFrame(frame++) != 0); }
    bool wantsEscape() override { return false; }
    unsigned int getTicks() override { return ticks; }
    void wait(unsigned int milliseconds) override { ticks += milliseconds; }

private:
    unsigned int frame = 0;
    unsigned int ticks = 0;
};

} // namespace

extern "C" {

/// From the beginning to the first frame that waits; draws the first one or not.
EMSCRIPTEN_KEEPALIVE void play(int drawn) {
    Page page;
    web::setDrawing(drawn != 0);
    pageEndShow(shownMain(0, nullptr));
}

EMSCRIPTEN_KEEPALIVE void forgetDrawn() { web::forgetDrawn(); }

EMSCRIPTEN_KEEPALIVE unsigned int frameMs() { return timeline::FRAME_MS; }
EMSCRIPTEN_KEEPALIVE unsigned int showFrames() { return timeline::SHOW_FRAMES; }
EMSCRIPTEN_KEEPALIVE unsigned int sceneCount() { return timeline::SCENES.size(); }
EMSCRIPTEN_KEEPALIVE unsigned int sceneStart(unsigned int scene) { return timeline::shotStart(scene); }
EMSCRIPTEN_KEEPALIVE const char* sceneTitle(unsigned int scene) { return timeline::SCENES[scene].title; }
}
