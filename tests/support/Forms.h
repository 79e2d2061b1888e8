#pragma once
// Dialogs driven in process: a form opened by name as the catalogue opens it, its controls by name,
// and the buttons a user presses.

#include "panel/FormBase.h"
#include "panel/Registry.h"
#include "stored/SlotFiles.h"
#include "support/Support.h"

#include <QAbstractButton>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

namespace kirrel::test {

class FormTest : public HostTest {
  protected:
    static panel::FormBase* open(const QString& name) {
        panel::registerEverything();
        panel::FormBase* f = panel::loadFormByName(name);
        f->showForm();
        return f;
    }
    template <class T> static T* ctl(panel::FormBase* f, const QString& name) {
        return static_cast<T*>(f->control(name));
    }
    static void click(panel::FormBase* f, const QString& button) { ctl<QAbstractButton>(f, button)->click(); }
    static void apply(panel::FormBase* f) { click(f, "cmd_Run"); }
    static void choose(panel::FormBase* f, const QString& option) {
        ctl<QRadioButton>(f, option)->setChecked(true);
    }
    static QString text(panel::FormBase* f, const QString& label) { return ctl<QLabel>(f, label)->text(); }
    bool undoSaved() const {
        return QFile::exists(QString::fromStdString(tempDir() + stored::kAnimUndoName));
    }
};

} // namespace kirrel::test
