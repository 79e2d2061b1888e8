#pragma once
// The dock that holds the Kirrel panel beside the canvas. The panel's forms become its children: a
// form opened from the catalogue takes the panel's place within the dock, and "Done" brings the
// panel back, just as the panel hides and shows its forms. The dock can be moved to either side or
// floated; its title follows the form in front, and Escape in a dialog is its "Done".

#include <QDockWidget>
#include <QPointer>

#include <vector>

class QScrollArea;
class QVBoxLayout;

namespace kirrel::host {

class PanelDock : public QDockWidget {
    Q_OBJECT
  public:
    explicit PanelDock(QWidget* parent);

    // Takes a form of the panel in (once); its own show and hide decide whether it is seen.
    void adopt(QWidget* form);
    // The form the dock shows now, or nullptr.
    QWidget* shownForm() const;
    // Brings the dock back when closed or hidden behind others, and the form in it to the keyboard.
    void bringForward();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void follow();

    QScrollArea* scroll_ = nullptr;
    QWidget* forms_ = nullptr;
    QVBoxLayout* column_ = nullptr;
    std::vector<QPointer<QWidget>> adopted_;
};

} // namespace kirrel::host
