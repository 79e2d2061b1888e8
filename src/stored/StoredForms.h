#pragma once
// Makes the stored-animation forms known to the panel by name.

namespace kirrel::stored {

// "frmMultiAnims" (the catalogue's "Stored Animations" and the menu's "Stored Animations Panel") and
// "frmStoredRequester".
void registerStoredForms();

} // namespace kirrel::stored
