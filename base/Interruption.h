#pragma once

#include <csignal>
#include <thread>

namespace calljournal {

/// While the object lives, a signal that ends the process (Ctrl-C or Ctrl-\, a closed terminal, a plain kill, a time
/// limit) ends it without leaving temporary files, at once, whatever it is doing.
///
/// It has to be made before other threads are, which take over what signals they leave alone.
class Interruption {
public:
    Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;
    ~Interruption();

private:
    void wait() const;

    sigset_t before_;
    int signals_;
    int stop_;
    std::thread thread_;
};

}  // namespace calljournal
