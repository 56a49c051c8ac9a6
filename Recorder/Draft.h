#pragma once

#include <cstdint>
#include <string>
#include <sys/types.h>

namespace recorder {

/// A file without a name, in a folder, open for reading and writing; its descriptor. Throws
/// std::system_error.
int openNameless(const std::string& folder);

/// The name by which other programs reach a descriptor of this process, as long as it is open.
std::string pathOf(int descriptor);

/// A file that appears under its name only once it is whole. Until publish() it has no name at all, so that
/// whatever happens nothing is left of it. (There are file systems that know no files without a name. On
/// those it is a hidden one, which stays if the program is killed.)
class Draft {
public:
    /// Throws std::runtime_error with one line if nothing can be written under that name.
    explicit Draft(const std::string& name) : Draft(name, name) {}
    /// The same for a name that the user gave when the current directory was another one.
    Draft(std::string given, const std::string& place);
    ~Draft();
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;

    const std::string& getName() const { return name; }     ///< as the user gave it
    const std::string& getTarget() const { return target; } ///< absolute, and where links lead
    std::string getPath() const { return pathOf(descriptor); }
    std::uintmax_t getBytes() const;

    /// Throws std::runtime_error with one line if the name can't be taken after all.
    void publish();

private:
    std::string name;
    std::string target;
    std::string hidden; ///< a name in the same folder; empty: none
    mode_t mode;        ///< of the finished file
    int descriptor;
};

} // namespace recorder
