#pragma once

#include "DraftFile.h"
#include "FrameRange.h"
#include "Options.h"
#include "Scratch.h"
#include "ShowSettings.h"
#include "VideoFormat.h"

#include <filesystem>
#include <string>
#include <vector>

namespace recorder {

/// A video that several processes make piece by piece, on one machine or many, by way of GNU parallel. Each
/// of them is a recorder of its own for a range of frames; here the pieces are joined as they are, and the
/// sound is laid under them once.
class Spread {
public:
    /// Claims the file. Throws std::runtime_error with one line if that fails.
    explicit Spread(const Options& options);

    /// Answers the exit status of the whole program; the summary is told on standard error. Throws
    /// std::runtime_error with one line, which names the piece that failed.
    int run();

private:
    Spread(const Options& options, const ShowSettings& settings, const std::filesystem::path& data);

    void prepare() const;
    Arguments command() const;
    /// Until all pieces are there, one failed or the user has had enough; answers how GNU parallel ended.
    int record() const;
    std::string findFault() const;
    void join() const;

    Options options;
    FrameSize size;
    std::filesystem::path data;
    DraftFile draft;
    Scratch folder; ///< of the pieces and all that belongs to them
    VideoFormat format;
    std::vector<FrameRange> pieces;
};

} // namespace recorder
