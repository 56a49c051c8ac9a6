#pragma once

#include "Canvas.h"
#include "FrameQueue.h"
#include "FrameSink.h"
#include "Host.h"
#include "Options.h"
#include "ProgressLine.h"
#include "ShowSettings.h"
#include "StageFolder.h"

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace recorder {

/// One recording: runs the show, answers it for the window, the keyboard and the clock, and hands its frames
/// to whatever is made of them. The show's time is in its hands: it stands still while a frame is drawn and
/// moves by what the show itself waits, so every frame is exactly 15 ms long, however long drawing it took.
///
/// The show runs on the caller's thread; a second one writes the frames out. There is one recording at a
/// time.
class Recorder : public host::Host {
public:
    /// Claims every file the options name. Throws std::runtime_error with one line if that fails.
    explicit Recorder(const Options& options);
    ~Recorder() override;

    /// Runs the show from beginning to end and answers the exit status of the whole program; summary and
    /// failure are told on standard error.
    int run();

    host::Extent openWindow(int width, int height) override;
    void closeWindow() override;
    float getPixelScale() const override;
    void showFrame() override;
    bool wantsEscape() override;
    /// May be asked from any thread.
    unsigned int getTicks() override { return ticks; }
    void wait(unsigned int milliseconds) override { ticks += milliseconds; }

private:
    Recorder(const Options& options, const ShowSettings& settings);
    bool wanted(unsigned int number) const;
    void writeFrames();
    void stopWriting();
    int finish();
    void fail(const std::string& reason);

    FrameSize frameSize;
    unsigned int oversampling; ///< pixels of the window to each of the frame, each way
    StageFolder stage;
    std::vector<std::unique_ptr<FrameSink>> sinks;
    unsigned int lastFrame = 0;
    ProgressLine progress;

    std::unique_ptr<Canvas> canvas;
    std::unique_ptr<FrameQueue> queue;
    std::thread writer;

    std::atomic<unsigned int> ticks{0};
    unsigned int frame = 0; ///< that is being drawn
    std::string failure;    ///< why the recording can't go on; the writer's until it is joined
    std::atomic<bool> failed{false};
};

} // namespace recorder
