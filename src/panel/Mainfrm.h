#pragma once
// The panel's first form: the effect catalogue, its menus, and the program's start and end.

#include "panel/FormBase.h"

class QListWidget;
class QMenuBar;
class QTimer;

namespace kirrel::panel {

class Mainfrm : public FormBase {
    Q_OBJECT
  public:
    Mainfrm();

    // The double click on the selected plug-in.
    void List2_DblClick();
    void Ensure_Animation();
    bool expanded() const { return expanded_; }
    short frameCount() const { return frameCount_; }

    void closeByUser() override;

  protected:
    void formLoad() override;
    bool queryUnload() override;
    void formUnload() override;

  private:
    void buildMenus();
    void List1_Click();
    void launchRow(const QString& plugin);
    void openDialog(const QString& formName, const QString& plugin);
    void menuMinimize_Click();
    void menuAbout_Click();
    void menuQuit_Click();
    void menublank5_Click();
    void undoCleanUp();
    bool needAnimation();
    void Apply_Skin();

    QMenuBar* menuBar_ = nullptr;
    QWidget* body_ = nullptr;
    QListWidget* list1_ = nullptr;
    QListWidget* list2_ = nullptr;
    QAction* menuMinimize_ = nullptr;
    QTimer* timer1_ = nullptr;
    short frameCount_ = 0;
    bool expanded_ = true;
};

} // namespace kirrel::panel
