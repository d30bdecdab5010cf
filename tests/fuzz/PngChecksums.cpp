// Corrects the checksums of a mutated PNG's chunks. With wrong checksums nearly every file would be refused
// at once.

#include <QtEndian>

#include <zlib.h>

#include <cstdint>
#include <cstring>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maximumSize);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maximumSize,
                                               unsigned int /*seed*/) {
    const std::size_t mutated = LLVMFuzzerMutate(data, size, maximumSize);
    constexpr std::size_t signature = 8;
    constexpr std::size_t around = 12; // a length, a type and a checksum
    for (std::size_t at = signature; at + around <= mutated;) {
        const std::size_t length = qFromBigEndian<quint32>(data + at);
        if (length > mutated - at - around)
            break;
        const auto sum = static_cast<quint32>(crc32(0, data + at + 4, static_cast<uInt>(length + 4)));
        qToBigEndian(sum, data + at + 8 + length);
        at += around + length;
    }
    return mutated;
}
