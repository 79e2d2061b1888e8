#pragma once
// What every form of the panel shares: its own automation object, the hand-over to the host, controls
// found by name (control arrays as "name(i)"), the Validate event when the focus leaves a list or a
// text box, the load/activate/unload life, the platform's input box, and a live preview of the form's
// run that follows its controls.

#include "panel/Controls.h"
#include "panel/EventGuard.h"
#include "panel/PreviewPlan.h"
#include "panel/UserSteps.h"
#include "panel/Vantry.h"

#include <QPixmap>
#include <QWidget>

#include <functional>
#include <map>
#include <optional>

class QAbstractSlider;
class QBoxLayout;
class QCheckBox;
class QComboBox;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;
class QSlider;

namespace kirrel::panel {

class LivePreview;

class FormBase : public QWidget {
    Q_OBJECT
  public:
    FormBase(const QString& name, const QString& caption);
    ~FormBase() override;

    // Form_Load: the hand-over to the host (Van_SendFormObject), then the form's own load.
    void loadForm();
    // Shows the form and raises its Activate event.
    void showForm();
    // Asks the form to close as a user would (its "Done", or the window's close box).
    virtual void closeByUser();
    // Drops the form after its Unload event.
    void unloadForm();

    QWidget* control(const QString& name) const;
    QObject* controlOrAction(const QString& name) const;
    // The focus leaves the named control: its Validate event runs.
    void leave(const QString& name);
    bool hasValidate(const QString& name) const;
    // The platform's input box; the empty string when cancelled.
    std::string askInput(const std::string& prompt, const std::string& title, const std::string& defaultText);

    Vantry::Vantry_Class& van() { return van_; }
    // The caption as a user names the effect: "Kirrel-Alpha Wipes (Requires Alpha Channel)" is
    // "Alpha Wipes".
    std::string actionName() const;
    // The tile painted behind the controls (see Draw_Pattern); a null pixmap paints nothing.
    void setWallpaper(const QPixmap& tile);

    static FormBase* front();
    static FormBase* find(const QString& name);
    static QList<FormBase*> openForms();

    // Raises controlsChanged; for controls a form makes without the factories below.
    void noteControlChange() { emit controlsChanged(); }

  signals:
    // A control the factories made changed its value or was used (a button's action may change what
    // the next run works on).
    void controlsChanged();

  protected:
    virtual void formLoad() {}
    virtual void formActivate() {}
    // Form_QueryUnload: false cancels the closing.
    virtual bool queryUnload() { return true; }
    virtual void formUnload() {}

    // A handler behind the event boundary, as one user action of this form: a change it makes to the
    // host is an undo step named after the form's caption, unless the handler names it otherwise.
    template <class F> auto asAction(F f) {
        return [this, f = std::move(f)](auto&&... args) { runGuarded([&] { f(args...); }, actionName()); };
    }
    // The same for the user's use of a control, told to a session recording as one step (see
    // UserSteps.h); a control without a handler is told all the same.
    template <class F> auto asUserStep(QObject* control, UserEvent event, F f) {
        return [this, control, event, f = std::move(f)](auto&&... args) {
            runUserStep(
                *this, *control, event, [&] { f(args...); }, actionName());
        };
    }

    // Control factories; every handler runs behind the event boundary.
    QPushButton* makeButton(const QString& name, const QString& caption, std::function<void()> onClick);
    QLabel* makeLabel(const QString& name, const QString& caption);
    ClickLabel* makeClickLabel(const QString& name, const QString& caption, std::function<void()> onClick);
    PictureBox* makePicture(const QString& name);
    // onClick runs when the selection changes, by the user or by code (as a drop-down list's Click does).
    QComboBox* makeCombo(const QString& name, std::function<void()> onClick = {});
    QListWidget* makeList(const QString& name, std::function<void()> onClick = {},
                          std::function<void()> onDblClick = {});
    QCheckBox* makeCheck(const QString& name, const QString& caption, std::function<void()> onClick = {});
    QRadioButton* makeOption(const QString& name, const QString& caption, std::function<void()> onClick = {});
    // onChange runs on every change of value; onScroll while the thumb is dragged.
    QSlider* makeSlider(const QString& name, int minimum, int maximum, std::function<void()> onChange = {},
                        std::function<void()> onScroll = {});
    QLineEdit* makeText(const QString& name, std::function<void()> onChange = {});
    void onValidate(QWidget* control, std::function<void()> handler);

    // A dialog's "Done": the dialog goes, the main panel comes back, and the form is dropped.
    void closeDialog();
    // A live preview of what the form's run would do, added to the layout at its top; it runs again
    // whenever controlsChanged is raised.
    LivePreview* addLivePreview(QBoxLayout& layout, PreviewPlanner planner);

    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    Vantry::Vantry_Class van_;
    std::map<QObject*, std::function<void()>> validators_;
    bool unloading_ = false;
    QPixmap wallpaper_;
};

// Opens a form by name (made on first use); nullptr when the name is unknown.
using FormMaker = std::function<FormBase*()>;
void registerForm(const QString& name, FormMaker maker);
bool formKnown(const QString& name);
FormBase* loadFormByName(const QString& name);

} // namespace kirrel::panel
