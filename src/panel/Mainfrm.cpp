#include "panel/Mainfrm.h"

#include "panel/Catalogue.h"
#include "panel/EnsureAnimation.h"
#include "panel/EventGuard.h"
#include "panel/Skin.h"

#include <QAction>
#include <QFile>
#include <QGridLayout>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>
#include <QVBoxLayout>

namespace kirrel::panel {

namespace {
// Twips are 1/1440 inch; the panel is laid out at 15 twips to a pixel.
constexpr int twips(int t) {
    return t / 15;
}
constexpr int kExpandedTwips = 3285;
constexpr int kShrunkTwips = 600;
constexpr int kWidthTwips = 6300;
constexpr const char* kVersion = "Kirrel 1.29";
} // namespace

Mainfrm::Mainfrm() : FormBase("Mainfrm", kVersion) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 0, 6, 6);
    menuBar_ = new QMenuBar(this);
    menuBar_->setObjectName("menuBar");
    layout->setMenuBar(menuBar_);
    buildMenus();

    // The lists live in a body that folds away with "[Grow]", leaving the title and the menu.
    body_ = new QWidget(this);
    auto* grid = new QGridLayout(body_);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(makeLabel("lblCategory", "Categories"), 0, 0);
    grid->addWidget(makeLabel("lblPlugins", "Plug-ins"), 0, 1);
    list1_ = makeList("List1", [this] { List1_Click(); });
    list2_ = makeList("List2", {}, [this] { List2_DblClick(); });
    grid->addWidget(list1_, 1, 0);
    grid->addWidget(list2_, 1, 1);
    grid->setColumnStretch(0, 2);
    grid->setColumnStretch(1, 3);
    layout->addWidget(body_);

    // Hidden pictures: Image1 holds the wallpaper for every form; the other two are work surfaces.
    for (const char* name : {"Image1", "TempPic", "TempImg"})
        makePicture(name)->hide();

    timer1_ = new QTimer(this);
    timer1_->setObjectName("Timer1");
    connect(timer1_, &QTimer::timeout, this, [this] { timer1_->stop(); });

    resize(twips(kWidthTwips), twips(kExpandedTwips));
    setFixedHeight(twips(kExpandedTwips));
}

void Mainfrm::buildMenus() {
    auto entry = [this](QMenu* menu, const char* name, const char* caption, void (Mainfrm::*handler)()) {
        auto* a = new QAction(caption, this);
        a->setObjectName(name);
        connect(a, &QAction::triggered, this, asUserStep(a, UserEvent::Menu, [this, handler, caption](bool) {
                    nameAction(caption);
                    (this->*handler)();
                }));
        if (menu)
            menu->addAction(a);
        else
            menuBar_->addAction(a);
        return a;
    };
    auto open = [this](const char* form, const char* plugin, bool needsAnim) {
        return [this, form, plugin, needsAnim] {
            if (needsAnim && !needAnimation()) return;
            openDialog(form, plugin);
        };
    };
    auto entryFn = [this](QMenu* menu, const char* name, const char* caption, std::function<void()> fn) {
        auto* a = new QAction(caption, this);
        a->setObjectName(name);
        connect(a, &QAction::triggered, this,
                asUserStep(a, UserEvent::Menu, [fn = std::move(fn), caption](bool) {
                    nameAction(caption);
                    fn();
                }));
        menu->addAction(a);
    };

    QMenu* file = menuBar_->addMenu("File");
    file->setObjectName("menuFile");
    // The menu's import takes the direct way where it is built; the plug-in list keeps the PNG way.
    entryFn(file, "menuImportAnimGif", "Open AnimGif", [this] {
        if (procedureKnown("ImportGifDirect"))
            runProcedure("ImportGifDirect");
        else
            launchRow("Import AnimGif");
    });
    entryFn(file, "menuExportAnimGif", "Save As AnimGif", open("frmSave2AnimGif", "Save As AnimGif", true));
    entry(file, "menuQuit", "Quit", &Mainfrm::menuQuit_Click);

    QMenu* tools = menuBar_->addMenu("Tools");
    tools->setObjectName("menuTools");
    entryFn(tools, "menuComposite", "Compositing Panel",
            open("frmCompositeAnims", "Compositing Panel", true));
    entryFn(tools, "menuCombine", "Combine with Stored",
            open("frmCombineAnims", "Combine with Stored", true));
    entryFn(tools, "menuStored", "Stored Animations Panel",
            open("frmMultiAnims", "Stored Animations Panel", false));

    QMenu* help = menuBar_->addMenu("Help");
    help->setObjectName("menuHelp");
    entry(help, "menuAbout", "About", &Mainfrm::menuAbout_Click);

    // Blank entries push "[Shrink]" to the right; only the first answers a click.
    entry(nullptr, "menublank5", "      ", &Mainfrm::menublank5_Click);
    for (int i = 6; i <= 10; ++i) {
        auto* a = menuBar_->addAction("      ");
        a->setObjectName(QString("menublank%1").arg(i));
    }
    menuMinimize_ = entry(nullptr, "menuMinimize", "[Shrink]", &Mainfrm::menuMinimize_Click);
}

