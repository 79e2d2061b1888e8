#pragma once
// "Export Animation to MNG (Animated PNG)" and "Export to Transparent PNG".

#include "exchange/Layer2PNG.h"
#include "panel/FormBase.h"

class QLineEdit;
class QPushButton;
class QRadioButton;

namespace kirrel::exchange {

// Gives an export form the look of the panel's other dialogs: captions and lists in the text boxes'
// colours, check and option boxes and buttons on the button fill, the wallpaper tiled behind them.
void skinExportForm(panel::FormBase* form);

// Saves and Done are disabled while an export runs and come back afterwards, also after an error.
class ButtonsBack {
  public:
    ButtonsBack(QPushButton* save, QPushButton* done);
    ~ButtonsBack();

  private:
    QPushButton *save_, *done_;
};

class frmSave2MNG : public panel::FormBase {
    Q_OBJECT
  public:
    frmSave2MNG();

  protected:
    void formLoad() override;

  private:
    void cmdSave_Click();
    QLineEdit* txtDelay_;
    QLineEdit* txtLoops_;
    QPushButton* cmdSave_;
    QPushButton* cmdCancel_;
};

class frmSave2PNG : public panel::FormBase {
    Q_OBJECT
  public:
    frmSave2PNG();

  protected:
    void formLoad() override;

  private:
    void cmdSave_Click();
    MaskSource chosenSource() const;
    QRadioButton* optTransparency_[3];
    QPushButton* cmdSave_;
    QPushButton* cmdCancel_;
};

} // namespace kirrel::exchange
