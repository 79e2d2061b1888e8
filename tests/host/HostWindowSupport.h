#pragma once
// Helpers for the host window tests: a window over the sample animation, and answers to modal boxes
// given by a timer once the box is up (the boxes block until then).

#include "host/HostState.h"
#include "host/HostWindow.h"
#include "host/SampleAnimation.h"
#include "support/Support.h"

#include <QApplication>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QStandardPaths>
#include <QTimer>

#include <functional>
#include <memory>

namespace kirrel::test {

// Acts on the next modal dialog as soon as it is shown.
inline void whenModal(std::function<void(QWidget*)> act) {
    auto* timer = new QTimer;
    timer->setInterval(5);
    QObject::connect(timer, &QTimer::timeout, [timer, act] {
        if (QWidget* modal = QApplication::activeModalWidget()) {
            timer->stop();
            timer->deleteLater();
            act(modal);
        }
    });
    timer->start();
}

inline void processEventsFor(int ms) {
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

// A fresh host with the sample animation and swap picture, and a window shown offscreen over it.
class HostWindowTest : public HostTest {
  protected:
    void SetUp() override {
        QStandardPaths::setTestModeEnabled(true);
        HostTest::SetUp();
        host().loadAnimation(host::sampleAnimation(12, 64, 48));
        host().loadSwap(host::sampleSwapPicture(64, 48));
        window = std::make_unique<host::HostWindow>(host());
        window->adoptCurrentAsDocument("Sample");
        window->resize(900, 600);
        window->show();
        QCoreApplication::processEvents();
    }
    void TearDown() override {
        window.reset();
        HostTest::TearDown();
    }
    // What the window shows after the host changed (normally just after the event).
    void settle() {
        QCoreApplication::processEvents();
        window->refreshFromHost();
    }

    std::unique_ptr<host::HostWindow> window;
};

} // namespace kirrel::test