void Mainfrm::formLoad() {
    frameCount_ = van().Van_GetTotalFrames();
    for (const char* c : catalogueCategories())
        list1_->addItem(c);
    list1_->setCurrentRow(0);
    Apply_Skin();
    expanded_ = true;
}

void Mainfrm::Apply_Skin() {
    const SkinSettings s = readSkinSettings();
    for (QWidget* w : {static_cast<QWidget*>(list1_), static_cast<QWidget*>(list2_), control("lblCategory"),
                       control("lblPlugins")})
        colourControl(w, s.textboxFill, s.textboxText);
    colourBackground(this, kPanelBackdrop);
    auto* image = qobject_cast<QLabel*>(control("Image1"));
    image->hide();
    image->setPixmap(loadWallpaper(van().Van_WallpaperFilename()));
    Draw_Pattern(this);
}

void Mainfrm::List1_Click() {
    list2_->clear();
    QListWidgetItem* current = list1_->currentItem();
    if (!current) return;
    const QString category = current->text();
    for (const auto& row : catalogueRows())
        if (category == row.category) list2_->addItem(row.plugin);
}

void Mainfrm::List2_DblClick() {
    van().Van_StopAnimation();
    QListWidgetItem* current = list2_->currentItem();
    if (!current) return;
    launchRow(current->text());
}

void Mainfrm::launchRow(const QString& plugin) {
    for (const auto& row : catalogueRows()) {
        if (plugin != row.plugin) continue;
        nameAction(plugin.toStdString());
        if (row.needsAnimation && !needAnimation()) return;
        if (row.question && van().Van_QuestionBox(row.question) == 2) return;
        if (row.opensForm) {
            openDialog(row.target, plugin);
        } else if (procedureKnown(row.target)) {
            runProcedure(row.target);
        } else {
            van().Van_MessageBox("\"" + plugin.toStdString() + "\" is not part of this build of Kirrel yet.");
        }
        return;
    }
}

bool Mainfrm::needAnimation() {
    frameCount_ = van().Van_GetTotalFrames();
    if (frameCount_ != 0) return true;
    van().Van_MessageBox("Must have animation in memory!");
    return false;
}

void Mainfrm::openDialog(const QString& formName, const QString& plugin) {
    FormBase* dialog = loadFormByName(formName);
    if (!dialog) {
        van().Van_MessageBox("\"" + plugin.toStdString() + "\" is not part of this build of Kirrel yet.");
        return;
    }
    dialog->showForm();
    hide();
}

void Mainfrm::Ensure_Animation() {
    panel::Ensure_Animation(*this, {}, [this] { frameCount_ = van().Van_GetTotalFrames(); });
}

void Mainfrm::menuMinimize_Click() {
    if (!expanded_) {
        menuMinimize_->setText("[Shrink]");
        body_->show();
        setFixedHeight(twips(kExpandedTwips));
        expanded_ = true;
    } else {
        menuMinimize_->setText("[Grow]");
        body_->hide();
        setFixedHeight(twips(kShrunkTwips));
        expanded_ = false;
    }
}

void Mainfrm::menuAbout_Click() {
    hide();
    van().Van_MessageBox(std::string(kVersion) +
                         "\n\nAnimation effects for your host: transitions, splicing with stored animations, "
                         "filters, generators, alpha masks, custom effects and GIF/PNG/MNG exchange.");
    showForm();
}

void Mainfrm::menublank5_Click() {
    hide();
    van().Van_MessageBox("Easter Egg!");
    showForm();
}

void Mainfrm::undoCleanUp() {
    const std::string temp = van().Van_GetTempDir();
    const QString undo = QString::fromStdString(temp + "/AnimUndo.dat");
    if (!QFile::exists(undo)) return;
    if (van().Van_QuestionBox("\nClear Animation Undo file?") == 2) return;
    QFile::remove(undo);
    for (const char* name : {"/AlphaUndo.dat", "/SwapUndo.dat"}) {
        const QString f = QString::fromStdString(temp + name);
        if (QFile::exists(f)) QFile::remove(f);
    }
}

void Mainfrm::menuQuit_Click() {
    // Quitting here ends the host too: its unsaved work is asked about as its own Quit would.
    if (van().Van_ConfirmDiscard() == 2) return;
    undoCleanUp();
    endProgram();
}

bool Mainfrm::queryUnload() {
    undoCleanUp();
    return true;
}

void Mainfrm::formUnload() {
    van().Van_RestorePointer();
    van().Van_Unlock();
    endProgram();
}

void Mainfrm::closeByUser() {
    close();
}

} // namespace kirrel::panel
