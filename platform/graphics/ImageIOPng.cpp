// PNG through libpng, with errors turned into EInvalidGraphic.

#include "ImageIO.h"

#include "platform/core/Exceptions.h"

#include <csetjmp>
#include <cstring>
#include <png.h>

namespace qv {

namespace {

struct TPngReadSource {
    std::span<const std::uint8_t> data;
    std::size_t pos{0};
};

void ReadFromMemory(png_structp png, png_bytep out, png_size_t length) {
    auto* src = static_cast<TPngReadSource*>(png_get_io_ptr(png));
    if (length > src->data.size() - src->pos) png_error(png, "truncated data");
    std::memcpy(out, src->data.data() + src->pos, length);
    src->pos += length;
}

void WriteToVector(png_structp png, png_bytep data, png_size_t length) {
    auto* out = static_cast<std::vector<std::uint8_t>*>(png_get_io_ptr(png));
    out->insert(out->end(), data, data + length);
}

void FlushNothing(png_structp) {}

// libpng reports errors through longjmp; the message is kept for the exception.
struct TPngErrorState {
    std::jmp_buf jump;
    char message[128]{};
};

void OnPngError(png_structp png, png_const_charp message) {
    auto* state = static_cast<TPngErrorState*>(png_get_error_ptr(png));
    std::strncpy(state->message, message ? message : "error", sizeof state->message - 1);
    std::longjmp(state->jump, 1);
}

void OnPngWarning(png_structp, png_const_charp) {}

// Maximum picture size accepted from a file.
constexpr png_uint_32 MaxSide = 1 << 15;

bool DecodeInto(TPngReadSource& src, TPngErrorState& err, TDecodedImage& image,
                std::vector<png_bytep>& rows) {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &err, OnPngError, OnPngWarning);
    if (!png) return false;
    png_infop info = png_create_info_struct(png);
    if (!info) {
        png_destroy_read_struct(&png, nullptr, nullptr);
        return false;
    }
    // Everything between setjmp and the end must not own C++ resources created after it.
    if (setjmp(err.jump)) {
        png_destroy_read_struct(&png, &info, nullptr);
        return false;
    }
    png_set_read_fn(png, &src, ReadFromMemory);
    png_set_user_limits(png, MaxSide, MaxSide);
    png_read_info(png, info);
    const png_byte colorType = png_get_color_type(png, info);
    const bool hasAlpha =
        (colorType & PNG_COLOR_MASK_ALPHA) || png_get_valid(png, info, PNG_INFO_tRNS);
    png_set_expand(png);
    png_set_strip_16(png);
    png_set_gray_to_rgb(png);
    png_set_bgr(png);
    png_set_filler(png, 0xFF, PNG_FILLER_AFTER);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    const auto width = static_cast<int>(png_get_image_width(png, info));
    const auto height = static_cast<int>(png_get_image_height(png, info));
    if (png_get_rowbytes(png, info) != static_cast<png_size_t>(width) * 4)
        png_error(png, "unsupported format");
    if (static_cast<std::int64_t>(width) * height > TPixelBuffer::MaxPixels ||
        static_cast<std::size_t>(height) > rows.size())
        png_error(png, "image too large");
    image.pixels.Resize(width, height, 0);
    image.hasAlpha = hasAlpha;
    for (int y = 0; y < height; ++y)
        rows[static_cast<std::size_t>(y)] = reinterpret_cast<png_bytep>(image.pixels.Row(y));
    png_read_image(png, rows.data());
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    return true;
}

} // namespace

TDecodedImage DecodePng(std::span<const std::uint8_t> data, const std::string& source) {
    static const std::uint8_t signature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    if (data.size() < 8 || std::memcmp(data.data(), signature, 8) != 0)
        throw EInvalidGraphic(source + ": not a PNG image");
    // The header is read once beforehand so the row table can be allocated outside the
    // longjmp region.
    std::uint32_t height = 0;
    if (data.size() >= 24)
        height = (data[20] << 24) | (data[21] << 16) | (data[22] << 8) | data[23];
    if (height == 0 || height > MaxSide) throw EInvalidGraphic(source + ": invalid PNG header");
    std::vector<png_bytep> rows(height);
    TDecodedImage image;
    TPngReadSource src{data, 0};
    TPngErrorState err;
    if (!DecodeInto(src, err, image, rows))
        throw EInvalidGraphic(source + ": corrupt PNG image (" + std::string(err.message) + ")");
    return image;
}

std::vector<std::uint8_t> EncodePng(const TPixelBuffer& pixels, bool withAlpha) {
    std::vector<std::uint8_t> out;
    if (pixels.IsEmpty()) throw EInvalidGraphic("Cannot write an empty image as PNG");
    TPngErrorState err;
    png_structp png =
        png_create_write_struct(PNG_LIBPNG_VER_STRING, &err, OnPngError, OnPngWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info) {
        png_destroy_write_struct(&png, nullptr);
        throw EOutOfResources("PNG encoder unavailable");
    }
    std::vector<png_bytep> rows(static_cast<std::size_t>(pixels.Height()));
    for (int y = 0; y < pixels.Height(); ++y)
        rows[static_cast<std::size_t>(y)] =
            reinterpret_cast<png_bytep>(const_cast<std::uint32_t*>(pixels.Row(y)));
    if (setjmp(err.jump)) {
        png_destroy_write_struct(&png, &info);
        throw EInvalidGraphic("PNG encoding failed: " + std::string(err.message));
    }
    png_set_write_fn(png, &out, WriteToVector, FlushNothing);
    png_set_IHDR(png, info, static_cast<png_uint_32>(pixels.Width()),
                 static_cast<png_uint_32>(pixels.Height()), 8,
                 withAlpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    png_set_bgr(png);
    if (!withAlpha) png_set_filler(png, 0, PNG_FILLER_AFTER);
    png_write_image(png, rows.data());
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return out;
}

} // namespace qv
