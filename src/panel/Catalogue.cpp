#include "panel/Catalogue.h"

#include <map>

namespace kirrel::panel {

namespace {
constexpr const char* kOverwriteFromMain =
    "\nOverwrite Alpha Channel with Current Frame?\n\nWarning: This cannot be undone.";
constexpr const char* kOverwriteFromSwap = "\nOverwrite Alpha Channel with Swap Buffer?\n\nWarning: This cannot be undone.";
constexpr const char* kOverwriteBuffer = "\nThis will overwrite the current buffer!\n\nProceed?";

std::map<QString, std::function<void()>>& procedures() {
    static std::map<QString, std::function<void()>> p;
    return p;
}
} // namespace

const std::vector<const char*>& catalogueCategories() {
    static const std::vector<const char*> c = {"Alpha Masks", "Transitions", "Filters",
                                               "Custom FX",   "Other FX",    "Utilities"};
    return c;
}

const std::vector<CatalogueRow>& catalogueRows() {
    static const std::vector<CatalogueRow> rows = {
        {"Alpha Masks", "Alpha Mask Filter", true, "frmAlphaMask", false, nullptr},
        {"Alpha Masks", "Copy Current Frame To Alpha", false, "SendMain2Alpha", false, kOverwriteFromMain},
        {"Alpha Masks", "Copy Swap Buffer To Alpha", false, "SendSwap2Alpha", false, kOverwriteFromSwap},
        {"Alpha Masks", "Alpha Wipes", true, "frmAlphaWipes", false, nullptr},
        {"Alpha Masks", "Alpha Fades", true, "frmAlphaFades", false, nullptr},
        {"Alpha Masks", "Alpha Slides", true, "frmAlphaSlides", false, nullptr},
        {"Alpha Masks", "Export Anim as Animated Mask", false, "AMaskExport", true, nullptr},
        {"Alpha Masks", "Import Animated Mask", false, "AMaskImport", false, kOverwriteBuffer},
        {"Alpha Masks", "Animated Alpha Mask Filter", true, "frmAnimMask", false, nullptr},
        {"Transitions", "Wipes", true, "frmWipes", false, nullptr},
        {"Transitions", "Fades", true, "frmFades", false, nullptr},
        {"Transitions", "Doors", true, "frmDoors", false, nullptr},
        {"Transitions", "Boxes", true, "frmBoxes", false, nullptr},
        {"Transitions", "Stripes/Weaves", true, "frmStripes", false, nullptr},
        {"Transitions", "Pushes", true, "frmPushes", false, nullptr},
        {"Transitions", "Rows/Columns", true, "frmRowsColumns", false, nullptr},
        {"Transitions", "Crosses", true, "frmCrosses", false, nullptr},
        {"Transitions", "Slides", true, "frmSlides", false, nullptr},
        {"Transitions", "Threshold Mask", true, "frmThresholdMask", false, nullptr},
        {"Transitions", "Push Stripes", true, "frmPushStripes", false, nullptr},
        {"Transitions", "Slide Stripes", true, "frmSlideStripes", false, nullptr},
        {"Transitions", "Block Out", true, "frmBlocks", false, nullptr},
        {"Transitions", "Dissolves", true, "frmDissolves", false, nullptr},
        {"Transitions", "Blinds", true, "frmBlinds", false, nullptr},
        {"Transitions", "Diamonds", true, "frmDiamonds", false, nullptr},
        {"Transitions", "Iris", true, "frmIris", false, nullptr},
        {"Transitions", "Lines", true, "frmLines", false, nullptr},
        {"Transitions", "X Transition", true, "frmX", false, nullptr},
        {"Transitions", "Circles", true, "frmCircles", false, nullptr},
        {"Transitions", "Stretch/Squeeze", true, "frmStretches", false, nullptr},
        {"Filters", "Toonify Filter", true, "frmToon", false, nullptr},
        {"Filters", "Sketch Filter (Hard Line)", true, "frmSketchHard", false, nullptr},
        {"Filters", "Sketch Filter (Soft Line)", true, "frmSketchSoft", false, nullptr},
        {"Filters", "NightVision", true, "frmNightVision", false, nullptr},
        {"Filters", "Channel Threshold", true, "frmChannelThreshold", false, nullptr},
        {"Filters", "GreyOut", true, "frmGreyOut", false, nullptr},
        {"Custom FX", "CFX Builder (Basic)", true, "frmCFXBuilder", false, nullptr},
        {"Custom FX", "CFX Player", true, "frmCFXPlayer", false, nullptr},
        {"Custom FX", "Import CFX File", false, "ImportCFX", false, kOverwriteBuffer},
        {"Other FX", "Vertical Hold", true, "frmVertHold", false, nullptr},
        {"Other FX", "White Noise (TV Snow)", true, "frmTVSnow", false, nullptr},
        {"Other FX", "Animated Threshold", true, "frmGenThreshold", false, nullptr},
        {"Other FX", "Ping Pong Animation", true, "frmPingPong", false, nullptr},
        {"Other FX", "Flicker", true, "frmFlicker", false, nullptr},
        {"Other FX", "Focus", true, "frmFocus", false, nullptr},
        {"Utilities", "Frame Swapper", true, "frmFrameSwap", true, nullptr},
        {"Utilities", "Frame Copier", true, "frmFrameCopy", true, nullptr},
        {"Utilities", "Stored Animations", true, "frmMultiAnims", false, nullptr},
        {"Utilities", "Combine with Stored", true, "frmCombineAnims", true, nullptr},
        {"Utilities", "Composite with Stored", true, "frmCompositeAnims", true, nullptr},
        {"Utilities", "Attach to Stored", true, "frmAttachAnims", true, nullptr},
        {"Utilities", "Anim to Spritesheet", true, "frmSpriteSheet", true, nullptr},
        {"Utilities", "Import AnimGif", false, "ImportGif", false, nullptr},
        {"Utilities", "Export To AnimGif", true, "frmSave2AnimGif", true, nullptr},
        {"Utilities", "Export Transparent PNG", true, "frmSave2PNG", false, nullptr},
        {"Utilities", "Export Anim To MNG", true, "frmSave2MNG", true, nullptr},
    };
    return rows;
}

void registerProcedure(const QString& name, std::function<void()> procedure) {
    procedures()[name] = std::move(procedure);
}
bool procedureKnown(const QString& name) { return procedures().count(name) > 0; }
void runProcedure(const QString& name) {
    auto it = procedures().find(name);
    if (it != procedures().end()) it->second();
}

} // namespace kirrel::panel
