#include "support/Fixtures.h"

#include "host/AnimationFiles.h"

#include <QDir>
#include <QJsonArray>

namespace kirrel::test {

std::string flatSlotBytes(int n, int w, int h, char value) {
    std::string bytes = int16le({n, w, h});
    bytes.append(static_cast<std::size_t>(n) * 3 * (w + 1) * (h + 1), value);
    return bytes;
}

void copyPixel(host::Picture& to, int x, int y, const host::Picture& from, int sx, int sy) {
    to.r.at(x, y) = from.r.at(sx, sy);
    to.g.at(x, y) = from.g.at(sx, sy);
    to.b.at(x, y) = from.b.at(sx, sy);
}

QJsonObject formState(const QJsonObject& state, const QString& form) {
    for (const auto& f : state["forms"].toArray())
        if (f.toObject()["name"].toString() == form) return f.toObject();
    return {};
}

QJsonObject formControl(const QJsonObject& state, const QString& form, const QString& control) {
    for (const auto& c : formState(state, form)["controls"].toArray())
        if (c.toObject()["name"].toString() == control) return c.toObject();
    return {};
}

QString controlText(const QJsonObject& state, const QString& form, const QString& control) {
    return formControl(state, form, control)["text"].toString();
}

QStringList listItems(const QJsonObject& state, const QString& form, const QString& control) {
    return formControl(state, form, control)["items"].toVariant().toStringList();
}

std::vector<host::Picture> ScriptTest::dumped(const QString& dump) const {
    return host::readAnimationDat(at(dump + "/animation.dat")).frames;
}

void ScriptTest::writeSlot(int slot, int n, int w, int h) const {
    writeFile(at(QString("tmp/AnimSlot %1.dat").arg(slot)), flatSlotBytes(n, w, h));
}

} // namespace kirrel::test
