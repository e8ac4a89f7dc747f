// Feeds arbitrary bytes to the picture readers (PNG, BMP, ICO). Bad input may only end in
// EInvalidGraphic; anything else (a crash, a sanitizer report, another exception) is a bug.

#include "platform/graphics/Bitmap.h"
#include "platform/graphics/ImageIO.h"

#include "platform/core/Exceptions.h"

#include <cstddef>
#include <cstdint>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::uint8_t> bytes(data, data + size);
    try {
        qv::DecodeImage(bytes, "fuzz");
    } catch (const qv::EInvalidGraphic&) {
    } catch (const qv::EOutOfResources&) {
    }
    try {
        qv::DecodeIco(bytes, "fuzz");
    } catch (const qv::EInvalidGraphic&) {
    } catch (const qv::EOutOfResources&) {
    }
    try {
        qv::TIcon icon;
        icon.LoadFromBytes(bytes, "fuzz");
    } catch (const qv::EInvalidGraphic&) {
    } catch (const qv::EOutOfResources&) {
    }
    return 0;
}
