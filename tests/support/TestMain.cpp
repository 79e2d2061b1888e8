// The core tests need a QApplication for forms; they run offscreen.
#include <QApplication>

#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char** argv) {
    if (!std::getenv("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "qt.qpa.*=false");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
