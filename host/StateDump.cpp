#include "host/StateDump.h"

#include "host/AnimationFiles.h"
#include "host/HostState.h"
#include "host/JsonText.h"
#include "panel/Controls.h"
#include "panel/FormBase.h"

#include <QAbstractSlider>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>

#include <stdexcept>

namespace kirrel::host {

namespace {

std::string q(const QString& s) {
    return jsonQuote(s.toStdString());
}

std::string colour(std::uint32_t c) {
    return "[" + std::to_string(c & 255) + ", " + std::to_string((c >> 8) & 255) + ", " +
           std::to_string((c >> 16) & 255) + "]";
}

std::string itemsOf(const QStringList& items) {
    std::string out = "[";
    for (int i = 0; i < items.size(); ++i)
        out += (i ? ", " : "") + q(items[i]);
    return out + "]";
}

std::string controlJson(QObject* c, QWidget* form) {
    const QString kind = panel::controlKind(c);
    std::string text = "null", items = "null", index = "null", value = "null";
    bool enabled = true, visible = true;
    if (auto* w = qobject_cast<QWidget*>(c)) {
        enabled = w->isEnabled();
        visible = w->isVisibleTo(form) || (!w->isHidden() && !form->isVisible());
    }
    if (auto* a = qobject_cast<QAction*>(c)) {
        text = q(a->text());
        enabled = a->isEnabled();
        visible = a->isVisible();
    } else if (auto* cb = qobject_cast<QComboBox*>(c)) {
        QStringList l;
        for (int i = 0; i < cb->count(); ++i)
            l << cb->itemText(i);
        text = q(cb->currentText());
        items = itemsOf(l);
        index = std::to_string(cb->currentIndex());
    } else if (auto* lw = qobject_cast<QListWidget*>(c)) {
        QStringList l;
        for (int i = 0; i < lw->count(); ++i)
            l << lw->item(i)->text();
        text = q(lw->currentItem() ? lw->currentItem()->text() : QString());
        items = itemsOf(l);
        index = std::to_string(lw->currentRow());
    } else if (auto* ck = qobject_cast<QCheckBox*>(c)) {
        text = q(ck->text());
        value = std::to_string(ck->checkState() == Qt::Checked            ? 1
                               : ck->checkState() == Qt::PartiallyChecked ? 2
                                                                          : 0);
    } else if (auto* op = qobject_cast<QRadioButton*>(c)) {
        text = q(op->text());
        value = op->isChecked() ? "true" : "false";
    } else if (auto* b = qobject_cast<QPushButton*>(c)) {
        text = q(b->text());
    } else if (auto* s = qobject_cast<QAbstractSlider*>(c)) {
        value = std::to_string(s->value());
    } else if (auto* t = qobject_cast<QLineEdit*>(c)) {
        text = q(t->text());
    } else if (auto* l = qobject_cast<QLabel*>(c)) {
        text = q(l->text());
    }
    return "{\"name\": " + q(c->objectName()) + ", \"kind\": " + q(kind) + ", \"text\": " + text +
           ", \"items\": " + items + ", \"index\": " + index + ", \"value\": " + value +
           ", \"enabled\": " + (enabled ? "true" : "false") +
           ", \"visible\": " + (visible ? "true" : "false") + "}";
}

std::string formJson(panel::FormBase* f) {
    std::string controls = "[";
    bool first = true;
    for (QObject* c : f->findChildren<QObject*>()) {
        if (c->objectName().isEmpty() || panel::controlKind(c) == "other") continue;
        controls += (first ? "\n      " : ",\n      ") + controlJson(c, f);
        first = false;
    }
    controls += "]";
    return "{\"name\": " + q(f->objectName()) + ", \"caption\": " + q(f->windowTitle()) +
           ", \"visible\": " + (f->isVisible() ? "true" : "false") + ", \"controls\": " + controls + "}";
}

} // namespace

QString stateJson(const HostState& h) {
    std::string s = "{\n";
    s += "  \"total_frames\": " + std::to_string(h.totalFrames()) + ",\n";
    s += "  \"current_frame\": " + std::to_string(h.currentFrame()) + ",\n";
    s += "  \"width\": " + std::to_string(h.bufferWidth()) + ",\n";
    s += "  \"height\": " + std::to_string(h.bufferHeight()) + ",\n";
    s += "  \"primary\": " + colour(h.primaryColor()) + ",\n";
    s += "  \"secondary\": " + colour(h.secondaryColor()) + ",\n";
    s += std::string("  \"locked\": ") + (h.locked() ? "true" : "false") + ",\n";
    s += "  \"pointer\": " + std::to_string(h.pointer()) + ",\n";
    s += "  \"progress\": " + jsonNumber(h.progress()) + ",\n";
    s += std::string("  \"status_open\": ") + (h.statusOpen() ? "true" : "false") + ",\n";
    s += "  \"delays\": [";
    for (int f = 0; f < h.totalFrames(); ++f)
        s += (f ? ", " : "") + std::to_string(h.frameDelay(f));
    s += "],\n";
    auto labels = [](const std::vector<std::string>& l) {
        std::string out = "[";
        for (std::size_t i = 0; i < l.size(); ++i)
            out += (i ? ", " : "") + jsonQuote(l[i]);
        return out + "]";
    };
    s += "  \"history\": {\"undo\": " + labels(h.history().undoLabels()) +
         ", \"redo\": " + labels(h.history().redoLabels()) + "},\n";
    s += "  \"status\": " + jsonQuote(h.lastStatus()) + ",\n";
    s +=
        "  \"scrub\": [" + std::to_string(h.scrubPosition()) + ", " + std::to_string(h.scrubTotal()) + "],\n";
    s += "  \"layers\": " + std::to_string(h.layerCount()) + ",\n";
    s += "  \"layer_opacity\": " + std::to_string(h.layerOpacity()) + ",\n";
    s += "  \"dialogs\": [";
    bool first = true;
    for (const auto& d : h.dialogs()) {
        s += (first ? "\n    " : ",\n    ");
        s += "{\"kind\": " + jsonQuote(d.kind) + ", \"text\": " + jsonQuote(d.text) +
             ", \"title\": " + jsonQuote(d.title) + ", \"answer\": " + d.answer + "}";
        first = false;
    }
    s += "],\n  \"forms\": [";
    first = true;
    for (panel::FormBase* f : panel::FormBase::openForms()) {
        s += (first ? "\n    " : ",\n    ") + formJson(f);
        first = false;
    }
    s += "]\n}\n";
    return QString::fromStdString(s);
}

void dumpHost(const HostState& h, const QString& folder) {
    QDir dir(folder);
    if (!dir.mkpath(".") || !dir.mkpath("frames"))
        throw std::runtime_error("cannot create " + folder.toStdString());
    Animation a;
    for (int f = 0; f < h.totalFrames(); ++f)
        a.frames.push_back(h.framePicture(f));
    if (a.frames.empty()) a.still = h.mainPicture();
    writeAnimationDat(dir.filePath("animation.dat"), a);
    writePictureDat(dir.filePath("swap.dat"), h.swapPicture());
    writePlaneDat(dir.filePath("alpha.dat"), h.alphaPlane());
    QDir frames(dir.filePath("frames"));
    for (const QString& old : frames.entryList({"*.png"}, QDir::Files))
        frames.remove(old);
    const auto& pictures = a.frames.empty() ? std::vector<Picture>{a.still} : a.frames;
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        const QString name = QString("%1.png").arg(static_cast<int>(i), 4, 10, QChar('0'));
        if (!imageFromPicture(pictures[i]).save(frames.filePath(name)))
            throw std::runtime_error("cannot write " + frames.filePath(name).toStdString());
    }
    QFile state(dir.filePath("state.json"));
    if (!state.open(QIODevice::WriteOnly | QIODevice::Truncate))
        throw std::runtime_error("cannot write " + state.fileName().toStdString());
    state.write(stateJson(h).toUtf8());
}

} // namespace kirrel::host
