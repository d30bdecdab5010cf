#include "imaging/png/InflatedPng.h"
#include "tests/support/Refusals.h"

#include <QtEndian>

#include <gtest/gtest.h>
#include <libdeflate.h>

#include <memory>
#include <optional>
#include <vector>

namespace {

struct Chunk {
    QByteArray type;
    QByteArray data;
};

QByteArray bigEndian(std::uint32_t number) {
    const quint32_be bytes(number);
    return {reinterpret_cast<const char*>(&bytes), sizeof bytes};
}

QByteArray chunkBytes(const Chunk& chunk) {
    const QByteArray checked = chunk.type + chunk.data;
    return bigEndian(static_cast<std::uint32_t>(chunk.data.size())) + checked +
           bigEndian(libdeflate_crc32(0, checked.constData(), static_cast<std::size_t>(checked.size())));
}

QByteArray fileOf(const std::vector<Chunk>& chunks) {
    QByteArray file("\x89PNG\r\n\x1a\n", 8);
    for (const Chunk& chunk : chunks)
        file += chunkBytes(chunk);
    return file;
}

std::vector<Chunk> chunksOf(const QByteArray& file) {
    std::vector<Chunk> chunks;
    for (qsizetype at = 8; at < file.size();) {
        const auto length = static_cast<qsizetype>(qFromBigEndian<std::uint32_t>(file.constData() + at));
        chunks.push_back({file.mid(at + 4, 4), file.mid(at + 8, length)});
        at += length + 12;
    }
    return chunks;
}

/// The bytes of `inflated`, read in steps of `step` bytes.
QByteArray allOf(InflatedPng& inflated, qsizetype step) {
    QByteArray all;
    for (;;) {
        QByteArray part(step, 0);
        // It fails where fewer than `step` bytes are left.
        if (!inflated.read(reinterpret_cast<std::uint8_t*>(part.data()), static_cast<std::size_t>(step)))
            return all;
        all += part;
    }
}

/// The joined data of all IDAT chunks.
QByteArray pixelData(const std::vector<Chunk>& chunks) {
    QByteArray data;
    for (const Chunk& chunk : chunks) {
        if (chunk.type == "IDAT")
            data += chunk.data;
    }
    return data;
}

/// The bytes of stored blocks between a zlib stream's header and its checksum; no value where it has other
/// blocks.
std::optional<QByteArray> storedBytes(const QByteArray& stream) {
    QByteArray bytes;
    for (qsizetype at = 2; at + 5 <= stream.size();) {
        const bool isLast = stream[at] == 1;
        const auto length = qFromLittleEndian<std::uint16_t>(stream.constData() + at + 1);
        if (stream[at] > 1 ||
            qFromLittleEndian<std::uint16_t>(stream.constData() + at + 3) + length != 0xffff)
            return std::nullopt;
        bytes += stream.mid(at + 5, length);
        at += 5 + length;
        if (isLast)
            return at + 4 == stream.size() ? std::optional(bytes) : std::nullopt;
    }
    return std::nullopt;
}

QByteArray compressed(const QByteArray& bytes) {
    const std::unique_ptr<libdeflate_compressor, void (*)(libdeflate_compressor*)> compressor(
        libdeflate_alloc_compressor(6), libdeflate_free_compressor);
    const auto size = static_cast<std::size_t>(bytes.size());
    QByteArray stream(static_cast<qsizetype>(libdeflate_zlib_compress_bound(compressor.get(), size)), 0);
    stream.resize(static_cast<qsizetype>(libdeflate_zlib_compress(
        compressor.get(), bytes.constData(), size, stream.data(), static_cast<std::size_t>(stream.size()))));
    return stream;
}

const Chunk header{"IHDR", QByteArray(13, 1)};
const Chunk text{"tEXt", QByteArray("a\0b", 3)};
const Chunk end{"IEND", {}};

QByteArray someBytes(qsizetype size) {
    QByteArray bytes(size, 0);
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i * i / 777);
    return bytes;
}

} // namespace

TEST(InflatedPng, pixels_come_in_stored_blocks_and_all_else_as_it_is) {
    for (const qsizetype size : {0, 1, 1000, 32767, 32768, 32769, 65536, 300000}) {
        const QByteArray bytes = someBytes(size);
        const QByteArray file = fileOf({header, text, {"IDAT", compressed(bytes)}, text, end});
        for (const qsizetype step : {1, 4}) {
            InflatedPng inflated(file);
            const std::vector<Chunk> chunks = chunksOf(allOf(inflated, step));
            ASSERT_GE(chunks.size(), 5U) << size;
            EXPECT_EQ(chunks[0].data, header.data);
            EXPECT_EQ(chunks[1].data, text.data);
            EXPECT_EQ(chunks[chunks.size() - 2].data, text.data);
            EXPECT_EQ(chunks.back().type, "IEND");
            EXPECT_EQ(storedBytes(pixelData(chunks)), bytes) << size;
            EXPECT_FALSE(inflated.isDamaged());
        }
    }
}

