#include "host/ScratchHost.h"

namespace kirrel::host {

namespace {

HostState* innermost = nullptr;

class SilentResponder final : public Responder {
  public:
    void message(const std::string&, const std::string&) override {}
    int question(const std::string& text, const std::string&) override { throw ScratchStop{text}; }
    double value(const std::string& title, double, double) override { throw ScratchStop{title}; }
    std::string fileOpen(const std::string& title, const std::string&, const std::string&) override {
        throw ScratchStop{title};
    }
    std::string fileSave(const std::string& title, const std::string&, const std::string&) override {
        throw ScratchStop{title};
    }
    std::optional<std::string> input(const std::string& prompt, const std::string&,
                                     const std::string&) override {
        throw ScratchStop{prompt};
    }
    void error(const std::string&, const std::string&) override {}
};

} // namespace

ScratchHost::ScratchHost(HostState& scratch)
    : scratch_(scratch), outer_(innermost), outerResponder_(scratch.responder()) {
    static SilentResponder silent;
    scratch_.setResponder(&silent);
    innermost = &scratch_;
}

ScratchHost::~ScratchHost() {
    innermost = outer_;
    scratch_.setResponder(outerResponder_);
}

HostState* ScratchHost::current() {
    return innermost;
}

} // namespace kirrel::host
