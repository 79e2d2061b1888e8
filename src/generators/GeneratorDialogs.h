#pragma once
// The generator dialogs and Focus: each adds its own controls to the shared dialog and names the
// procedure its controls choose.

#include "generators/GeneratorForm.h"

class QCheckBox;
class QLabel;
class QRadioButton;
class QSlider;

namespace kirrel::generators {

// A strength slider with its label, "10% Strength"; the noise and the flicker have one each.
class StrengthForm : public GeneratorForm {
    Q_OBJECT
  public:
    StrengthForm(const GeneratorTraits& traits, int maximum);

  protected:
    void startValues() override;
    int strength() const;
    bool useAlpha() const;

  private:
    void showStrength();
    QSlider* Slider1_ = nullptr;
    QLabel* Label2_ = nullptr;
    QCheckBox* chkUseAlpha_ = nullptr;
};

class frmTVSnow : public StrengthForm {
    Q_OBJECT
  public:
    frmTVSnow();

  protected:
    void runProcedure() override;
};

class frmFlicker : public StrengthForm {
    Q_OBJECT
  public:
    frmFlicker();

  protected:
    void runProcedure() override;
};

class frmGenThreshold : public GeneratorForm {
    Q_OBJECT
  public:
    frmGenThreshold();

  protected:
    void runProcedure() override;
};

class frmVertHold : public GeneratorForm {
    Q_OBJECT
  public:
    frmVertHold();

  protected:
    void runProcedure() override;

  private:
    QCheckBox* chkDivider_ = nullptr;
};

class frmFocus : public GeneratorForm {
    Q_OBJECT
  public:
    frmFocus();

  protected:
    void runProcedure() override;

  private:
    QRadioButton* optOut_ = nullptr;
    QRadioButton* optIn_ = nullptr;
    QCheckBox* chkAlpha_ = nullptr;
};

} // namespace kirrel::generators
