#include "utility/MathHelpers.h"
#include "platform/core/Exceptions.h"
#include "utility/DialogUnits.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace qv;

TEST(MystdPower, ZeroBaseOrExponentIsDecidedBeforeTheLogarithm) {
    EXPECT_EQ(Power(0, 0), 0); // not 1, on purpose
    EXPECT_EQ(Power(5, 0), 1);
    EXPECT_EQ(Power(0, 5), 0);
    EXPECT_EQ(Power(-3, 0), 1);
    EXPECT_NEAR(Power(2, 10), 1024, 1e-12);
    EXPECT_NEAR(Power(2, -1), 0.5, 1e-15);
}

TEST(MystdPower, DropsTheSignOfANegativeBase) {
    EXPECT_NEAR(Power(-2, 3), 8, 1e-15);
    EXPECT_NEAR(Power(-4, 0.5), 2, 1e-15);
    EXPECT_NEAR(Root(3, 27), 3, 1e-15);
    EXPECT_NEAR(Root(2, -9), 3, 1e-15);
}

TEST(MystdPower, OverflowAndNotANumberRaise) {
    EXPECT_THROW(Power(10, 5000), EOverflow);
    EXPECT_THROW(Power(NAN, 2), EInvalidOp);
    EXPECT_THROW(Root(0, 8), EZeroDivide);
    const TFloatResult r = TryPower(10, 5000);
    EXPECT_EQ(r.fault, TFloatFault::Overflow);
    EXPECT_NO_THROW(Power(10, 4000)); // inside the extended range
}

TEST(MystdArcFunctions, ComputeThroughTheArcTangent) {
    EXPECT_NEAR(ArcSin(0.5), M_PI / 6, 1e-15);
    EXPECT_NEAR(ArcSin(-0.5), -M_PI / 6, 1e-15);
    EXPECT_NEAR(ArcCos(0.5), M_PI / 3, 1e-15);
    // Inherits the arc tangent's range: a negative argument gives a negative angle.
    EXPECT_NEAR(ArcCos(-0.5), -1.0471975511965976, 1e-15);
    EXPECT_EQ(ArcCos(1), 0);
}

TEST(MystdArcFunctions, EndsDivideByZeroAndOutsideIsInvalid) {
    EXPECT_THROW(ArcSin(1), EZeroDivide);
    EXPECT_THROW(ArcSin(-1), EZeroDivide);
    EXPECT_THROW(ArcCos(0), EZeroDivide);
    EXPECT_THROW(ArcSin(1.5), EInvalidOp);
    EXPECT_THROW(ArcCos(-2), EInvalidOp);
    EXPECT_EQ(TryArcCos(0).fault, TFloatFault::ZeroDivide);
}

TEST(MystdLog10, IsTheRatioOfNaturalLogarithms) {
    EXPECT_NEAR(Log10(1000), 3, 1e-15);
    EXPECT_NEAR(Log10(0.01), -2, 1e-15);
    EXPECT_THROW(Log10(0), EZeroDivide);
    EXPECT_THROW(Log10(-1), EInvalidOp);
}

TEST(MystdFactorial, MultipliesUpFromTwo) {
    EXPECT_EQ(Factorial(-5), 1);
    EXPECT_EQ(Factorial(0), 1);
    EXPECT_EQ(Factorial(1), 1);
    EXPECT_EQ(Factorial(5), 120);
    EXPECT_EQ(Factorial(20), 2432902008176640000.0L); // exact in 64 mantissa bits
    EXPECT_GT(Factorial(1754), 1e4930L);
    EXPECT_THROW(Factorial(1755), EOverflow);
    EXPECT_THROW(Factorial(INT32_MAX), EOverflow);
}

TEST(MystdIsPrime, TrialDivisionUpToTheSquareRoot) {
    for (int n : {0, 1, 2, 3, 5, 97, 7919, 2147483647})
        EXPECT_TRUE(IsPrime(n)) << n;
    for (int n : {4, 9, 25, 49, 7917, 2147483646})
        EXPECT_FALSE(IsPrime(n)) << n;
    EXPECT_THROW(IsPrime(-7), EInvalidOp);
}

TEST(MystdDialogUnits, ScaleByTheBaseUnitsAndTruncate) {
    const TDialogBaseUnits base = GetDialogBaseUnits();
    ASSERT_GT(base.x, 0);
    ASSERT_GT(base.y, 0);
    EXPECT_EQ(DlgUnitsToPixelsX(4), base.x);
    EXPECT_EQ(DlgUnitsToPixelsY(8), base.y);
    EXPECT_EQ(DlgUnitsToPixelsX(1), base.x / 4);
    EXPECT_EQ(DlgUnitsToPixelsY(3), 3 * base.y / 8);
    EXPECT_EQ(PixelsToDlgUnitsX(base.x), 4);
    EXPECT_EQ(PixelsToDlgUnitsY(base.y - 1), (base.y - 1) * 8 / base.y);
    // 16-bit results keep their low 16 bits, as the classic routines do.
    EXPECT_EQ(DlgUnitsToPixelsX(65535), static_cast<std::uint16_t>(65535u * base.x / 4));
}

#include "package/Package.h"
#include "platform/controls/Form.h"
#include "utility/FormHelpers.h"

TEST(Mystd, DialogBaseUnitsComeFromTheDefaultFont) {
    const TDialogBaseUnits base = GetDialogBaseUnits();
    TBitmap scratch(1, 1);
    const int height = scratch.Canvas().TextHeight("Ag");
    EXPECT_EQ(base.y, height);
    EXPECT_GE(base.x, 4);
    EXPECT_LE(base.x, 9);
}

TEST(Mystd, FindFormWalksTheOwnersAndNamesTheFailure) {
    TForm form(nullptr);
    auto* holder = new TComponent(&form);
    auto* inner = new TComponent(holder);
    EXPECT_EQ(&FindForm(*inner), &form);
    EXPECT_THROW(FindForm(form), EComponentError); // not the component itself
    TComponent loose(nullptr);
    try {
        FindForm(loose);
        FAIL();
    } catch (const EComponentError& e) {
        EXPECT_STREQ(e.what(), "NoForm");
    }
}

TEST(Mystd, HintAppearanceLivesWhileTheUnitIsLoaded) {
    EXPECT_EQ(HintAppearance(), nullptr);
    InitializePackage();
    ASSERT_NE(HintAppearance(), nullptr);
    EXPECT_EQ(HintAppearance()->font.Name(), "MS Sans Serif");
    EXPECT_EQ(HintAppearance()->font.Height(), -11);
    EXPECT_EQ(HintAppearance()->font.Color(), clWindowText);
    FinalizePackage();
    EXPECT_EQ(HintAppearance(), nullptr);
}
