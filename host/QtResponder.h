#pragma once
// The host's modal boxes as real dialogs for a person at the window: message, question (Yes gives 6,
// No gives 2), a whole-number value box (Cancel gives -1), file requesters with the panel's filters in
// Qt's form, the platform input box, and error reports.

#include "host/Responder.h"

#include <functional>

class QWidget;

namespace kirrel::host {

class QtResponder final : public Responder {
  public:
    // The dialogs centre on the widget that parentFor() gives at the time of asking (the window in
    // front by default).
    explicit QtResponder(std::function<QWidget*()> parentFor = {});

    void message(const std::string& text, const std::string& title) override;
    int question(const std::string& text, const std::string& title) override;
    int discard(const std::string& text, const std::string& title) override;
    double value(const std::string& title, double minimum, double maximum) override;
    std::string fileOpen(const std::string& title, const std::string& defaultFile,
                         const std::string& filter) override;
    std::string fileSave(const std::string& title, const std::string& defaultFile,
                         const std::string& filter) override;
    std::optional<std::string> input(const std::string& prompt, const std::string& title,
                                     const std::string& defaultText) override;
    void error(const std::string& text, const std::string& title) override;

    static constexpr int kYes = 6;
    static constexpr int kNo = 2;

  private:
    QWidget* parent() const;
    std::string requestFile(bool save, const std::string& title, const std::string& defaultFile,
                            const std::string& filter);

    std::function<QWidget*()> parentFor_;
};

} // namespace kirrel::host
