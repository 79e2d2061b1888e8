#include "customfx/CfxForms.h"

#include "customfx/CfxFile.h"
#include "customfx/CustomFX.h"
#include "panel/DisabledWhileRunning.h"
#include "stored/DataFile.h"
#include "stored/SlotFiles.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <functional>

namespace kirrel::customfx {

namespace {

constexpr const char* kBuilderHelp =
    "This tool converts the current animation in memory into a CFX file that can be composited over other "
    "animations using the CFX player plugin. The Primary Color currently selected will be used for the "
    "'Source Animation Layer' and the Secondary Color currently selected will be used for the 'Destination "
    "Animation Layer'.  All other colors in the animation will show as normal.";

constexpr const char* kPlayerHelp =
    "This Plugin composites the Main and Swap Buffers using a CFX File (created using Kirrel), to create a "
    "customized animated effect. The CFX file will scale to resolution but not scale time/frames. The effect "
    "will start with Frame 0 and continue until either the animation or the CFX File runs out of Frames, "
    "which "
    "ever comes first.";

// Runs its action when the scope ends, however it ends.
class AtExit {
  public:
    explicit AtExit(std::function<void()> f) : f_(std::move(f)) {}
    ~AtExit() { f_(); }
    AtExit(const AtExit&) = delete;
    AtExit& operator=(const AtExit&) = delete;

  private:
    std::function<void()> f_;
};

// Both dialogs are this wide; their help text wraps to it.
constexpr int kWidth = 440;
constexpr int kHelpMargin = 6;

} // namespace

// --- builder ---------------------------------------------------------------------------------------

frmCFXBuilder::frmCFXBuilder() : EffectDialog("frmCFXBuilder", "Kirrel - CustomFX Builder (Basic)") {
    auto* outer = makeWindowLayout<QVBoxLayout>(10);
    outer->addWidget(makeDescription(kBuilderHelp, kHelpMargin));
    auto* titleRow = new QHBoxLayout;
    Label2_ = makeLabel("Label2", "CFX Title:");
    txtCFX_Title_ = makeText("txtCFX_Title");
    txtCFX_Title_->setText("Untitled");
    titleRow->addWidget(Label2_);
    titleRow->addWidget(txtCFX_Title_, 1);
    outer->addLayout(titleRow);
    auto* buttons = new QHBoxLayout;
    cmdRun_ = makeButton("cmd_Run", "Export CFX", [this] { run(); });
    cmdCancel_ = makeButton("cmdCancel", "Done", [this] { done(); });
    buttons->addStretch(1);
    buttons->addWidget(cmdRun_);
    buttons->addWidget(cmdCancel_);
    outer->addLayout(buttons);
    fixWidth(kWidth);
}

void frmCFXBuilder::formLoad() {
    applySkin({{}, {}, {cmdRun_, cmdCancel_}});
}

void frmCFXBuilder::run() {
    // Made first, so that it runs after the buttons are back.
    const AtExit shownAgain([this] { show(); });
    const panel::DisabledWhileRunning busy({cmdRun_, cmdCancel_});
    ExportCFX(txtCFX_Title_->text().toStdString());
}

// --- player ----------------------------------------------------------------------------------------

frmCFXPlayer::frmCFXPlayer() : EffectDialog("frmCFXPlayer", "Kirrel - CustomFX Player") {
    auto* outer = makeWindowLayout<QVBoxLayout>(10);
    outer->addWidget(makeDescription(kPlayerHelp, kHelpMargin));
    outer->addLayout(makeApplyRow("Apply CFX"));
    fixWidth(kWidth);
}

void frmCFXPlayer::formLoad() {
    applySkin();
}

bool frmCFXPlayer::readHeader() {
    try {
        CfxReader in(Path);
        Type = in.header().type;
        if (Type != 1) {
            van().Van_MessageBox("Not a Type 1 CFX File: " + std::to_string(Type));
            return false;
        }
        // Only the header is read here; its sizes are checked against the file all the same, so that
        // a damaged file is refused before anything is saved or changed.
        in.readRest();
        Title = trimTitle(in.header().title);
        Frames = in.header().frames;
        Width = in.header().width;
        Height = in.header().height;
    } catch (const stored::DamagedFile& e) {
        van().Van_MessageBox(e.what());
        return false;
    }
    return true;
}

void frmCFXPlayer::run() {
    // PlayCFX doesn't lock the host: the whole dialog waits while it runs, and comes back on every
    // way out of this handler, in front.
    const AtExit shownAgain([this] {
        show();
        activateWindow();
        setFocus();
    });
    const panel::DisabledWhileRunning busy({this, cmdRun(), cmdCancel()});
    Path.clear();
    Path = van().Van_RequestFile_open("Load CustomFX File", "", kCfxFilter);
    if (Path.empty() || !stored::fileExists(Path)) return;
    if (!readHeader()) return;
    const std::string question = "'" + Title + "'\n" + std::to_string(Frames) + " frames at " +
                                 std::to_string(Width) + " X " + std::to_string(Height) +
                                 "\n\nApply to Animation?";
    if (van().Van_QuestionBox(question) == 2) return;
    saveUndoIfChecked();
    PlayCFX(Path);
}

void frmCFXPlayer::undo() {
    EffectDialog::undo();
    van().Van_GotoFrame(0);
    van().Van_Refresh();
}

} // namespace kirrel::customfx
