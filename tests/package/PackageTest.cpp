#include "package/Package.h"
#include "componentbase/Steel.h"
#include "package/Registration.h"
#include "platform/core/ClassRegistry.h"
#include "platform/core/DesignerRegistry.h"
#include "timing/Std2.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

using namespace qv;

TEST(Package, UnitsInitializeInTableOrderOnceAndFinalizeInReverse) {
    std::vector<std::string> trace;
    SetUnitTrace([&](const char* unit, bool init) {
        trace.push_back(std::string(init ? "+" : "-").append(unit));
    });
    ASSERT_EQ(PackageUnits().size(), 23u);
    EXPECT_STREQ(PackageUnits()[3].name, "Std2");
    EXPECT_EQ(TSteel(), nullptr);

    InitializePackage();
    const TBitmap* steel = TSteel();
    ASSERT_NE(steel, nullptr);
    EXPECT_EQ(trace.front(), "+Qbitedit");
    EXPECT_EQ(trace[3], "+Std2");
    EXPECT_EQ(trace.back(), "+Quelvar");

    InitializePackage(); // a second host: the bodies do not run again
    EXPECT_EQ(TSteel(), steel);
    EXPECT_EQ(UnitCounter("Std2"), 2);
    EXPECT_EQ(PackageLoadCount(), 2);

    trace.clear();
    FinalizePackage();
    EXPECT_EQ(TSteel(), steel); // still in use by the other host
    EXPECT_EQ(trace.front(), "-Quelvar");
    EXPECT_EQ(trace[19], "-Std2");
    EXPECT_EQ(trace.back(), "-Qbitedit");
    FinalizePackage();
    EXPECT_EQ(TSteel(), nullptr);
    EXPECT_EQ(UnitCounter("Std2"), 0);
    FinalizePackage(); // an unbalanced unload changes nothing
    EXPECT_EQ(UnitCounter("Std2"), 0);
    EXPECT_EQ(UnitCounter("NoSuchUnit"), -1);
    SetUnitTrace(nullptr);
}

TEST(Package, SteelTextureIsSilverWithWhiteOddPixels) {
    InitializePackage();
    const TBitmap& steel = *TSteel();
    ASSERT_EQ(steel.Width(), 8);
    ASSERT_EQ(steel.Height(), 8);
    TBitmap copy;
    copy.Assign(steel);
    TCanvas& c = copy.Canvas();
    EXPECT_EQ(c.Pixel(1, 1), TColor(0xFFFFFF));
    for (TPoint p : {TPoint{0, 0}, TPoint{1, 0}, TPoint{0, 1}, TPoint{2, 1}})
        EXPECT_EQ(c.Pixel(p.x, p.y), TColor(0xC0C0C0));
    int white = 0;
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            white += c.Pixel(x, y) == TColor(0xFFFFFF);
    EXPECT_EQ(white, 16);
    FinalizePackage();
}

TEST(Package, SteelPaintingTilesFromTheCanvasOriginAndRestoresTheBrush) {
    InitializePackage();
    TBitmap a(20, 20), b(30, 12);
    a.Canvas().Brush().SetColor(clRed);
    PaintSteel(a.Canvas(), {3, 3, 20, 20});
    PaintSteel(b.Canvas(), {0, 0, 30, 12});
    EXPECT_EQ(a.Canvas().Pixel(3, 3), TColor(0xFFFFFF)); // (3, 3): both odd
    EXPECT_EQ(a.Canvas().Pixel(4, 3), TColor(0xC0C0C0));
    EXPECT_EQ(a.Canvas().Pixel(2, 2), TColor(0xFFFFFF)); // outside the rectangle: untouched
    for (int y = 3; y < 12; ++y)
        for (int x = 3; x < 20; ++x)
            ASSERT_EQ(a.Canvas().Pixel(x, y), b.Canvas().Pixel(x, y)) << x << "," << y;
    EXPECT_EQ(a.Canvas().Brush().Bitmap(), nullptr);
    EXPECT_EQ(a.Canvas().Brush().Color(), clRed);
    FinalizePackage();
}

TEST(Registration, TableHas68ClassesOnFourPagesAndRegistersThoseThatExistInOrder) {
    std::map<std::string, int> perPage;
    for (const auto& e : RegistrationTable())
        ++perPage[e.page];
    EXPECT_EQ(RegistrationTable().size(), 68u);
    EXPECT_EQ(perPage["QuelvarSoft"], 25);
    EXPECT_EQ(perPage["QuelvarSoft II"], 11);
    EXPECT_EQ(perPage["QuelvarSoft III"], 22);
    EXPECT_EQ(perPage["QuelvarSoft IIII"], 10);
    EXPECT_STREQ(RegistrationTable()[66].className, "TqTrayIcon");
    EXPECT_STREQ(RegistrationTable()[67].className, "TqxURLLabel");

    ClearDesignerRegistry();
    RegisterPackage();
    const auto pages = PalettePages();
    ASSERT_FALSE(pages.empty());
    EXPECT_EQ(pages.front(), "QuelvarSoft");
    // Every registered class appears on its page in table order, and can be created by name.
    for (const std::string& page : pages) {
        std::vector<std::string> expected;
        for (const auto& e : RegistrationTable())
            if (e.classInfo && e.page == page) expected.push_back(e.className);
        std::vector<std::string> got;
        for (const TClassInfo* c : PaletteClasses(page))
            got.push_back(c->name);
        EXPECT_EQ(got, expected) << page;
    }
    EXPECT_NE(GetClass("TqLed"), nullptr);
    bool ledEditor = false;
    for (const auto& e : ComponentEditors())
        ledEditor = ledEditor || e.editor == "TqLedEdit";
    EXPECT_TRUE(ledEditor);
    EXPECT_EQ(LibraryExperts().size(), 4u);
    bool hintEditor = false;
    for (const auto& e : PropertyEditors())
        hintEditor = hintEditor || e.propertyName == "Hint";
    EXPECT_TRUE(hintEditor);
    ClearDesignerRegistry();
}

#include "platform/system/PackageLoader.h"

TEST(SharedPackage, LoadsWithDlopenInitializesOnceAndFinalizesWithTheLastLoad) {
    const std::string path = QV_PACKAGE_MODULE;
    {
        TLoadedPackage first(path);
        EXPECT_EQ(first.UnitCount(), 23);
        EXPECT_EQ(first.UnitCounter("Std2"), 1);
        {
            TLoadedPackage second(path); // the same image: the units count a second load
            EXPECT_EQ(second.UnitCounter("Std2"), 2);
            second.Register();
        }
        EXPECT_EQ(first.UnitCounter("Std2"), 1);
        EXPECT_EQ(first.UnitCounter("Nope"), -1);
    }
    EXPECT_EQ(UnitCounter("Std2"), 0); // the host's own, statically linked copy is untouched
    EXPECT_THROW(TLoadedPackage("/nonexistent/libquelvar.so"), EPackageError);
}
