// The transition dialogs' live preview: it shows what Apply then writes, follows the controls, says
// why a run would refuse, and leaves the host, its trace, its history and its folder alone.

#include "panel/Controls.h"
#include "panel/FormBase.h"
#include "panel/LivePreview.h"
#include "panel/Registry.h"
#include "transitions/Families.h"
#include "transitions/PatternFamilies.h"
#include "transitions/StripeBlockFamilies.h"
#include "transitions/TransitionSupport.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QRadioButton>

#include <functional>
#include <map>

namespace kirrel::test {
namespace {

using panel::FormBase;
using panel::LivePreview;
using panel::PreviewFrames;
using transitions::TransitionFamily;

class PreviewTest : public TransitionTest {
  protected:
    FormBase* open(const TransitionFamily& family) {
        panel::registerEverything();
        form = panel::loadFormByName(family.formName);
        form->showForm();
        preview = form->findChild<LivePreview*>();
        return form;
    }
    template <class T> T* ctl(const QString& name) const { return static_cast<T*>(form->control(name)); }
    void choose(const char* list, const QString& text) const {
        auto* c = ctl<QComboBox>(list);
        c->setCurrentIndex(c->findText(text));
    }
    void toggleDirection() const { ctl<panel::ClickLabel>("lblToggle")->click(); }
    void setRange(int startIndex, int endIndex) const {
        ctl<QComboBox>("cboFrameStart")->setCurrentIndex(startIndex);
        ctl<QComboBox>("cboFrameEnd")->setCurrentIndex(endIndex);
    }

