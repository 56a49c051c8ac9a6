#pragma once

namespace fmodex {

/// Keeps standard error quiet for as long as it lives. Libraries that look for a sound device complain there
/// about each one that is not in the machine.
class Silence {
public:
    Silence();
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
    ~Silence();

private:
    int standardError; ///< the real one; -1 when there is nothing to go back to
};

} // namespace fmodex
