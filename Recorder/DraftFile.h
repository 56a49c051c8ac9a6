#pragma once

#include <string>

namespace recorder {

// A file that appears under its name only once it is whole. Until publish() it is a hidden sibling of that
// name, empty at first, for whoever produces the content to write to; the destructor removes a draft that was
// never published.
class DraftFile {
public:
    // Throws std::runtime_error with one line if nothing can be written under that name.
    explicit DraftFile(const std::string& name);
    ~DraftFile();
    DraftFile(const DraftFile&) = delete;
    DraftFile& operator=(const DraftFile&) = delete;

    const std::string& getName() const { return name; }     // as the user gave it
    const std::string& getDraft() const { return draft; }   // absolute
    const std::string& getTarget() const { return target; } // absolute

    // Throws std::runtime_error with one line if the name can't be taken after all.
    void publish();

private:
    std::string name;
    std::string target;
    std::string draft;
};

} // namespace recorder
