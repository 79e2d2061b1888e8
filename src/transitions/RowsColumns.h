#pragma once
// Rows and columns: a band of rows or of columns opens out of the frame's centre or closes into it.
// Four members (by the index of the dialog's variant list), each with its To and From runs and
// their stored twins.

#include <string>

namespace kirrel::transitions {

// The dialog's variant list, in order.
inline constexpr const char* kRowsColumnsVariants[] = {"Row Open", "Row Close", "Column Open",
                                                       "Column Close"};

// The runs by variant index; the stored ones splice with slot 0..3.
void runRowColumnTo(int member, int start, int end, const std::string& source);
void runRowColumnFrom(int member, int start, int end, const std::string& source);
void runRowColumnToStored(int member, int start, int slot);
void runRowColumnFromStored(int member, int end, int slot);

// The modules by their own names.
inline void RowOpenTo(int s, int e, const std::string& src) {
    runRowColumnTo(0, s, e, src);
}
inline void RowOpenFrom(int s, int e, const std::string& src) {
    runRowColumnFrom(0, s, e, src);
}
inline void RowOpen2Stored(int s, int slot) {
    runRowColumnToStored(0, s, slot);
}
inline void RowOpenFromStored(int e, int slot) {
    runRowColumnFromStored(0, e, slot);
}
inline void RowCloseTo(int s, int e, const std::string& src) {
    runRowColumnTo(1, s, e, src);
}
inline void RowCloseFrom(int s, int e, const std::string& src) {
    runRowColumnFrom(1, s, e, src);
}
inline void RowClose2Stored(int s, int slot) {
    runRowColumnToStored(1, s, slot);
}
inline void RowCloseFromStored(int e, int slot) {
    runRowColumnFromStored(1, e, slot);
}
inline void ColumnOpenTo(int s, int e, const std::string& src) {
    runRowColumnTo(2, s, e, src);
}
inline void ColumnOpenFrom(int s, int e, const std::string& src) {
    runRowColumnFrom(2, s, e, src);
}
inline void ColumnOpen2Stored(int s, int slot) {
    runRowColumnToStored(2, s, slot);
}
inline void ColumnOpenFromStored(int e, int slot) {
    runRowColumnFromStored(2, e, slot);
}
inline void ColumnCloseTo(int s, int e, const std::string& src) {
    runRowColumnTo(3, s, e, src);
}
inline void ColumnCloseFrom(int s, int e, const std::string& src) {
    runRowColumnFrom(3, s, e, src);
}
inline void ColumnClose2Stored(int s, int slot) {
    runRowColumnToStored(3, s, slot);
}
inline void ColumnCloseFromStored(int e, int slot) {
    runRowColumnFromStored(3, e, slot);
}

} // namespace kirrel::transitions