    // Lets the event loop run until the preview has run again. The limit only keeps a broken preview
    // from hanging the suite; the checks that follow say what went wrong.
    const PreviewFrames& settle() const {
        int runs = 0;
        const auto counted = QObject::connect(preview, &LivePreview::refreshed, [&runs] { ++runs; });
        QElapsedTimer clock;
        clock.start();
        while (runs == 0 && clock.elapsed() < 5000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QObject::disconnect(counted);
        EXPECT_GT(runs, 0) << "the preview never ran";
        return preview->showing();
    }

    FormBase* form = nullptr;
    LivePreview* preview = nullptr;
};

// --- the preview is what Apply writes --------------------------------------------------------------

struct Case {
    const char* name;
    const TransitionFamily& (*family)();
    int variant;        // -1: the family has no variant list
    const char* source; // a slot's text chooses the splice
    int option = -1;    // the stripe dialogs' kind of stripes
    int stripeSize = 0; // answered to "Set Height", when not 0
};

const Case kCases[] = {
    {"WipeLeftSwap", transitions::wipesFamily, 1, "Swap"},
    {"WipeTopGreyScale", transitions::wipesFamily, 3, "GreyScale"},
    {"AlphaWipe", transitions::alphaWipesFamily, 0, "Swap"},
    {"FadeColour", transitions::fadesFamily, -1, "Primary Color"},
    {"Push", transitions::pushesFamily, 2, "Swap"},
    {"Diamond", transitions::diamondsFamily, 0, "Swap"},
    {"StripesOwnSize", transitions::stripesFamily, -1, "Swap", 1, 3},
    {"WipeStored", transitions::wipesFamily, 0, "Stored Animation #1"},
    {"FadeStoredOtherSize", transitions::fadesFamily, -1, "Stored Animation #2"},
    {"StripesStored", transitions::stripesFamily, -1, "Stored Animation #1", 2},
};

void PrintTo(const Case& c, std::ostream* os) {
    *os << c.name;
}

class PreviewIsApply : public PreviewTest, public ::testing::WithParamInterface<std::tuple<Case, bool>> {};

TEST_P(PreviewIsApply, FrameForFrame) {
    const Case& c = std::get<0>(GetParam());
    const bool toward = std::get<1>(GetParam());
    const TransitionFamily& family = c.family();
    constexpr int kFrames = 9, kSlotFrames = 5;
    load(kFrames, 12, 9);
    host().setAlpha(patternPicture(12, 9, 40).r);
    writeSlot(0, kSlotFrames, 12, 9);
    writeSlot(1, kSlotFrames, 10, 7); // resampled to the animation's size by the run itself
    open(family);
    if (c.variant >= 0) ctl<QComboBox>(family.variantListName)->setCurrentIndex(c.variant);
    choose(family.sourceListName, c.source);
    if (!toward) toggleDirection();
    if (c.option >= 0) ctl<QRadioButton>(QString("optDirection(%1)").arg(c.option))->setChecked(true);
    if (c.stripeSize) {
        responder.push({host::QueuedAnswer::Kind::Value, static_cast<double>(c.stripeSize), ""});
        ctl<QAbstractButton>("cmdHsize")->click();
    }
    const bool stored = std::string(c.source).starts_with("Stored");
    // The splices offer three frames to start or end on; the plain runs take frames 1..6.
    if (stored)
        ctl<QComboBox>(toward ? "cboFrameStart" : "cboFrameEnd")->setCurrentIndex(1);
    else
        setRange(1, 6);

    const PreviewFrames shown = settle();
    ASSERT_TRUE(shown.text.empty()) << shown.text;
    ctl<QAbstractButton>("cmd_Run")->click();
    ASSERT_TRUE(messagesOf(host()).empty()) << messagesOf(host()).front();

    const int first = stored ? (toward ? 5 : 0) : 1;
    ASSERT_EQ(shown.frames.size(), static_cast<std::size_t>(stored ? kSlotFrames : 6));
    for (std::size_t k = 0; k < shown.frames.size(); ++k)
        EXPECT_TRUE(shown.frames[k] == frame(first + static_cast<int>(k))) << "frame " << first + k;
}

INSTANTIATE_TEST_SUITE_P(Families, PreviewIsApply,
                         ::testing::Combine(::testing::ValuesIn(kCases), ::testing::Bool()),
                         [](const auto& info) {
                             return std::string(std::get<0>(info.param).name) +
                                    (std::get<1>(info.param) ? "To" : "From");
                         });

// Everything of the host a preview could disturb, and the temporary folder's files.
auto seen(const host::HostState& h) {
    std::map<QString, std::pair<qint64, QDateTime>> files;
    for (const QFileInfo& i : QDir(QString::fromStdString(h.tempDir())).entryInfoList(QDir::Files))
        files[i.fileName()] = {i.size(), i.lastModified()};
    return std::tuple{HostSnapshot::of(h),   h.progress(), h.locked(),         h.statusOpen(),
                      h.history().canUndo(), h.pointer(),  h.dialogs().size(), files};
}

// One session of changes: the preview follows each, says why the run would refuse, and leaves the host
// alone throughout. Each change runs its own handler first, whose calls are the dialog's; then the
// preview runs, and calls nothing.
TEST_F(PreviewTest, FollowsTheControlsSaysWhyTheRunWouldRefuseAndNeverTouchesTheHost) {
    load(8, 12, 9);
    host().setFrameDelays({10, 20, 30, 40, 50, 60, 70, 80});
    writeSlot(2, 4, 12, 9);
    writeFile(QString::fromStdString(stored::slotDataPath(tempDir(), 1)), int16le({3, 12, 9}) + "short");
    host().gotoFrame(3);
    open(transitions::wipesFamily());
    const PreviewFrames whole = settle();
    EXPECT_EQ(whole.frames.size(), 8u);
    const auto before = seen(host());

    // Changes made together are shown by one run.
    int runs = 0;
    const auto counted = QObject::connect(preview, &LivePreview::refreshed, [&runs] { ++runs; });
    ctl<QComboBox>("cboTransitions")->setCurrentIndex(1);
    setRange(2, 5);
    const PreviewFrames part = settle();
    QObject::disconnect(counted);
    EXPECT_EQ(runs, 1);
    ASSERT_EQ(part.frames.size(), 4u);
    EXPECT_EQ(part.delays, (std::vector<int>{30, 40, 50, 60}));
    EXPECT_FALSE(part.frames[1] == whole.frames[3]) << "the left wipe, not the right one";

    struct Change {
        std::function<void()> make;
        std::string shows; // the refusal shown, or "" for frames
        std::size_t frames;
    };
    const Change changes[] = {
        {[&] { setRange(3, 4); }, "Need at least 3 frames selected!", 0},
        {[&] { choose("cboWipeOptions", "Stored Animation #1"); }, "Slot Empty", 0},
        {[&] { choose("cboWipeOptions", "Stored Animation #2"); }, "AnimSlot 1.dat is damaged", 0},
        {[&] { toggleDirection(); }, "AnimSlot 1.dat is damaged", 0},
        {[&] { choose("cboWipeOptions", "Stored Animation #3"); }, "", 4},
        {[&] { toggleDirection(); }, "", 4},
        // Back from a slot the lists offer the whole animation again.
        {[&] { choose("cboWipeOptions", "Primary Color"); }, "", 8},
    };
    for (const Change& c : changes) {
        c.make();
        const std::size_t calls = trace.size();
        const PreviewFrames shown = settle();
        EXPECT_EQ(trace.size(), calls) << trace.back();
        EXPECT_NE(shown.text.find(c.shows), std::string::npos) << shown.text;
        EXPECT_EQ(shown.text.empty(), c.shows.empty()) << shown.text;
        EXPECT_EQ(shown.frames.size(), c.frames) << c.shows;
    }
    EXPECT_TRUE(seen(host()) == before);
    EXPECT_TRUE(host().history().undoLabels().empty());

    // The player moves on by itself.
    QElapsedTimer clock;
    clock.start();
    while (preview->position() == 0 && clock.elapsed() < 5000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    EXPECT_NE(preview->position(), 0);

    // The iris mask of a picture of odd height runs past 255, as Apply would find.
    open(transitions::irisFamily());
    EXPECT_EQ(settle().text, "Overflow");
    EXPECT_TRUE(host().dialogs().empty());
}

} // namespace
} // namespace kirrel::test
