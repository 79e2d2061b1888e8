#include "panel/FormBase.h"

#include "host/HostState.h"
#include "panel/EventGuard.h"
#include "panel/LivePreview.h"
#include "panel/Panel.h"

#include <QAction>
#include <QBoxLayout>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSlider>

#include <algorithm>
#include <vector>

namespace kirrel::panel {

namespace {
std::vector<FormBase*>& openList() {
    static std::vector<FormBase*> forms;
    return forms;
}
std::map<QString, FormMaker>& makers() {
    static std::map<QString, FormMaker> m;
    return m;
}
} // namespace

FormBase::FormBase(const QString& name, const QString& caption) {
    setObjectName(name);
    setWindowTitle(caption);
    setAttribute(Qt::WA_DeleteOnClose, false);
    openList().push_back(this);
}

FormBase::~FormBase() {
    auto& l = openList();
    l.erase(std::remove(l.begin(), l.end(), this), l.end());
    host::runningHost().forgetForm(this);
}

void FormBase::loadForm() {
    runGuarded([this] {
        QWidget* self = this;
        van_.Van_SendFormObject(self, 0);
        formLoad();
    });
}

void FormBase::showForm() {
    show();
    raise();
    // The most recently shown form is the one in front.
    auto& l = openList();
    l.erase(std::remove(l.begin(), l.end(), this), l.end());
    l.push_back(this);
    runGuarded([this] { formActivate(); });
}

void FormBase::closeByUser() {
    close();
}

void FormBase::closeEvent(QCloseEvent* event) {
    if (unloading_) {
        event->accept();
        return;
    }
    bool allow = true;
    runGuarded([&] { allow = queryUnload(); });
    if (!allow) {
        event->ignore();
        return;
    }
    event->accept();
    unloadForm();
}

void FormBase::unloadForm() {
    if (unloading_) return;
    unloading_ = true;
    runGuarded([this] { formUnload(); });
    hide();
    auto& l = openList();
    l.erase(std::remove(l.begin(), l.end(), this), l.end());
    deleteLater();
}

QWidget* FormBase::control(const QString& name) const {
    if (objectName() == name) return const_cast<FormBase*>(this);
    return findChild<QWidget*>(name);
}

QObject* FormBase::controlOrAction(const QString& name) const {
    if (QWidget* w = control(name)) return w;
    return findChild<QAction*>(name);
}

void FormBase::leave(const QString& name) {
    QWidget* c = control(name);
    if (!c) return;
    auto it = validators_.find(c);
    if (it != validators_.end()) runGuarded(it->second, actionName());
}

bool FormBase::hasValidate(const QString& name) const {
    QWidget* c = control(name);
    return c && validators_.count(c) > 0;
}

std::string FormBase::actionName() const {
    QString name = windowTitle();
    static const QRegularExpression programPrefix("^Kirrel\\s*-\\s*"), note("\\s*\\(.*\\)\\s*$");
    name.remove(programPrefix).remove(note);
    return name.trimmed().toStdString();
}

FormBase* FormBase::front() {
    const auto& l = openList();
    const auto shown = std::find_if(l.rbegin(), l.rend(), [](const FormBase* f) { return f->isVisible(); });
    if (shown != l.rend()) return *shown;
    return l.empty() ? nullptr : l.back();
}

FormBase* FormBase::find(const QString& name) {
    const auto& l = openList();
    const auto found =
        std::find_if(l.begin(), l.end(), [&name](const FormBase* f) { return f->objectName() == name; });
    return found == l.end() ? nullptr : *found;
}

QList<FormBase*> FormBase::openForms() {
    const auto& l = openList();
    return QList<FormBase*>(l.begin(), l.end());
}

void FormBase::setWallpaper(const QPixmap& tile) {
    wallpaper_ = tile;
    update();
}

void FormBase::paintEvent(QPaintEvent* event) {
    QWidget::paintEvent(event);
    if (wallpaper_.isNull()) return;
    QPainter painter(this);
    // Columns inside rows, from the top left corner, each tile at its natural size.
    for (int y = 0; y < height(); y += wallpaper_.height())
        for (int x = 0; x < width(); x += wallpaper_.width())
            painter.drawPixmap(x, y, wallpaper_);
}

// --- control factories ---------------------------------------------------------------------------

QPushButton* FormBase::makeButton(const QString& name, const QString& caption,
                                  std::function<void()> onClick) {
    auto* b = new QPushButton(caption, this);
    b->setObjectName(name);
    connect(b, &QPushButton::clicked, this, asUserStep(b, UserEvent::Click, [f = std::move(onClick)](bool) {
                if (f) f();
            }));
    connect(b, &QPushButton::clicked, this, &FormBase::noteControlChange);
    return b;
}

QLabel* FormBase::makeLabel(const QString& name, const QString& caption) {
    auto* l = new QLabel(caption, this);
    l->setObjectName(name);
    return l;
}

ClickLabel* FormBase::makeClickLabel(const QString& name, const QString& caption,
                                     std::function<void()> onClick) {
    auto* l = new ClickLabel(caption, this);
    l->setObjectName(name);
    l->setCursor(Qt::PointingHandCursor);
    connect(l, &ClickLabel::clicked, this, asUserStep(l, UserEvent::Click, [f = std::move(onClick)] {
                if (f) f();
            }));
    connect(l, &ClickLabel::clicked, this, &FormBase::noteControlChange);
    return l;
}

PictureBox* FormBase::makePicture(const QString& name) {
    auto* p = new PictureBox(this);
    p->setObjectName(name);
    return p;
}

QComboBox* FormBase::makeCombo(const QString& name, std::function<void()> onClick) {
    auto* c = new QComboBox(this);
    c->setObjectName(name);
    c->installEventFilter(this);
    connect(c, &QComboBox::currentIndexChanged, this,
            asUserStep(c, UserEvent::Change, [f = std::move(onClick)](int) {
                if (f) f();
            }));
    connect(c, &QComboBox::currentIndexChanged, this, &FormBase::noteControlChange);
    return c;
}

QListWidget* FormBase::makeList(const QString& name, std::function<void()> onClick,
                                std::function<void()> onDblClick) {
    auto* l = new QListWidget(this);
    l->setObjectName(name);
    l->installEventFilter(this);
    connect(l, &QListWidget::currentRowChanged, this,
            asUserStep(l, UserEvent::Change, [f = std::move(onClick)](int) {
                if (f) f();
            }));
    if (onDblClick)
        connect(l, &QListWidget::itemDoubleClicked, this,
                asUserStep(l, UserEvent::Open, [f = std::move(onDblClick)](QListWidgetItem*) { f(); }));
    connect(l, &QListWidget::currentRowChanged, this, &FormBase::noteControlChange);
    return l;
}

QCheckBox* FormBase::makeCheck(const QString& name, const QString& caption, std::function<void()> onClick) {
    auto* c = new QCheckBox(caption, this);
    c->setObjectName(name);
    connect(c, &QCheckBox::stateChanged, this,
            asUserStep(c, UserEvent::Change, [f = std::move(onClick)](int) {
                if (f) f();
            }));
    connect(c, &QCheckBox::stateChanged, this, &FormBase::noteControlChange);
    return c;
}

QRadioButton* FormBase::makeOption(const QString& name, const QString& caption,
                                   std::function<void()> onClick) {
    auto* o = new QRadioButton(caption, this);
    o->setObjectName(name);
    // Only the option turned on is the user's choice; the one turned off goes with it.
    connect(o, &QRadioButton::toggled, this, [this, o, f = std::move(onClick)](bool on) {
        if (on)
            runUserStep(
                *this, *o, UserEvent::Click,
                [&] {
                    if (f) f();
                },
                actionName());
    });
    connect(o, &QRadioButton::toggled, this, &FormBase::noteControlChange);
    return o;
}

QSlider* FormBase::makeSlider(const QString& name, int minimum, int maximum, std::function<void()> onChange,
                              std::function<void()> onScroll) {
    auto* s = new QSlider(Qt::Horizontal, this);
    s->setObjectName(name);
    s->setRange(minimum, maximum);
    connect(s, &QSlider::valueChanged, this, asUserStep(s, UserEvent::Change, [f = std::move(onChange)](int) {
                if (f) f();
            }));
    if (onScroll) connect(s, &QSlider::sliderMoved, this, asAction([f = std::move(onScroll)](int) { f(); }));
    connect(s, &QSlider::valueChanged, this, &FormBase::noteControlChange);
    return s;
}

QLineEdit* FormBase::makeText(const QString& name, std::function<void()> onChange) {
    auto* t = new QLineEdit(this);
    t->setObjectName(name);
    t->installEventFilter(this);
    connect(t, &QLineEdit::textChanged, this,
            asUserStep(t, UserEvent::Change, [f = std::move(onChange)](const QString&) {
                if (f) f();
            }));
    connect(t, &QLineEdit::textChanged, this, &FormBase::noteControlChange);
    return t;
}

void FormBase::onValidate(QWidget* control, std::function<void()> handler) {
    validators_[control] = std::move(handler);
}

LivePreview* FormBase::addLivePreview(QBoxLayout& layout, PreviewPlanner planner) {
    auto* column = new QVBoxLayout;
    auto* preview = new LivePreview(std::move(planner), this);
    column->addWidget(preview);
    column->addStretch(1);
    layout.addLayout(column);
    connect(this, &FormBase::controlsChanged, preview, &LivePreview::schedule);
    return preview;
}

void FormBase::closeDialog() {
    hide();
    showMainPanel();
    unloadForm();
}

bool FormBase::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusOut) {
        auto it = validators_.find(watched);
        if (it != validators_.end()) runUserStep(*this, *watched, UserEvent::Leave, it->second, actionName());
    }
    return QWidget::eventFilter(watched, event);
}

std::string FormBase::askInput(const std::string& prompt, const std::string& title,
                               const std::string& defaultText) {
    auto a = host::runningHost().inputBox(prompt, title, defaultText);
    return a ? *a : std::string();
}

// --- form catalogue --------------------------------------------------------------------------------

void registerForm(const QString& name, FormMaker maker) {
    makers()[name] = std::move(maker);
}
bool formKnown(const QString& name) {
    return makers().count(name) > 0;
}

FormBase* loadFormByName(const QString& name) {
    if (FormBase* open = FormBase::find(name)) return open;
    auto it = makers().find(name);
    if (it == makers().end()) return nullptr;
    FormBase* f = it->second();
    f->loadForm();
    return f;
}

} // namespace kirrel::panel
