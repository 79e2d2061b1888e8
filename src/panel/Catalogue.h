#pragma once
// The effect catalogue of the main panel: categories in List1, plug-ins per category in List2, and
// what a double click on each plug-in does.

#include <QString>

#include <functional>
#include <vector>

namespace kirrel::panel {

struct CatalogueRow {
    const char* category;
    const char* plugin;
    bool opensForm;     // a dialog form, or a procedure run at once
    const char* target; // the form or procedure name
    bool needsAnimation;
    const char* question; // asked first; the answer 2 (no) stops; nullptr for none
};

const std::vector<const char*>& catalogueCategories();
const std::vector<CatalogueRow>& catalogueRows();

// Procedures that a catalogue row or a menu entry runs at once, registered by their subsystems.
void registerProcedure(const QString& name, std::function<void()> procedure);
bool procedureKnown(const QString& name);
void runProcedure(const QString& name);

} // namespace kirrel::panel
