// The skin: colours from the host's per-user settings, defaults without them, and the wallpaper.

#include "panel/Skin.h"
#include "panel/FormBase.h"
#include "panel/HostSettings.h"
#include "panel/Panel.h"
#include "support/Support.h"

#include <QDir>
#include <QImage>
#include <QLabel>

namespace kirrel::test {
namespace {

using panel::FormBase;

class Skin : public HostTest {
  protected:
    QString listStyle() {
        panel::startPanel();
        return FormBase::find("Mainfrm")->control("List1")->styleSheet();
    }
    QPixmap wallpaperTile() {
        panel::startPanel();
        return qobject_cast<QLabel*>(FormBase::find("Mainfrm")->control("Image1"))->pixmap();
    }
};

TEST_F(Skin, DefaultsApplyWithoutSettings) {
    const panel::SkinSettings s = panel::readSkinSettings();
    EXPECT_EQ(s.buttonFill, 0xC0C0C0u);
    EXPECT_FALSE(s.borderlessButtons);
    // Packed red-low: 0x665555 is red 0x55, green 0x55, blue 0x66.
    EXPECT_TRUE(listStyle().contains("#555566"));
    EXPECT_TRUE(listStyle().contains("#ffee88"));
}

TEST_F(Skin, SettingsOverrideTheDefaults) {
    panel::overlayHostSettings({{"Textbox_Fill_Color", "255"}, {"Textbox_Text_Color", "65280"}});
    EXPECT_TRUE(listStyle().contains("#ff0000"));
    EXPECT_TRUE(listStyle().contains("#00ff00"));
}

TEST_F(Skin, ASettingThatIsNoNumberIsAnError) {
    panel::overlayHostSettings({{"Ruler_Color", "blue"}});
    EXPECT_THROW(panel::readSkinSettings(), std::invalid_argument);
}

TEST_F(Skin, MissingOrEmptyWallpaperLeavesTheFormUnpainted) {
    host().setWallpaper(QDir(scratch.path()).filePath("no-such.png").toStdString());
    EXPECT_TRUE(wallpaperTile().isNull());
    for (FormBase* f : FormBase::openForms())
        delete f;
    host().setWallpaper(":/host/wallpaper.png");
    EXPECT_FALSE(wallpaperTile().isNull()) << "the host ships a wallpaper";
}

TEST_F(Skin, WallpaperIsTiledFromTheTopLeft) {
    const QString file = QDir(scratch.path()).filePath("tile.png");
    QImage tile(7, 5, QImage::Format_RGB32);
    tile.fill(Qt::red);
    tile.setPixel(0, 0, qRgb(0, 0, 255));
    ASSERT_TRUE(tile.save(file));
    host().setWallpaper(file.toStdString());
    panel::startPanel();
    FormBase* main = FormBase::find("Mainfrm");
    const QImage shot = main->grab().toImage();
    // The tile's marker pixel repeats every 7 columns and 5 rows from the top left corner; the bottom
    // margin below the lists shows it.
    const int y = ((shot.height() - 1) / 5) * 5;
    EXPECT_EQ(shot.pixel(0, y) & 0xFFFFFF, 0x0000FFu);
    EXPECT_EQ(shot.pixel(7, y) & 0xFFFFFF, 0x0000FFu);
    EXPECT_EQ(shot.pixel(1, y) & 0xFFFFFF, 0xFF0000u);
    EXPECT_EQ(shot.pixel(0, y - 1) & 0xFFFFFF, 0xFF0000u);
}

} // namespace
} // namespace kirrel::test
