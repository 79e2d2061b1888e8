#pragma once
// The panel's skin: colours from the host's per-user settings (application "vantry", section
// "Startup"), and the host's wallpaper tiled behind every form's controls.

#include <QColor>
#include <QPixmap>

#include <cstdint>

class QWidget;

namespace kirrel::panel {

class FormBase;

// The nineteen settings, read anew on every call; colours are packed red-low.
struct SkinSettings {
    std::uint32_t shine, shadow, halfShine, halfShadow, buttonFill, scrollFill, scrollBar, tabHighlight, ruler,
        textboxFill, textboxText, specialBackdrop, specialTool, specialSetting, specialAction;
    bool borderlessButtons, borderlessScrollers, borderlessStrings, borderlessTabs;
};

// Throws std::invalid_argument when a setting is not a number (the skin has no guard for that).
SkinSettings readSkinSettings();

QColor packedColor(std::uint32_t packed);
// The panel's fixed backdrop colour behind the wallpaper.
constexpr std::uint32_t kPanelBackdrop = 0x9E958F;

void colourControl(QWidget* control, std::uint32_t back, std::uint32_t text);
void colourButton(QWidget* button, std::uint32_t back);
void colourBackground(QWidget* form, std::uint32_t back);

// Tiles Mainfrm's wallpaper on the target form, from the top left, columns inside rows. A missing,
// unreadable or empty wallpaper leaves the form unpainted without a word.
void Draw_Pattern(FormBase* target);
// Loads the wallpaper named by the host into Mainfrm's hidden Image1.
QPixmap loadWallpaper(const std::string& path);

} // namespace kirrel::panel
