// Picture files: round trips and the errors corrupt input raises.

#include "platform/graphics/Bitmap.h"
#include "platform/graphics/Canvas.h"
#include "platform/graphics/ImageIO.h"

#include "platform/core/Exceptions.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace qv;

namespace {

std::string OutPath(const std::string& name) {
    std::filesystem::create_directories(QV_TEST_OUT);
    return std::string(QV_TEST_OUT) + "/" + name;
}

std::unique_ptr<TBitmap> Sample() {
    auto b = std::make_unique<TBitmap>(5, 3);
    b->Canvas().SetPixel(0, 0, clRed);
    b->Canvas().SetPixel(4, 2, clBlue);
    b->Canvas().SetPixel(2, 1, MakeColor(0x123456));
    return b;
}

std::string ErrorOf(const std::function<void()>& f) {
    try {
        f();
    } catch (const EInvalidGraphic& e) {
        return e.what();
    }
    return "";
}

} // namespace

TEST(ImageFiles, BmpAndPngRoundTrip) {
    const auto sample = Sample();
    const TBitmap& original = *sample;
    for (const std::string name : {"sample.bmp", "sample.png"}) {
        original.SaveToFile(OutPath(name));
        TBitmap loaded;
        loaded.LoadFromFile(OutPath(name));
        EXPECT_EQ(loaded.Pixels(), original.Pixels()) << name;
    }
    const auto top = DecodeBmp(EncodeBmp(original.Pixels(), true), "mem");
    EXPECT_EQ(top.pixels.At(4, 2) & 0xFFFFFF, original.Pixels().At(4, 2));
}

TEST(ImageFiles, FormDataRoundTripsThroughBytes) {
    const auto sample = Sample();
    const TBitmap& original = *sample;
    TBitmap copy;
    copy.LoadFromBytes(original.SaveToBytes());
    EXPECT_EQ(copy.Pixels(), original.Pixels());
    TIcon icon;
    EXPECT_TRUE(icon.Empty());
    EXPECT_EQ(icon.Width(), 32);
    icon.Assign(original);
    TIcon back;
    back.LoadFromBytes(icon.SaveToBytes());
    EXPECT_EQ(back.Image(), icon.Image());
    icon.SaveToFile(OutPath("sample.ico"));
    TIcon fromFile;
    fromFile.LoadFromFile(OutPath("sample.ico"));
    EXPECT_EQ(fromFile.Image(), icon.Image());
}

TEST(ImageFiles, CorruptAndTruncatedFilesNameTheFile) {
    const auto png = EncodePng(Sample()->Pixels(), false);
    const auto bmp = EncodeBmp(Sample()->Pixels());
    const std::vector<std::uint8_t> truncatedPng(png.begin(),
                                                 png.begin() + static_cast<long>(png.size() / 2));
    const std::vector<std::uint8_t> truncatedBmp(bmp.begin(), bmp.end() - 10);
    std::vector<std::uint8_t> badCrc = png;
    badCrc[30] ^= 0xFF;
    for (const auto& data :
         {truncatedPng, truncatedBmp, badCrc, std::vector<std::uint8_t>{0, 0, 1, 0, 1}}) {
        const std::string path = OutPath("broken.img");
        WriteFileBytes(path, data);
        TBitmap b;
        EXPECT_NE(ErrorOf([&] { b.LoadFromFile(path); }).find("broken.img"), std::string::npos);
    }
    EXPECT_NE(ErrorOf([] { TBitmap().LoadFromFile("/no/such/file.bmp"); }).find("file.bmp"),
              std::string::npos);
}
