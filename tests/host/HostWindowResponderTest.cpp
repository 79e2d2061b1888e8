// The real dialogs behind the host's boxes: the panel's file filters in Qt's form, and the answers
// that the panel tests for (2 for no, a negative value for backing out, an empty text for cancel).

#include "HostWindowSupport.h"

#include "host/FileFilter.h"
#include "host/QtResponder.h"

#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>

namespace kirrel::test {
namespace {

TEST(HostWindowFileFilter, PanelFiltersBecomeQtFilters) {
    EXPECT_EQ(host::qtFileFilter("gif(*.gif)|*.gif"), "gif (*.gif)");
    EXPECT_EQ(host::qtFileFilter("msk(*.msk)|*.msk"), "msk (*.msk)");
    EXPECT_EQ(host::qtFileFilter("Pictures|*.png;*.bmp|Any|*.*"), "Pictures (*.png *.bmp);;Any (*.*)");
    EXPECT_EQ(host::qtFileFilter("cfx(*.cfx)"), "cfx (*.cfx)");
    EXPECT_EQ(host::qtFileFilter("*.png"), "*.png (*.png)");
    EXPECT_EQ(host::qtFileFilter(""), "All files (*)");
    EXPECT_EQ(host::filterSuffix("gif(*.gif)|*.gif"), "gif");
    EXPECT_EQ(host::filterSuffix("Any|*.*"), "");
    EXPECT_EQ(host::filterSuffix(""), "");
}

class HostWindowResponder : public HostWindowTest {
  protected:
    host::QtResponder dialogs{[this] { return static_cast<QWidget*>(window.get()); }};
};

TEST_F(HostWindowResponder, QuestionAnswersSixForYesAndTwoForNo) {
    whenModal([](QWidget* w) { qobject_cast<QMessageBox*>(w)->button(QMessageBox::No)->click(); });
    EXPECT_EQ(dialogs.question("\nClear Animation Undo file?", "Kirrel"), 2);
    whenModal([](QWidget* w) {
        auto* box = qobject_cast<QMessageBox*>(w);
        EXPECT_EQ(box->text(), "Clear Animation Undo file?"); // the panel's layout line feeds go
        box->button(QMessageBox::Yes)->click();
    });
    EXPECT_EQ(dialogs.question("\nClear Animation Undo file?", "Kirrel"), 6);
}

TEST_F(HostWindowResponder, ValueAndInputBoxesReportBackingOut) {
    whenModal([](QWidget* w) { qobject_cast<QInputDialog*>(w)->reject(); });
    EXPECT_EQ(dialogs.value("Number of stripes", 2, 50), -1);
    whenModal([](QWidget* w) {
        auto* d = qobject_cast<QInputDialog*>(w);
        // The box opens on the minimum it is given (the stripe sizes pass their current value
        // there) and lets the user go down to 0.
        EXPECT_EQ(d->intValue(), 2);
        EXPECT_EQ(d->intMinimum(), 0);
        EXPECT_EQ(d->intMaximum(), 50);
        d->setIntValue(99); // held to the range
        d->accept();
    });
    EXPECT_EQ(dialogs.value("Number of stripes", 2, 50), 50);

    whenModal([](QWidget* w) {
        auto* d = qobject_cast<QInputDialog*>(w);
        EXPECT_EQ(d->textValue(), " 30");
        EXPECT_EQ(d->windowTitle(), "Frame count");
        d->setTextValue("12");
        d->accept();
    });
    EXPECT_EQ(dialogs.input(" Create new animation", "Frame count", " 30"), std::optional<std::string>("12"));
    whenModal([](QWidget* w) { qobject_cast<QInputDialog*>(w)->reject(); });
    EXPECT_EQ(dialogs.input(" Create new animation", "Frame count", " 30"), std::nullopt);
}

} // namespace
} // namespace kirrel::test
