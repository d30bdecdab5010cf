#include "imaging/deflate/ByteCodes.h"

#if defined(__x86_64__)
// GCC takes its own header's undefined vectors for mistakes.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuninitialized"
#ifndef __clang__
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include <immintrin.h>
#pragma GCC diagnostic pop
#endif

namespace {

bool hasVectors() {
#if defined(__x86_64__)
    static const bool has = [] {
        __builtin_cpu_init();
        return __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512bw") != 0 &&
               __builtin_cpu_supports("avx512vbmi") != 0 && __builtin_cpu_supports("bmi2") != 0;
    }();
    return has;
#else
    return false;
#endif
}

} // namespace

// The tables are only filled where they are needed.
ByteCodes::ByteCodes(std::span<const PrefixCode::Code, byteCount> codes)
    : m_codes(codes), m_hasVectors(hasVectors()) {
    if (!m_hasVectors)
        return;
    for (std::size_t i = 0; i < byteCount; ++i) {
        m_tables.lengths[i] = static_cast<std::uint8_t>(codes[i].length);
        m_tables.low[i] = static_cast<std::uint8_t>(codes[i].bits & 0xffU);
        m_tables.high[i] = static_cast<std::uint8_t>(codes[i].bits >> 8U);
    }
}

#if defined(__x86_64__)

// What each of Highway's sets of instructions lacks: a table of 256 bytes looked up 64 times at once.
#define WITH_VECTORS __attribute__((target("avx512f,avx512bw,avx512vbmi,bmi2")))

namespace {

constexpr std::size_t vectorLength = 64;

struct Table {
    __m512i parts[4];
};

WITH_VECTORS inline Table loaded(const std::array<std::uint8_t, ByteCodes::byteCount>& table) {
    const auto part = [&](std::size_t i)
                          WITH_VECTORS { return _mm512_load_si512(table.data() + vectorLength * i); };
    return {{part(0), part(1), part(2), part(3)}};
}

/// The table's values at 64 indices, of which `isUpper` tells those from 128 on.
WITH_VECTORS inline __m512i looked(const Table& table, __m512i indices, __mmask64 isUpper) {
    return _mm512_mask_blend_epi8(isUpper, _mm512_permutex2var_epi8(table.parts[0], indices, table.parts[1]),
                                  _mm512_permutex2var_epi8(table.parts[2], indices, table.parts[3]));
}

/// Codes in words of 64 bits, and their lengths.
struct Words {
    __m512i bits;
    __m512i lengths;
};

/// Of two codes in words of `Bits` bits, the second one in the upper half, one.
WITH_VECTORS inline Words joinedHalves32(Words halves) {
    const __m512i low = _mm512_set1_epi32(0xffff);
    const __m512i firstLength = _mm512_and_si512(halves.lengths, low);
    return {_mm512_or_si512(_mm512_and_si512(halves.bits, low),
                            _mm512_sllv_epi32(_mm512_srli_epi32(halves.bits, 16), firstLength)),
            _mm512_add_epi32(firstLength, _mm512_srli_epi32(halves.lengths, 16))};
}

WITH_VECTORS inline Words joinedHalves64(Words halves) {
    const __m512i low = _mm512_set1_epi64(0xffffffff);
    const __m512i firstLength = _mm512_and_si512(halves.lengths, low);
    return {_mm512_or_si512(_mm512_and_si512(halves.bits, low),
                            _mm512_sllv_epi64(_mm512_srli_epi64(halves.bits, 32), firstLength)),
            _mm512_add_epi64(firstLength, _mm512_srli_epi64(halves.lengths, 32))};
}

/// Fours of codes and their lengths, made by vectors before they are written.
struct Fours {
    static constexpr std::size_t most = 256;
    alignas(vectorLength) std::array<std::uint64_t, most> bits;
    alignas(vectorLength) std::array<std::uint64_t, most> lengths;
};

WITH_VECTORS inline void store(Fours& fours, std::size_t at, const Words& first, const Words& second) {
    // Of each 16 bytes `first` has the former eight, `second` the others.
    const __m512i former = _mm512_setr_epi64(0, 1, 8, 9, 2, 3, 10, 11);
    const __m512i latter = _mm512_setr_epi64(4, 5, 12, 13, 6, 7, 14, 15);
    _mm512_store_si512(&fours.bits[at], _mm512_permutex2var_epi64(first.bits, former, second.bits));
    _mm512_store_si512(&fours.bits[at + 8], _mm512_permutex2var_epi64(first.bits, latter, second.bits));
    _mm512_store_si512(&fours.lengths[at], _mm512_permutex2var_epi64(first.lengths, former, second.lengths));
    _mm512_store_si512(&fours.lengths[at + 8],
                       _mm512_permutex2var_epi64(first.lengths, latter, second.lengths));
}

} // namespace

WITH_VECTORS BitWriter ByteCodes::writeVectors(BitWriter writer, const Tables& tables,
                                               const std::uint8_t* bytes, std::size_t size) {
    const Table lengthTable = loaded(tables.lengths);
    const Table lowTable = loaded(tables.low);
    const Table highTable = loaded(tables.high);
    const __m512i zero = _mm512_setzero_si512();
    Fours fours;
    while (size >= vectorLength) {
        std::size_t count = 0;
        for (; size >= vectorLength && count < Fours::most; count += vectorLength / 4) {
            const __m512i indices = _mm512_loadu_si512(bytes);
            const __mmask64 isUpper = _mm512_movepi8_mask(indices);
            const __m512i lengths = looked(lengthTable, indices, isUpper);
            const __m512i low = looked(lowTable, indices, isUpper);
            const __m512i high = looked(highTable, indices, isUpper);
            const auto joined = [](__m512i bits, __m512i lengthWords) WITH_VECTORS {
                return joinedHalves64(joinedHalves32({bits, lengthWords}));
            };
            store(fours, count, joined(_mm512_unpacklo_epi8(low, high), _mm512_unpacklo_epi8(lengths, zero)),
                  joined(_mm512_unpackhi_epi8(low, high), _mm512_unpackhi_epi8(lengths, zero)));
            bytes += vectorLength;
            size -= vectorLength;
        }
        for (std::size_t i = 0; i < count; ++i) {
            writer.put(fours.bits[i], static_cast<unsigned>(fours.lengths[i]));
            writer.flush();
        }
    }
    return writer;
}

#else

BitWriter ByteCodes::writeVectors(BitWriter writer, const Tables& /*tables*/, const std::uint8_t* /*bytes*/,
                                  std::size_t /*size*/) {
    return writer;
}

#endif
