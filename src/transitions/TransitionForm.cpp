#include "transitions/TransitionForm.h"

#include "host/HostState.h"
#include "panel/DisabledWhileRunning.h"
#include "panel/EnsureAnimation.h"
#include "panel/Skin.h"
#include "stored/SlotFiles.h"
#include "stored/Thumbnail.h"
#include "stored/ThumbnailBox.h"
#include "transitions/Sources.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace kirrel::transitions {

namespace {

constexpr const char* kToward = "----------->";
constexpr const char* kBack = "<-----------";
constexpr const char* kToggleTip = "Click to switch source and destination.";
constexpr const char* kEmptySlotDesc = "This Slot Is Empty!";
constexpr const char* kLengthChanged = "The animation's length changed: Apply updates the frame lists";
constexpr const char* kNoAnimation = "No animation yet: Apply offers to make one";
constexpr const char* kNoVariant = "Choose a transition";

void fillNumbers(QComboBox* list, int from, int to) {
    for (int v = from; v <= to; ++v)
        list->addItem(QString::number(v));
}

} // namespace

TransitionForm::TransitionForm(const TransitionFamily& family)
    : EffectDialog(family.formName, family.caption), family_(family) {
    // The controls on the left as they always were; the preview beside them.
    auto* root = makeWindowLayout<QHBoxLayout>(16);
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

    outer->addLayout(makeFrameLists());

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

    outer->addLayout(makeApplyRow());

    storedPreview_->hide();
    lblStoredDesc_->hide();
    addLivePreview(*root, [this] { return previewPlan(); });
    fixSize();
}

void TransitionForm::formLoad() {
    readTempDirAndFrames();
    Fill_Source_List();
    Apply_Skin();
}

void TransitionForm::formActivate() {
    EffectDialog::formActivate();
    panel::Draw_Pattern(this);
}

void TransitionForm::Fill_Source_List() {
    sourceList_->clear();
    for (const char* s : family_.sources)
        sourceList_->addItem(s);
    sourceList_->setCurrentIndex(0);
}

void TransitionForm::Apply_Skin() {
    SkinParts skin{frameListParts(), {chkUndoSave()}, {}};
    skin.texts.insert(skin.texts.end(), {sourceList_, lblToggle_, control("Label1"), lblStoredDesc_});
    if (cboTransitions_) skin.texts.insert(skin.texts.end(), {cboTransitions_, control("Label2")});
    applySkin(skin);
    if (cboTransitions_) {
        cboTransitions_->clear();
        for (const char* v : family_.variants)
            cboTransitions_->addItem(v);
        cboTransitions_->setCurrentIndex(0);
    }
    lblStoredDesc_->setText("");
    lblStoredDesc_->hide();
    stored::showThumbnail(static_cast<panel::PictureBox*>(storedPreview_), QImage());
    storedPreview_->hide();
    if (familyControls_) familyControls_->load(panel::readSkinSettings());
}

void TransitionForm::fillFrameLists() {
    stored::showThumbnail(static_cast<panel::PictureBox*>(storedPreview_), QImage());
    lblStoredDesc_->setText("");
    storedPreview_->hide();
    lblStoredDesc_->hide();
    listFrames();
}

bool TransitionForm::towardSource() const {
    return lblToggle_->text() == kToward;
}

std::string TransitionForm::sourceText() const {
    return sourceList_->currentText().toStdString();
}

void TransitionForm::Refresh_Source_Controls() {
    TotalFrames = van().Van_GetTotalFrames();
    sourceList_->setToolTip("");
    const int slot = slotOfSource(sourceText());
    if (slot >= 0) {
        // A splice needs only the end of the range that lies inside the animation.
        const bool toward = towardSource();
        cboFrameStart()->setVisible(toward);
        lblKeyIn()->setVisible(toward);
        cboFrameEnd()->setVisible(!toward);
        lblKeyOut()->setVisible(!toward);
        Show_Stored_Slot(slot);
    } else {
        fillFrameLists();
        for (QWidget* w : frameListParts())
            w->show();
    }
}

void TransitionForm::Show_Stored_Slot(int slot) {
    const std::string path = stored::slotDataPath(tempDir(), slot);
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
    stored::showThumbnail(preview, stored::loadThumbnail(stored::slotThumbPath(tempDir(), slot)));
    storedPreview_->show();
    lblStoredDesc_->setText(
        QString("%1 Frames, %2X%3").arg(header->frames).arg(header->width).arg(header->height));
    lblStoredDesc_->show();
    clearFrameLists();

    const int n = TotalFrames;
    const int s = header->frames;
    if (n <= 0) return;
    if (!towardSource()) {
        // Every End from which the overlap has at least 3 frames and no more than the slot holds.
        const int last = std::min(n, s) - 1;
        fillNumbers(cboFrameStart(), 2, last);
        fillNumbers(cboFrameEnd(), 2, last);
        cboFrameEnd()->setCurrentIndex(0);
    } else {
        // Every Start from which the animation's tail is at least 3 frames and no longer than the slot.
        const int first = n >= s ? n - s : 0;
        fillNumbers(cboFrameStart(), first, n - 3);
        fillNumbers(cboFrameEnd(), first, n - 3);
        if (cboFrameStart()->count() > 0) cboFrameStart()->setCurrentIndex(0);
    }
}

void TransitionForm::frameListLeft(bool startLeft) {
    TotalFrames = van().Van_GetTotalFrames();
    if (cboFrameStart()->count() > TotalFrames || cboFrameEnd()->count() > TotalFrames) fillFrameLists();
    pullFrameListsAlong(startLeft);
}

void TransitionForm::lblToggle_Click() {
    lblToggle_->setText(towardSource() ? kBack : kToward);
    Refresh_Source_Controls();
}

void TransitionForm::run() {
    const int saved = van().Van_GetCurrentFrame();
    if (van().Van_GetTotalFrames() != TotalFrames) {
        van().Van_MessageBox(panel::kSizeChanged);
        TotalFrames = van().Van_GetTotalFrames();
        Refresh_Source_Controls();
        return;
    }
    van().Van_StopAnimation();
    if (TotalFrames == 0) {
        offerAnimation(panel::kNoAnimationQuestion);
        Refresh_Source_Controls();
        return;
    }
    if (const char* refusal = rangeRefusal()) {
        van().Van_MessageBox(refusal);
        return;
    }
    saveUndoIfChecked();
    dispatch();
    endRun(saved);
}

const char* TransitionForm::rangeRefusal() const {
    if (!isStoredSource(sourceText()) &&
        cboFrameEnd()->currentIndex() - cboFrameStart()->currentIndex() < family_.fewestFrames - 1)
        return family_.tooFewFramesText;
    if (cboFrameStart()->currentText().isEmpty() && cboFrameEnd()->currentText().isEmpty())
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
    if (c.slot < 0 || c.toward) c.start = startText();
    if (c.slot < 0 || !c.toward) c.end = endText();
    return c;
}

void TransitionForm::dispatch() {
    if (!validVariant()) return;
    // The whole form waits while a run drives the host.
    const panel::DisabledWhileRunning busy({this, cmdRun()});
    runChoice(choice());
}

void TransitionForm::runChoice(const RunChoice& c, double scale) {
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
    if (total != TotalFrames) {
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
        plan.run = [this, c](double scale) { runChoice(c, scale); };
    }
    return plan;
}

} // namespace kirrel::transitions
