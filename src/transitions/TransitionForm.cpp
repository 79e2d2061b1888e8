#include "transitions/TransitionForm.h"

#include "host/HostState.h"
#include "panel/DisabledWhileRunning.h"
#include "panel/EnsureAnimation.h"
#include "panel/Numeric.h"
#include "panel/Panel.h"
#include "panel/Skin.h"
#include "stored/AnimUndo.h"
#include "stored/SlotFiles.h"
#include "stored/Thumbnail.h"
#include "stored/ThumbnailBox.h"
#include "transitions/Sources.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <stdexcept>

namespace kirrel::transitions {

namespace {

constexpr const char* kToward = "----------->";
constexpr const char* kBack = "<-----------";
constexpr const char* kToggleTip = "Click to switch source and destination.";
constexpr const char* kSizeChanged = "Animation Size Changed. Settings updated.";
constexpr const char* kEmptySlotDesc = "This Slot Is Empty!";
constexpr const char* kLengthChanged = "The animation's length changed: Apply updates the frame lists";
constexpr const char* kNoAnimation = "No animation yet: Apply offers to make one";
constexpr const char* kNoVariant = "Choose a transition";

// A frame list's text as a number; a text that holds none stops the Apply with an error.
int frameNumber(const QString& text) {
    const std::string t = text.toStdString();
    if (t.find_first_of("0123456789") == std::string::npos) throw std::invalid_argument("Type mismatch");
    return toInt32(leadingNumber(t));
}

void fillNumbers(QComboBox* list, int from, int to) {
    for (int v = from; v <= to; ++v)
        list->addItem(QString::number(v));
}

} // namespace

TransitionForm::TransitionForm(const TransitionFamily& family)
    : FormBase(family.formName, family.caption), family_(family) {
    // The controls on the left as they always were; the preview beside them.
    auto* root = new QHBoxLayout(this);
    root->setContentsMargins(14, 14, 14, 12);
    root->setSpacing(16);
    auto* outer = new QVBoxLayout;
    outer->setSpacing(10);
    outer->addStrut(392);
    root->addLayout(outer);

    if (!family_.variants.empty()) {
        auto* row = new QHBoxLayout;
        auto* caption = makeLabel("Label2", "Transition Type");
        caption->setMargin(4);
        row->addWidget(caption);
        cboTransitions_ = makeCombo(family_.variantListName);
        row->addWidget(cboTransitions_, 1);
        outer->addLayout(row);
    }

    // The arrow points from the picture the transition starts on to the one it ends on.
    auto* direction = new QHBoxLayout;
    direction->setSpacing(6);
    auto* mainBuffer = makeLabel("Label1", "Main Buffer");
    mainBuffer->setAlignment(Qt::AlignCenter);
    mainBuffer->setMargin(4);
    mainBuffer->setMinimumWidth(96);
    direction->addWidget(mainBuffer);
    lblToggle_ = makeClickLabel("lblToggle", kToward, [this] { lblToggle_Click(); });
    lblToggle_->setToolTip(kToggleTip);
    lblToggle_->setAlignment(Qt::AlignCenter);
    lblToggle_->setMargin(4);
    lblToggle_->setMinimumWidth(100);
    QFont arrowFont = lblToggle_->font();
    arrowFont.setBold(true);
    arrowFont.setFamily("monospace");
    lblToggle_->setFont(arrowFont);
    direction->addWidget(lblToggle_);
    sourceList_ = makeCombo(family_.sourceListName, [this] { Refresh_Source_Controls(); });
    sourceList_->setMinimumWidth(170);
    direction->addWidget(sourceList_, 1);
    outer->addLayout(direction);
    if (family_.addControls) familyControls_ = family_.addControls(*this, *outer);

    const FrameRange range = makeFrameRange([this](bool start) { frameListLeft(start); });
    lblKeyIn_ = range.lblKeyIn;
    lblKeyOut_ = range.lblKeyOut;
    cboFrameStart_ = range.cboFrameStart;
    cboFrameEnd_ = range.cboFrameEnd;
    outer->addLayout(range.layout);

    // The slot's thumbnail and description take their room whether shown or not, so the form keeps
    // its size when the source changes.
    auto* storedRow = new QWidget(this);
    auto* storedLayout = new QHBoxLayout(storedRow);
    storedLayout->setContentsMargins(0, 0, 0, 0);
    storedPreview_ = stored::makeThumbnailBox(this, "StoredPreview");
    storedLayout->addWidget(storedPreview_);
    lblStoredDesc_ = makeLabel("lblStoredDesc", "");
    lblStoredDesc_->setMargin(6);
    storedLayout->addWidget(lblStoredDesc_, 1);
    storedRow->setFixedHeight(storedPreview_->height());
    outer->addWidget(storedRow);

    outer->addLayout(makeApplyRow(
        chkUndoSave_, cmdUndo_, cmdRun_, cmdCancel_, [this] { cmdUndo_Click(); }, [this] { cmd_Run_Click(); },
        [this] { cmdCancel_Click(); }));

    storedPreview_->hide();
    lblStoredDesc_->hide();
    addLivePreview(*root, [this] { return previewPlan(); });
    setFixedSize(sizeHint());
}

void TransitionForm::formLoad() {
    chkUndoSave_->setChecked(false);
    tempDir_ = van().Van_GetTempDir();
    frameCount_ = van().Van_GetTotalFrames();
    if (frameCount_ > 0) Reset_Frame_Lists();
    Fill_Source_List();
    Apply_Skin();
    panel::Draw_Pattern(this);
}

void TransitionForm::formActivate() {
    if (frameCount_ > 0) Reset_Frame_Lists();
    panel::Draw_Pattern(this);
}

void TransitionForm::formUnload() {
    panel::showMainPanel();
}

void TransitionForm::Fill_Source_List() {
    sourceList_->clear();
    for (const char* s : family_.sources)
        sourceList_->addItem(s);
    sourceList_->setCurrentIndex(0);
}

void TransitionForm::Apply_Skin() {
    const panel::SkinSettings s = panel::readSkinSettings();
    panel::colourBackground(this, panel::kPanelBackdrop);
    QList<QWidget*> fields = {sourceList_, cboFrameStart_, cboFrameEnd_,      lblKeyIn_,
                              lblKeyOut_,  lblToggle_,     control("Label1"), lblStoredDesc_};
    if (cboTransitions_) fields << cboTransitions_ << control("Label2");
    for (QWidget* w : fields)
        panel::colourControl(w, s.textboxFill, s.textboxText);
    if (cboTransitions_) {
        cboTransitions_->clear();
        for (const char* v : family_.variants)
            cboTransitions_->addItem(v);
        cboTransitions_->setCurrentIndex(0);
    }
    for (QPushButton* b : {cmdRun_, cmdUndo_, cmdCancel_})
        panel::colourButton(b, s.buttonFill);
    panel::colourControl(chkUndoSave_, s.buttonFill, 0x000000);
    chkUndoSave_->setStyleSheet(chkUndoSave_->styleSheet() + " padding: 3px 6px; border-radius: 3px;");
    lblStoredDesc_->setText("");
    lblStoredDesc_->hide();
    stored::showThumbnail(static_cast<panel::PictureBox*>(storedPreview_), QImage());
    storedPreview_->hide();
    if (familyControls_) familyControls_->load(s);
}

void TransitionForm::clearFrameLists() {
    cboFrameStart_->clear();
    cboFrameEnd_->clear();
}

void TransitionForm::Reset_Frame_Lists() {
    stored::showThumbnail(static_cast<panel::PictureBox*>(storedPreview_), QImage());
    lblStoredDesc_->setText("");
    storedPreview_->hide();
    lblStoredDesc_->hide();
    clearFrameLists();
    fillNumbers(cboFrameStart_, 0, frameCount_ - 1);
    fillNumbers(cboFrameEnd_, 0, frameCount_ - 1);
    if (frameCount_ >= 1) {
        cboFrameStart_->setCurrentIndex(0);
        cboFrameEnd_->setCurrentIndex(frameCount_ - 1);
    }
}

void TransitionForm::Ensure_Animation() {
    panel::Ensure_Animation(
        *this, [this] { clearFrameLists(); },
        [this] {
            frameCount_ = van().Van_GetTotalFrames();
            Reset_Frame_Lists();
            cboFrameStart_->setEnabled(true);
            cboFrameEnd_->setEnabled(true);
        });
}

bool TransitionForm::towardSource() const {
    return lblToggle_->text() == kToward;
}

std::string TransitionForm::sourceText() const {
    return sourceList_->currentText().toStdString();
}

void TransitionForm::Refresh_Source_Controls() {
    frameCount_ = van().Van_GetTotalFrames();
    sourceList_->setToolTip("");
    const int slot = slotOfSource(sourceText());
    if (slot >= 0) {
        // A splice needs only the end of the range that lies inside the animation.
        const bool toward = towardSource();
        cboFrameStart_->setVisible(toward);
        lblKeyIn_->setVisible(toward);
        cboFrameEnd_->setVisible(!toward);
        lblKeyOut_->setVisible(!toward);
        Show_Stored_Slot(slot);
    } else {
        Reset_Frame_Lists();
        for (QWidget* w : {static_cast<QWidget*>(cboFrameStart_), static_cast<QWidget*>(lblKeyIn_),
                           static_cast<QWidget*>(cboFrameEnd_), static_cast<QWidget*>(lblKeyOut_)})
            w->show();
    }
}

void TransitionForm::Show_Stored_Slot(int slot) {
    const std::string path = stored::slotDataPath(tempDir_, slot);
    van().Van_BufferHeight();
    van().Van_BufferWidth();
    auto* preview = static_cast<panel::PictureBox*>(storedPreview_);
    const auto header = stored::peekFrameFileHeader(path);
    if (!header) {
        clearFrameLists();
        stored::showThumbnail(preview, QImage());
        storedPreview_->show();
        lblStoredDesc_->setText(kEmptySlotDesc);
        lblStoredDesc_->show();
        return;
    }
    stored::showThumbnail(preview, stored::loadThumbnail(stored::slotThumbPath(tempDir_, slot)));
    storedPreview_->show();
    lblStoredDesc_->setText(
        QString("%1 Frames, %2X%3").arg(header->frames).arg(header->width).arg(header->height));
    lblStoredDesc_->show();
    clearFrameLists();

    const int n = frameCount_;
    const int s = header->frames;
    if (n <= 0) return;
    if (!towardSource()) {
        // Every End from which the overlap has at least 3 frames and no more than the slot holds.
        const int last = std::min(n, s) - 1;
        fillNumbers(cboFrameStart_, 2, last);
        fillNumbers(cboFrameEnd_, 2, last);
        cboFrameEnd_->setCurrentIndex(0);
    } else {
        // Every Start from which the animation's tail is at least 3 frames and no longer than the slot.
        const int first = n >= s ? n - s : 0;
        fillNumbers(cboFrameStart_, first, n - 3);
        fillNumbers(cboFrameEnd_, first, n - 3);
        if (cboFrameStart_->count() > 0) cboFrameStart_->setCurrentIndex(0);
    }
}

void TransitionForm::frameListLeft(bool startLeft) {
    frameCount_ = van().Van_GetTotalFrames();
    if (cboFrameStart_->count() > frameCount_ || cboFrameEnd_->count() > frameCount_) Reset_Frame_Lists();
    pullFrameListsAlong(cboFrameStart_, cboFrameEnd_, startLeft);
}

void TransitionForm::lblToggle_Click() {
    lblToggle_->setText(towardSource() ? kBack : kToward);
    Refresh_Source_Controls();
}

void TransitionForm::cmd_Run_Click() {
    const int saved = van().Van_GetCurrentFrame();
    if (van().Van_GetTotalFrames() != frameCount_) {
        van().Van_MessageBox(kSizeChanged);
        frameCount_ = van().Van_GetTotalFrames();
        Refresh_Source_Controls();
        return;
    }
    van().Van_StopAnimation();
    if (frameCount_ == 0) {
        Ensure_Animation();
        Refresh_Source_Controls();
        return;
    }
    if (const char* refusal = rangeRefusal()) {
        van().Van_MessageBox(refusal);
        return;
    }
    stored::saveUndoIfChecked(chkUndoSave_);
    dispatch();
    van().Van_GotoFrame(saved);
    van().Van_Refresh();
}

const char* TransitionForm::rangeRefusal() const {
    if (!isStoredSource(sourceText()) &&
        cboFrameEnd_->currentIndex() - cboFrameStart_->currentIndex() < family_.fewestFrames - 1)
        return family_.tooFewFramesText;
    if (cboFrameStart_->currentText().isEmpty() && cboFrameEnd_->currentText().isEmpty())
        return family_.slotEmptyText;
    return nullptr;
}

bool TransitionForm::validVariant() const {
    const int variant = cboTransitions_ ? cboTransitions_->currentIndex() : 0;
    return !cboTransitions_ || (variant >= 0 && variant < static_cast<int>(family_.variants.size()));
}

TransitionForm::RunChoice TransitionForm::choice() const {
    RunChoice c;
    c.variant = cboTransitions_ ? cboTransitions_->currentIndex() : 0;
    c.source = sourceText();
    c.slot = slotOfSource(c.source);
    c.toward = towardSource();
    // A stored shape takes only its own end of the range, from the text of that list; in the plain
    // case list index and frame number are one.
    if (c.slot < 0 || c.toward) c.start = frameNumber(cboFrameStart_->currentText());
    if (c.slot < 0 || !c.toward) c.end = frameNumber(cboFrameEnd_->currentText());
    return c;
}

void TransitionForm::dispatch() {
    if (!validVariant()) return;
    // The whole form waits while a run drives the host.
    const panel::DisabledWhileRunning busy({this, cmdRun_});
    run(choice());
}

void TransitionForm::run(const RunChoice& c, double scale) {
    if (familyControls_ && familyControls_->run({c.toward, c.slot, c.start, c.end, c.source, scale})) return;
    if (c.slot < 0)
        (c.toward ? family_.to : family_.from)(c.variant, c.start, c.end, c.source);
    else if (c.toward)
        family_.toStored(c.variant, c.start, c.slot);
    else
        family_.fromStored(c.variant, c.end, c.slot);
}

// What Apply would do, read from the controls and the host's state without a call to the host: the
// preview is no call of the session's. The refusals are Apply's own, in the order Apply meets them.
panel::PreviewPlan TransitionForm::previewPlan() {
    panel::PreviewPlan plan;
    const int total = host::runningHost().totalFrames();
    if (total != frameCount_) {
        plan.refusal = kLengthChanged;
    } else if (total == 0) {
        plan.refusal = kNoAnimation;
    } else if (const char* refusal = rangeRefusal()) {
        plan.refusal = refusal;
    } else if (!validVariant()) {
        plan.refusal = kNoVariant;
    } else {
        const RunChoice c = choice();
        plan.slot = c.slot;
        // The splices read the animation from Start to its end, or from its start to End.
        plan.first = c.slot < 0 || c.toward ? c.start : 0;
        plan.last = c.slot < 0 || !c.toward ? c.end : total - 1;
        plan.run = [this, c](double scale) { run(c, scale); };
    }
    return plan;
}

void TransitionForm::cmdUndo_Click() {
    stored::cmdUndoClick(cmdUndo_);
}

void TransitionForm::cmdCancel_Click() {
    closeDialog();
}

} // namespace kirrel::transitions
