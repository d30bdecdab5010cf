#include "imaging/deflate/Deflate.h"

#include <QtEndian>

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <set>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
constexpr Deflate::Method methods[] = {Deflate::Method::Runs, Deflate::Method::Quick, Deflate::Method::Greedy,
                                       Deflate::Method::Thorough};

Bytes noise(std::size_t size) {
    std::mt19937 random(3);
    Bytes bytes(size);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    return bytes;
}

Bytes repetitive(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(i % 97 * (i / 5000));
    return bytes;
}

/// Decompresses with zlib, which accepts only one whole stream with a right checksum.
Bytes inflated(const QByteArray& stream, std::size_t size) {
    QByteArray sized(4, 0);
    qToBigEndian(static_cast<quint32>(size), sized.data());
    const QByteArray bytes = qUncompress(sized + stream);
    return {bytes.begin(), bytes.end()};
}

} // namespace

TEST(Deflate, every_method_gives_zlib_streams) {
    for (const Deflate::Method method : methods) {
        for (const std::size_t size : {1UL, 2UL, 255UL, 65535UL, 65536UL, 1000000UL}) {
            for (const Bytes& bytes : {noise(size), repetitive(size)}) {
                QByteArray stream;
                ASSERT_TRUE(Deflate::append(stream, bytes, method));
                EXPECT_EQ(stream.at(0) & 0x0f, 8) << "deflate";
                EXPECT_EQ(inflated(stream, size), bytes) << size;
            }
        }
    }
}

TEST(Deflate, what_was_there_stays_in_front) {
    const Bytes bytes = repetitive(30000);
    for (const Deflate::Method method : methods) {
        QByteArray alone;
        ASSERT_TRUE(Deflate::append(alone, bytes, method));
        QByteArray behind("front");
        ASSERT_TRUE(Deflate::append(behind, bytes, method));
        EXPECT_EQ(behind, "front" + alone);
        EXPECT_EQ(*Deflate::length(bytes, method), static_cast<std::size_t>(alone.size()));
    }
}

TEST(Deflate, nothing_is_a_stream_too) {
    for (const Deflate::Method method : methods) {
        QByteArray stream;
        ASSERT_TRUE(Deflate::append(stream, {}, method));
        EXPECT_EQ(qFromBigEndian<quint16>(stream.constData()) % 31, 0) << "the header's own check";
        EXPECT_EQ(stream.last(4), QByteArray::fromHex("00000001")) << "the checksum of nothing";
        EXPECT_TRUE(inflated(stream, 0).empty());
    }
}

TEST(Deflate, noise_grows_by_little) {
    const Bytes bytes = noise(300000);
    for (const Deflate::Method method : methods)
        EXPECT_LT(*Deflate::length(bytes, method), bytes.size() + bytes.size() / 100);
}

TEST(Deflate, the_same_bytes_give_the_same_stream) {
    const Bytes bytes = repetitive(200000);
    for (const Deflate::Method method : methods) {
        QByteArray first;
        QByteArray second;
        ASSERT_TRUE(Deflate::append(first, bytes, method));
        ASSERT_TRUE(Deflate::append(second, Bytes(bytes), method));
        EXPECT_EQ(first, second);
    }
}

TEST(Deflate, the_stream_does_not_depend_on_where_the_memory_is) {
    // The bytes from the first, the second and the third place on are repeated later, and little else is. So
    // the result shows what a compressor's table holds for these places. There are only 16 values, or else
    // the bytes would be stored.
    Bytes bytes = noise(400);
    for (std::uint8_t& byte : bytes)
        byte %= 16;
    std::copy_n(bytes.begin(), 6, bytes.begin() + 100);
    std::copy_n(bytes.begin() + 1, 6, bytes.begin() + 200);
    std::copy_n(bytes.begin() + 2, 6, bytes.begin() + 300);
    for (const Deflate::Method method : methods) {
        std::set<QByteArray> streams;
        // Each kept block moves the memory that is allocated after it.
        std::vector<std::unique_ptr<char[]>> kept;
        for (int i = 0; i < 8192; ++i) {
            kept.push_back(std::make_unique_for_overwrite<char[]>(std::size_t{64} << 10));
            QByteArray stream;
            ASSERT_TRUE(Deflate::append(stream, bytes, method));
            streams.insert(stream);
        }
        EXPECT_EQ(streams.size(), 1U) << static_cast<int>(method);
    }
}

TEST(Deflate, thorough_is_smaller_where_there_are_repetitions) {
    const Bytes repeated = repetitive(200000);
    EXPECT_LT(*Deflate::length(repeated, Deflate::Method::Thorough),
              *Deflate::length(repeated, Deflate::Method::Quick));
    EXPECT_LT(*Deflate::length(repeated, Deflate::Method::Quick),
              *Deflate::length(repeated, Deflate::Method::Runs));
}
