#include "imaging/icns/IconFamilyBlock.h"

#include "base/ByteWriter.h"
#include "base/ShortMemory.h"
#include "imaging/icns/IcnsReader.h"
#include "imaging/icns/IcnsRle.h"

#include <array>
#include <limits>
#include <vector>

namespace {

Error damaged(FourCharCode type) {
    return {ErrorCode::Damaged,
            QStringLiteral("the packed samples of the element %1 break off").arg(type.text())};
}

/// Plain samples from packed red, green and blue.
Result<QByteArray> unpacked(const IcnsElementType& type, QByteArrayView packed) {
    if (type.hasLeadingZeros) {
        if (!packed.startsWith(packedStart))
            return damaged(type.code);
        packed = packed.sliced(packedStart.size());
    }
    const qsizetype pixels = qsizetype{type.pixelSize} * type.pixelSize;
    QByteArray samples(4 * pixels, '\0');
    std::vector<std::uint8_t> channel(static_cast<std::size_t>(pixels));
    for (const int position : {1, 2, 3}) {
        const std::optional<QByteArrayView> rest = IcnsRle::unpack(packed, channel);
        if (!rest)
            return damaged(type.code);
        packed = *rest;
        char* to = samples.data() + position;
        for (const std::uint8_t value : channel) {
            *to = static_cast<char>(value);
            to += 4;
        }
    }
    return samples;
}

/// The block after `data` took the place of the element of `type`, or were appended as a new element.
Result<QByteArray> changed(const QByteArray& before, const IcnsReader& reader, FourCharCode type,
                           QByteArrayView data) {
    const IcnsElement* replaced = reader.element(type);
    // The place of the element: [from, to).
    const qsizetype end = reader.length();
    const qsizetype from =
        replaced != nullptr ? replaced->data.data() - before.constData() - icnsHeaderSize : end;
    const qsizetype to = replaced != nullptr ? from + icnsHeaderSize + replaced->data.size() : end;
    const qsizetype total = from + icnsHeaderSize + data.size() + (end - to);
    if (total > std::numeric_limits<quint32>::max())
        return Error{ErrorCode::TooLarge,
                     QStringLiteral("the icon family would become longer than 4 GiB, the most it can hold")};
    QByteArray after;
    after.reserve(total);
    ByteWriter(after)
        .record(icnsHeader(icnsMagic, total))
        .bytes(QByteArrayView(before).sliced(icnsHeaderSize, from - icnsHeaderSize))
        .record(icnsHeader(type, icnsHeaderSize + data.size()))
        .bytes(data)
        .bytes(QByteArrayView(before).sliced(to, end - to));
    return after;
}

QByteArray emptyFamily() {
    QByteArray family;
    ByteWriter(family).record(icnsHeader(icnsMagic, icnsHeaderSize));
    return family;
}

Result<QByteArray> dataOf(const QByteArray& block, FourCharCode type) {
    const Result<IcnsReader> reader = IcnsReader::open(block);
    if (!reader)
        return reader.error();
    const IcnsElement* element = reader->element(type);
    if (element == nullptr)
        return Error{ErrorCode::NotFound, QStringLiteral("there is no element %1").arg(type.text())};
    const IcnsElementType* known = icnsElementType(type);
    const QByteArray plain = element->data.toByteArray();
    if (known == nullptr || known->content != IcnsContent::Colors)
        return plain;
    // Like the reader, this takes data of exactly the length of plain samples as plain, and all others as
    // packed. Longer data that can't be unpacked are plain samples too, with more bytes after them.
    const qsizetype exact = qsizetype{4} * known->pixelSize * known->pixelSize;
    if (plain.size() == exact)
        return plain;
    Result<QByteArray> samples = unpacked(*known, element->data);
    const bool isPlain = !samples && samples.error().code == ErrorCode::Damaged && plain.size() > exact;
    return isPlain ? plain : samples;
}

} // namespace

Result<Done> IconFamilyBlock::setIconFamilyData(QByteArray& block, FourCharCode type, QByteArrayView data) {
    return unlessMemoryIsShort([&]() -> Result<Done> {
        const QByteArray before = block.isEmpty() ? emptyFamily() : block;
        const Result<IcnsReader> reader = IcnsReader::open(before);
        if (!reader)
            return reader.error();
        Result<QByteArray> after = changed(before, *reader, type, data);
        if (!after)
            return after.error();
        block = std::move(*after);
        return Done{};
    });
}

qint16 IconFamilyBlock::platformStatus(const Error& error) {
    constexpr qint16 parameterError = -50;
    constexpr qint16 memoryFull = -108;
    const bool isFull = error.code == ErrorCode::OutOfMemory || error.code == ErrorCode::TooLarge;
    return isFull ? memoryFull : parameterError;
}

Result<QByteArray> IconFamilyBlock::getIconFamilyData(const QByteArray& block, FourCharCode type) {
    return unlessMemoryIsShort([&] { return dataOf(block, type); });
}