TEST(InflatedPng, data_may_come_in_chunks_of_any_length) {
    const QByteArray bytes = someBytes(100000);
    const QByteArray data = compressed(bytes);
    for (const qsizetype length : {1, 2, 3, 77}) {
        std::vector<Chunk> chunks{header};
        for (qsizetype at = 0; at < data.size(); at += length) {
            chunks.push_back({"IDAT", data.mid(at, length)});
            chunks.push_back({"IDAT", {}});
        }
        chunks.push_back(end);
        const QByteArray file = fileOf(chunks);
        InflatedPng inflated(file);
        EXPECT_EQ(storedBytes(pixelData(chunksOf(allOf(inflated, 1)))), bytes) << length;
        EXPECT_FALSE(inflated.isDamaged());
    }
}

TEST(InflatedPng, damage_is_told) {
    const QByteArray data = compressed(someBytes(100000));
    const QByteArray whole = fileOf({header, {"IDAT", data.left(500)}, {"IDAT", data.mid(500)}, end});
    const auto isDamaged = [](const QByteArray& file) {
        InflatedPng inflated(file);
        allOf(inflated, 1);
        return inflated.isDamaged();
    };
    EXPECT_FALSE(isDamaged(whole));
    // The checksums of IHDR, of both IDAT chunks and of IEND.
    const qsizetype headerEnd = 8 + 12 + 13;
    for (const qsizetype at :
         {headerEnd - 1, headerEnd + 12 + 500 - 1, whole.size() - 13, whole.size() - 1}) {
        QByteArray file = whole;
        file[at] = static_cast<char>(file[at] ^ 1);
        EXPECT_TRUE(isDamaged(file)) << at;
    }
    // The chunks are right, but the stream in them is wrong: its header, its blocks or its checksum.
    for (const qsizetype at : {qsizetype{0}, qsizetype{1}, qsizetype{2}, data.size() / 2, data.size() - 1}) {
        QByteArray wrong = data;
        wrong[at] = static_cast<char>(wrong[at] ^ 0x20);
        EXPECT_TRUE(isDamaged(fileOf({header, {"IDAT", wrong}, end}))) << at;
    }
    for (const qsizetype length :
         {qsizetype{0}, qsizetype{1}, data.size() / 2, data.size() - 4, data.size() - 1})
        EXPECT_TRUE(isDamaged(fileOf({header, {"IDAT", data.left(length)}, end}))) << length;
}

TEST(InflatedPng, a_file_that_breaks_off_ends_there) {
    const QByteArray whole = fileOf({header, {"IDAT", compressed(someBytes(100))}, end});
    Refusals::eachBeginning(whole, [&](const QByteArray& file) {
        InflatedPng inflated(file);
        std::vector<std::uint8_t> out(static_cast<std::size_t>(whole.size()) + 1000);
        EXPECT_FALSE(inflated.read(out.data(), out.size()));
    });
}

TEST(InflatedPng, surplus_pixels_are_passed_over) {
    // Very many zeros follow the pixels. They take a thousandth of that in the file.
    constexpr qsizetype many = qsizetype{1} << 26;
    const QByteArray file = fileOf({header, {"IDAT", compressed(QByteArray(many, 0))}, text, end});
    InflatedPng inflated(file);
    std::vector<std::uint8_t> pixels(50000);
    ASSERT_TRUE(inflated.read(pixels.data(), pixels.size()));
    ASSERT_TRUE(inflated.endPixels());
    const QByteArray rest = allOf(inflated, 1);
    EXPECT_LT(rest.size(), 100000);
    EXPECT_TRUE(rest.endsWith(chunkBytes(text) + chunkBytes(end)));
    EXPECT_FALSE(inflated.isDamaged());
}

TEST(InflatedPng, data_behind_the_stream_and_a_second_stream_are_left_to_the_reader) {
    const QByteArray bytes = someBytes(1000);
    const Chunk pixels{"IDAT", compressed(bytes) + "more"};
    const QByteArray file = fileOf({header, pixels, {"IDAT", "and more"}, text, pixels, end});
    InflatedPng inflated(file);
    const std::vector<Chunk> chunks = chunksOf(allOf(inflated, 1));
    ASSERT_EQ(chunks.size(), 5U);
    EXPECT_EQ(storedBytes(chunks[1].data), bytes);
    EXPECT_EQ(chunks[3].data, pixels.data);
}
