#include "panel/Interrupt.h"

#include <atomic>
#include <csignal>

namespace kirrel {

namespace {
std::atomic<int> caught{0};

extern "C" void noteSignal(int signal) {
    caught.store(signal);
}
} // namespace

void installInterruptHandlers() {
    static const bool installed = [] {
        struct sigaction action {};
        action.sa_handler = noteSignal;
        sigemptyset(&action.sa_mask);
        sigaction(SIGINT, &action, nullptr);
        sigaction(SIGTERM, &action, nullptr);
        return true;
    }();
    (void)installed;
}

bool interrupted() {
    return caught.load() != 0;
}

int interruptSignal() {
    return caught.load();
}

void clearInterrupt() {
    caught.store(0);
}

} // namespace kirrel
