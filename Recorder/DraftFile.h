#pragma once

#include "Scratch.h"

#include <memory>
#include <string>

namespace recorder {

/// A file that appears under its name only once it is whole. Until publish() it is a hidden sibling of that
/// name, empty at first, for whoever produces the content to write to; a draft that was never published goes
/// with this object, or with the next one of its name if the program was killed.
class DraftFile {
public:
    /// Throws std::runtime_error with one line if nothing can be written under that name.
    explicit DraftFile(const std::string& name);

    const std::string& getName() const { return name; }                ///< as the user gave it
    std::string getDraft() const { return draft->getPath().string(); } ///< absolute
    const std::string& getTarget() const { return target; }            ///< absolute

    /// Throws std::runtime_error with one line if the name can't be taken after all.
    void publish();

private:
    std::string name;
    std::string target;
    std::unique_ptr<Scratch> draft;
};

} // namespace recorder
