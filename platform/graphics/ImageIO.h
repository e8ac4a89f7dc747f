#pragma once
// Reading and writing picture files: PNG (libpng), BMP and ICO. Pixels come and go as
// TPixelBuffer values 0xAARRGGBB; readers report whether the picture has an alpha channel.
// Corrupt or truncated input raises EInvalidGraphic naming the source.

#include "PixelBuffer.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace qv {

struct TDecodedImage {
    TPixelBuffer pixels;
    bool hasAlpha{false};
};

// `source` names the file or stream in error messages.
TDecodedImage DecodePng(std::span<const std::uint8_t> data, const std::string& source);
std::vector<std::uint8_t> EncodePng(const TPixelBuffer& pixels, bool withAlpha);

TDecodedImage DecodeBmp(std::span<const std::uint8_t> data, const std::string& source);
// A 32-bit top-down BMP when `withAlpha`, else 24-bit bottom-up.
std::vector<std::uint8_t> EncodeBmp(const TPixelBuffer& pixels, bool withAlpha = false);

// All images of an ICO file, largest first.
std::vector<TDecodedImage> DecodeIco(std::span<const std::uint8_t> data, const std::string& source);
// An ICO holding one PNG-compressed image.
std::vector<std::uint8_t> EncodeIco(const TPixelBuffer& pixels);

// Picks the decoder from the data's signature (PNG, BMP or ICO).
TDecodedImage DecodeImage(std::span<const std::uint8_t> data, const std::string& source);

std::vector<std::uint8_t> ReadFileBytes(const std::string& path);
void WriteFileBytes(const std::string& path, std::span<const std::uint8_t> data);

} // namespace qv
