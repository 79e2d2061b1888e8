#include "panel/Skin.h"

#include "panel/FormBase.h"
#include "panel/HostSettings.h"

#include <QLabel>
#include <QWidget>

#include <stdexcept>

namespace kirrel::panel {

namespace {
std::uint32_t number(const char* key, std::uint32_t fallback) {
    const QString text = readHostSetting("vantry", "Startup", key, QString::number(fallback)).trimmed();
    bool ok = false;
    const qlonglong v = text.toLongLong(&ok);
    if (!ok) throw std::invalid_argument(std::string("Type mismatch in setting ") + key);
    return static_cast<std::uint32_t>(v);
}

QString css(std::uint32_t packed) { return packedColor(packed).name(); }
} // namespace

SkinSettings readSkinSettings() {
    SkinSettings s{};
    s.shine = number("Shine_Color", 0xE0E0E0);
    s.shadow = number("Shadow_Color", 0x202020);
    s.halfShine = number("Half_Shine_Color", 0xC0C0C0);
    s.halfShadow = number("Half_Shadow_Color", 0x707070);
    s.buttonFill = number("Button_Fill_Color", 0xC0C0C0);
    s.scrollFill = number("Scroll_Fill_Color", 0x9E958F);
    s.scrollBar = number("Scroll_Bar_Color", 0xFFFFFF);
    s.tabHighlight = number("Tab_Highlight_Color", 0xD0F4FF);
    s.ruler = number("Ruler_Color", 0xB8E8FA);
    s.textboxFill = number("Textbox_Fill_Color", 0x665555);
    s.textboxText = number("Textbox_Text_Color", 0x88EEFF);
    s.specialBackdrop = number("Special_Backdrop_Color", 0x9E958F);
    s.specialTool = number("Special_Tool_Color", 0xC1BEC9);
    s.specialSetting = number("Special_Setting_Color", 0xC5C5B6);
    s.specialAction = number("Special_Action_Color", 0xB5BFBD);
    s.borderlessButtons = number("Borderless_Buttons", 0) != 0;
    s.borderlessScrollers = number("Borderless_Scrollers", 0) != 0;
    s.borderlessStrings = number("Borderless_Strings", 0) != 0;
    s.borderlessTabs = number("Borderless_Tabs", 0) != 0;
    return s;
}

QColor packedColor(std::uint32_t c) { return QColor(c & 255, (c >> 8) & 255, (c >> 16) & 255); }

void colourControl(QWidget* control, std::uint32_t back, std::uint32_t text) {
    control->setStyleSheet(QString("background-color: %1; color: %2;").arg(css(back), css(text)));
}

void colourButton(QWidget* button, std::uint32_t back) {
    button->setStyleSheet(QString("QPushButton { background-color: %1; color: black; border: 1px solid #3a3a3a;"
                                  " border-radius: 3px; padding: 3px 10px; }"
                                  "QPushButton:disabled { color: #6a6a6a; }"
                                  "QPushButton:pressed { background-color: %2; }")
                              .arg(css(back), packedColor(back).darker(120).name()));
}

void colourBackground(QWidget* form, std::uint32_t back) {
    QPalette p = form->palette();
    p.setColor(QPalette::Window, packedColor(back));
    form->setPalette(p);
    form->setAutoFillBackground(true);
}

QPixmap loadWallpaper(const std::string& path) {
    if (path.empty()) return {};
    QPixmap pix;
    if (!pix.load(QString::fromStdString(path))) return {};
    return pix;
}

void Draw_Pattern(FormBase* target) {
    if (!target) return;
    FormBase* main = FormBase::find("Mainfrm");
    auto* image = main ? qobject_cast<QLabel*>(main->control("Image1")) : nullptr;
    const QPixmap tile = image ? image->pixmap() : QPixmap();
    // A tile of width or height 0 would never advance: it counts as no wallpaper.
    target->setWallpaper(tile.width() > 0 && tile.height() > 0 ? tile : QPixmap());
}

} // namespace kirrel::panel
