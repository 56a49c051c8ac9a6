#pragma once

#include "Draft.h"
#include "Encoder.h"
#include "FrameRange.h"
#include "Options.h"
#include "Track.h"

#include <climits>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace recorder {

/// A recording that is stopped before it has that much of the show is none: what there is replaces no file.
constexpr unsigned int LEAST_MS = 1000;

/// What FFmpeg makes of some frames of the show: a video, a picture, or a stream on standard output. Failures
/// are std::runtime_error with one line.
class Film {
public:
    /// The frames of a range with the track's sound, as an MP4 file.
    static Film video(const Options& options, const Track& track, const FrameRange& range);

    /// One frame as a PNG file.
    static Film still(const Options& options, const StillRequest& request);

    /// Small pictures of the whole show, a row for each scene, as a JPEG or PNG file (by its name's end) that
    /// is small enough to be sent around.
    static Film contactSheet(const Options& options);

    /// The frames of a range on standard output: bare ones, or a piece of a video. From its construction on
    /// standard output is for them alone: what the show prints goes to standard error.
    static Film stream(const Options& options, const FrameRange& range);

    /// The first frame from this one on that it wants, or NONE.
    unsigned int nextFrom(unsigned int frame) const;
    static constexpr unsigned int NONE = UINT_MAX;
    unsigned int getLastFrame() const { return frames.back(); }
    unsigned int getTaken() const { return taken; }
    bool isComplete() const { return taken == frames.size(); }

    const std::string& getName() const { return name; }
    /// Null: it is a stream, on that descriptor.
    const Draft* getDraft() const { return draft.get(); }
    int getStream() const { return descriptor; }

    /// The next frame it wants. With the last one it is complete, and the file has its name.
    void take(const std::vector<unsigned char>& pixels);

    /// No more frames come: completes it with those there were. Answers a line about it, an empty one if they
    /// were too few.
    const std::string& end();

private:
    Film(const Options& options, std::unique_ptr<Draft> draft, std::string name)
        : name(std::move(name)), size(*options.size), draft(std::move(draft)) {}
    void complete();
    Encoder::Output output() const;

    std::string name; ///< as the user knows it
    FrameSize size;
    std::vector<unsigned int> frames;                       ///< wanted, ascending
    std::size_t least = 1;                                  ///< with fewer there is nothing to keep
    Arguments arguments;                                    ///< for FFmpeg, of what becomes of them
    std::function<Arguments(unsigned int taken)> shortened; ///< and of the file, if there were fewer
    std::string what;                                       ///< for the summary; empty: so many frames
    std::string summary;
    std::unique_ptr<Draft> draft;
    int descriptor = -1;
    std::unique_ptr<Encoder> encoder;
    unsigned int taken = 0;
};

} // namespace recorder
