#include "Recorder.h"

#include "ContactSheet.h"
#include "Encoder.h"
#include "RawStream.h"
#include "StillPicture.h"
#include "StopRequest.h"
#include "Timeline.h"
#include "VideoFile.h"
#include "VideoFormat.h"
#include "Widths.h"
#include "report.h"

#include <fmod_clock.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace recorder {

namespace {

// Enough to even out frames that are slow to draw or to encode; a large one is 32 MB.
constexpr std::size_t QUEUE_SLOTS = 4;

unsigned long long soundClock() { return 1000ULL * host::Host::current().getTicks(); }

} // namespace

Recorder::Recorder(const Options& options) : Recorder(options, ShowSettings(options)) {}

Recorder::Recorder(const Options& options, const ShowSettings& settings)
    : frameSize(settings.size),
      oversampling(options.smooth ? 2 : 1),
      stage(options.dataFolder, {std::nullopt, options.seed, options.track}),
      progress(0) {
    if (options.video != "-" || !options.stills.empty() || !options.contactSheet.empty()) {
        Encoder::requireInstalled();
    }
    if (options.video == "-") {
        sinks.push_back(std::make_unique<RawStream>(options.range()));
    } else if (!options.video.empty()) {
        sinks.push_back(std::make_unique<VideoFile>(
            options.video, VideoFormat::of(options, settings, stage.getTrack().string())));
    }
    for (const StillRequest& still : options.stills) {
        sinks.push_back(std::make_unique<StillPicture>(still.file, timeline::frameAt(still.time)));
    }
    if (!options.contactSheet.empty()) {
        sinks.push_back(std::make_unique<ContactSheet>(options.contactSheet, stage.getPath().string()));
    }
    for (const auto& sink : sinks) {
        lastFrame = std::max(lastFrame, sink->getLastFrame());
    }
    progress = ProgressLine(lastFrame);
}

Recorder::~Recorder() { stopWriting(); }

int Recorder::run() {
    StopRequest::listen();
    FMOD_Clock_Set(soundClock);
    const std::filesystem::path home = std::filesystem::current_path();
    std::filesystem::current_path(stage.getPath());
    const int status = host::playShow();
    std::filesystem::current_path(home);
    progress.clear();
    stopWriting();
    if (status != 0) {
        if (failed) {
            say(failure);
        }
        return status;
    }
    return finish();
}

host::Extent Recorder::openWindow(int /*width*/, int /*height*/) {
    try {
        if (canvas != nullptr) {
            throw std::runtime_error("the size of a recording can't change");
        }
        const FrameSize size = frameSize.times(oversampling);
        canvas = std::make_unique<Canvas>(size, frameSize);
        for (const auto& sink : sinks) {
            sink->open(frameSize);
        }
        canvas->setDrawing(wanted(frame));
        queue = std::make_unique<FrameQueue>(QUEUE_SLOTS, frameSize.bytes());
        writer = std::thread(&Recorder::writeFrames, this);
        return {size.width, size.height};
    } catch (const std::runtime_error& error) {
        fail(error.what());
        throw;
    }
}

float Recorder::getPixelScale() const {
    return static_cast<float>(oversampling) * host::scaleOf(frameSize.height);
}

void Recorder::closeWindow() { canvas.reset(); }

void Recorder::showFrame() {
    if (wanted(frame)) {
        Frame& slot = queue->beginFill();
        slot.number = frame;
        canvas->read(slot.pixels.data());
        queue->endFill();
    }
    if (frame >= progress.getLastFrame()) {
        // The show's own closing lines follow.
        progress.clear();
    } else {
        progress.update(frame);
    }
    ++frame;
    canvas->setDrawing(wanted(frame));
}

bool Recorder::wantsEscape() { return frame > lastFrame || failed || StopRequest::getSignal() != 0; }

bool Recorder::wanted(unsigned int number) const {
    return std::any_of(sinks.begin(), sinks.end(), [&](const auto& sink) { return sink->wants(number); });
}

void Recorder::writeFrames() {
    while (const Frame* const next = queue->beginTake()) {
        // After a failure the rest only passes through, so that the show gets to its end.
        if (!failed) {
            try {
                for (const auto& sink : sinks) {
                    if (sink->wants(next->number)) {
                        sink->take(*next);
                    }
                }
            } catch (const std::runtime_error& error) {
                fail(error.what());
            }
        }
        queue->endTake();
    }
}

void Recorder::stopWriting() {
    if (writer.joinable()) {
        queue->close();
        writer.join();
    }
}

void Recorder::fail(const std::string& reason) {
    failure = reason;
    failed = true;
}

int Recorder::finish() {
    const int signal = StopRequest::getSignal();
    const bool tooEarly = signal != 0 && frame < timeline::firstFrameFrom(LEAST_MS);
    bool anything = false;
    for (const auto& sink : sinks) {
        if (failed || tooEarly) {
            break;
        }
        try {
            const std::string summary = sink->finish();
            if (!summary.empty()) {
                say(summary);
                anything = true;
            } else if (signal == 0) {
                fail("the show ended before there was anything for " + sink->getName());
            }
        } catch (const std::runtime_error& error) {
            fail(error.what());
        }
    }
    if (failed) {
        say(failure);
        return FAILED;
    }
    if (signal != 0) {
        say(anything ? "stopped early" : "stopped before there was anything to keep");
        return STOPPED_BY_SIGNAL + signal;
    }
    return 0;
}

} // namespace recorder
