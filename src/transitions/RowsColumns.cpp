#include "transitions/RowsColumns.h"

#include "transitions/OpeningRun.h"

namespace kirrel::transitions {

namespace {

// Rows by variant: Row Open, Row Close, Column Open, Column Close. The Column To runs start at Start,
// so their first frame already shows a column or two at the centre, where the Row To runs leave that
// frame alone. The row modules but the opening To one call through one guarded mix: the opening From
// run keeps frame Start all source and the closing pair keep frame End whole. All four column modules
// and the opening row To module make one mix per source and no guard.
constexpr std::array<OpeningMember, 4> kRowsColumns = {{
    {Opening::Rows,
     {false, Reach::Opening, Frames::AfterStart, Guard::None, EndPicture::None, MixCode::PerSource},
     {true, Reach::Opening, Frames::Whole, Guard::AfterStart, EndPicture::None, MixCode::Guarded}},
    {Opening::Rows,
     {true, Reach::Closing, Frames::AfterStart, Guard::BeforeEnd, EndPicture::None, MixCode::Guarded},
     {false, Reach::Closing, Frames::Whole, Guard::BeforeEnd, EndPicture::None, MixCode::Guarded}},
    {Opening::Columns,
     {false, Reach::Opening, Frames::Whole, Guard::None, EndPicture::None, MixCode::PerSource},
     {true, Reach::Opening, Frames::Whole, Guard::None, EndPicture::None, MixCode::PerSource}},
    {Opening::Columns,
     {true, Reach::Closing, Frames::Whole, Guard::None, EndPicture::None, MixCode::PerSource},
     {false, Reach::Closing, Frames::Whole, Guard::None, EndPicture::None, MixCode::PerSource}},
}};

using Family = OpeningFamily<kRowsColumns>;

} // namespace

void runRowColumnTo(int member, int start, int end, const std::string& source) {
    Family::to(member, start, end, source);
}
void runRowColumnFrom(int member, int start, int end, const std::string& source) {
    Family::from(member, start, end, source);
}
void runRowColumnToStored(int member, int start, int slot) {
    Family::toStored(member, start, slot);
}
void runRowColumnFromStored(int member, int end, int slot) {
    Family::fromStored(member, end, slot);
}

} // namespace kirrel::transitions
