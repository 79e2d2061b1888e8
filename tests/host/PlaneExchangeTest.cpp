// Planes cross the automation interface by value: what a getter returns is the caller's own copy,
// and what a setter is given the host copies, so a run may keep working in the same array.

#include "panel/Vantry.h"
#include "support/Support.h"

#include <functional>

namespace kirrel::test {
namespace {

using Vantry::Vantry_Class;

struct PlaneAccess {
    const char* name;
    std::function<krl::Plane(Vantry_Class&)> get;
    std::function<void(Vantry_Class&, const krl::Plane&)> set;
};

const PlaneAccess kAccesses[] = {
    {"RBuffer", [](Vantry_Class& v) { return v.Van_GetRBuffer(); },
     [](Vantry_Class& v, const krl::Plane& p) { v.Van_SetRbuffer(p); }},
    {"GBuffer", [](Vantry_Class& v) { return v.Van_GetGBuffer(); },
     [](Vantry_Class& v, const krl::Plane& p) { v.Van_SetGbuffer(p); }},
    {"BBuffer", [](Vantry_Class& v) { return v.Van_GetBBuffer(); },
     [](Vantry_Class& v, const krl::Plane& p) { v.Van_SetBbuffer(p); }},
    {"ABuffer", [](Vantry_Class& v) { return v.Van_GetABuffer(); },
     [](Vantry_Class& v, const krl::Plane& p) { v.Van_SetAbuffer(p); }},
    {"SwapR", [](Vantry_Class& v) { return v.Van_GetSwapRBuffer(); },
     [](Vantry_Class& v, const krl::Plane& p) { v.Van_SetSwapRBuffer(p); }},
    {"SwapG", [](Vantry_Class& v) { return v.Van_GetSwapGBuffer(); },
     [](Vantry_Class& v, const krl::Plane& p) { v.Van_SetSwapGBuffer(p); }},
    {"SwapB", [](Vantry_Class& v) { return v.Van_GetSwapBBuffer(); },
     [](Vantry_Class& v, const krl::Plane& p) { v.Van_SetSwapBBuffer(p); }},
    {"RFrame", [](Vantry_Class& v) { return v.Van_GetRFrame(2); },
     [](Vantry_Class& v, const krl::Plane& p) { v.Van_SetRFrame(p, 2); }},
    {"GFrame", [](Vantry_Class& v) { return v.Van_GetGFrame(2); },
     [](Vantry_Class& v, const krl::Plane& p) { v.Van_SetGFrame(p, 2); }},
    {"BFrame", [](Vantry_Class& v) { return v.Van_GetBFrame(2); },
     [](Vantry_Class& v, const krl::Plane& p) { v.Van_SetBFrame(p, 2); }},
};

class PlaneExchange : public HostTest, public ::testing::WithParamInterface<PlaneAccess> {
  protected:
    void SetUp() override {
        HostTest::SetUp();
        host().loadAnimation({patternPicture(6, 4, 0), patternPicture(6, 4, 50), patternPicture(6, 4, 100)},
                             1);
        host().loadSwap(patternPicture(6, 4, 7));
    }
    Vantry_Class van;
};

TEST_P(PlaneExchange, HandedOutAndTakenByValue) {
    const PlaneAccess& a = GetParam();
    const krl::Plane before = a.get(van);
    ASSERT_EQ(before.width(), 6);
    ASSERT_EQ(before.height(), 4);

    krl::Plane mine = a.get(van);
    mine.at(1, 1) ^= 0xFF;
    mine.at(6, 4) ^= 0xFF; // the column and row that ride along are the caller's too
    EXPECT_EQ(a.get(van), before) << "changing a returned plane changed the host";

    a.set(van, mine);
    const krl::Plane handedIn = mine;
    EXPECT_EQ(a.get(van), handedIn);
    mine.at(2, 3) ^= 0xFF;
    mine.data()[0] ^= 1;
    EXPECT_EQ(a.get(van), handedIn) << "the host did not keep its own copy";
}

TEST_P(PlaneExchange, WrongSizedPlaneKeepsTheBufferSize) {
    const PlaneAccess& a = GetParam();
    for (const krl::Plane& p : {krl::Plane(), krl::Plane(-3, -3), krl::Plane(0, 0), krl::Plane(2, 1),
                                krl::Plane(40, 30), krl::Plane(6, 0), krl::Plane(0, 4)}) {
        a.set(van, p);
        const krl::Plane got = a.get(van);
        EXPECT_EQ(got.width(), 6) << p.width() << "x" << p.height();
        EXPECT_EQ(got.height(), 4) << p.width() << "x" << p.height();
    }
    EXPECT_EQ(van.Van_BufferWidth(), 6);
    EXPECT_EQ(van.Van_GetTotalFrames(), 3);
}

INSTANTIATE_TEST_SUITE_P(EveryPlane, PlaneExchange, ::testing::ValuesIn(kAccesses),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace kirrel::test
