// Writes one of the pictures that the comparisons start from:
//   bench_pictures logo|photo|photo-16 SIDE FILE.png|FILE.jpg
// photo-16 is the photo with 16 bits a sample, the lower eight of which are grain.
#include "bench/SourcePicture.h"

#include <png.h>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string_view>
#include <vector>

// after cstdio
#include <jpeglib.h>

namespace {

// Both libraries end the program where something fails.

void writePng(const SourcePicture& picture, int depth, std::FILE* file) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file);
    png_set_IHDR(png, info, static_cast<png_uint_32>(picture.width()),
                 static_cast<png_uint_32>(picture.height()), depth,
                 picture.hasAlpha() ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    std::vector<std::uint8_t> row(4 * static_cast<std::size_t>(picture.width()));
    std::minstd_rand grain;
    std::vector<std::uint8_t> wide;
    for (int y = 0; y < picture.height(); ++y) {
        picture.row(y, row.data());
        wide.clear();
        for (const std::uint8_t sample : row)
            wide.insert(wide.end(), {sample, static_cast<std::uint8_t>(grain() >> 8)});
        png_write_row(png, depth == 16 ? wide.data() : row.data());
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
}

void writeJpeg(const SourcePicture& picture, std::FILE* file) {
    constexpr int quality = 90;
    jpeg_compress_struct jpeg{};
    jpeg_error_mgr errors{};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    jpeg_stdio_dest(&jpeg, file);
    jpeg.image_width = static_cast<JDIMENSION>(picture.width());
    jpeg.image_height = static_cast<JDIMENSION>(picture.height());
    jpeg.input_components = 3;
    jpeg.in_color_space = JCS_RGB;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, quality, TRUE);
    jpeg_start_compress(&jpeg, TRUE);
    std::vector<std::uint8_t> row(3 * static_cast<std::size_t>(picture.width()));
    for (int y = 0; y < picture.height(); ++y) {
        picture.row(y, row.data());
        JSAMPROW rows = row.data();
        jpeg_write_scanlines(&jpeg, &rows, 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
}

} // namespace

int main(int argc, char** argv) {
    const std::string_view kind = argc == 4 ? argv[1] : "";
    const std::string_view number = argc == 4 ? argv[2] : "";
    const std::string_view name = argc == 4 ? argv[3] : "";
    int side = 0;
    const bool isNumber = std::from_chars(number.data(), number.data() + number.size(), side).ptr ==
                          number.data() + number.size();
    const bool isJpeg = name.ends_with(".jpg");
    const bool isWide = kind == "photo-16";
    if ((kind != "logo" && kind != "photo" && !isWide) || !isNumber || side <= 0 ||
        (!isJpeg && !name.ends_with(".png")) || (isJpeg && kind != "photo")) {
        std::fputs(
            "usage: bench_pictures logo|photo|photo-16 SIDE FILE.png|FILE.jpg (JPEG for the photo only)\n",
            stderr);
        return 2;
    }
    std::FILE* file = std::fopen(argv[3], "wb");
    if (file == nullptr) {
        std::perror(argv[3]);
        return 1;
    }
    const SourcePicture picture(kind == "logo" ? SourcePicture::Kind::Logo : SourcePicture::Kind::Photo, side,
                                side);
    if (isJpeg)
        writeJpeg(picture, file);
    else
        writePng(picture, isWide ? 16 : 8, file);
    if (std::fclose(file) != 0) {
        std::perror(argv[3]);
        return 1;
    }
    return 0;
}
