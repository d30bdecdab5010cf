#include "imaging/icns/IconFamilyBlock.h"

#include "base/ByteWriter.h"
#include "base/ShortMemory.h"
#include "imaging/icns/IcnsReader.h"
#include "imaging/icns/IcnsRle.h"

#include <array>
#include <limits>
#include <vector>

namespace {

/// Plain samples from packed red, green and blue.
std::optional<QByteArray> unpacked(const IcnsElementType& type, QByteArrayView packed) {
    if (type.hasLeadingZeros) {
        if (!packed.startsWith(packedStart))
            return std::nullopt;
        packed = packed.sliced(packedStart.size());
    }
    const qsizetype pixels = qsizetype{type.pixelSize} * type.pixelSize;
    QByteArray samples(4 * pixels, '\0');
    std::vector<std::uint8_t> channel(static_cast<std::size_t>(pixels));
    for (const int position : {1, 2, 3}) {
        const std::optional<QByteArrayView> rest = IcnsRle::unpack(packed, channel);
        if (!rest)
            return std::nullopt;
        packed = *rest;
        char* to = samples.data() + position;
        for (const std::uint8_t value : channel) {
            *to = static_cast<char>(value);
            to += 4;
        }
    }
    return samples;
}

/// The block with that element; none where it would become too long.
std::optional<QByteArray> changed(const QByteArray& before, const IcnsReader& reader, FourCharCode type,
                                  QByteArrayView data) {
    const IcnsElement* replaced = reader.element(type);
    // What lies before and after the element's place.
    const qsizetype end = reader.length();
    const qsizetype from =
        replaced != nullptr ? replaced->data.data() - before.constData() - icnsHeaderSize : end;
    const qsizetype to = replaced != nullptr ? from + icnsHeaderSize + replaced->data.size() : end;
    const qsizetype total = from + icnsHeaderSize + data.size() + (end - to);
    if (total > std::numeric_limits<quint32>::max())
        return std::nullopt;
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

} // namespace

IconFamilyBlock::Status IconFamilyBlock::setIconFamilyData(QByteArray& block, FourCharCode type,
                                                           QByteArrayView data) {
    const QByteArray before = block.isEmpty() ? emptyFamily() : block;
    const Result<IcnsReader> reader = IcnsReader::open(before);
    if (!reader)
        return reader.error().code == ErrorCode::TooLarge ? Status::MemoryFull : Status::ParameterError;
    std::optional<QByteArray> after =
        unlessMemoryIsShort([&] { return changed(before, *reader, type, data); });
    if (!after)
        return Status::MemoryFull;
    block = std::move(*after);
    return Status::NoError;
}

namespace {

std::optional<QByteArray> dataOf(const QByteArray& block, FourCharCode type) {
    const Result<IcnsReader> reader = IcnsReader::open(block);
    const IcnsElement* element = reader ? reader->element(type) : nullptr;
    if (element == nullptr)
        return std::nullopt;
    const IcnsElementType* known = icnsElementType(type);
    const QByteArray plain = element->data.toByteArray();
    if (known == nullptr || known->content != IcnsContent::Colors)
        return plain;
    // As the reader has it: what is just as long as plain samples is plain, all else packed. What is longer,
    // and nothing packed, is plain too, with something behind it.
    const qsizetype exact = qsizetype{4} * known->pixelSize * known->pixelSize;
    if (plain.size() == exact)
        return plain;
    if (std::optional<QByteArray> samples = unpacked(*known, element->data))
        return samples;
    return plain.size() > exact ? std::optional(plain) : std::nullopt;
}

} // namespace

std::optional<QByteArray> IconFamilyBlock::getIconFamilyData(const QByteArray& block, FourCharCode type) {
    return unlessMemoryIsShort([&] { return dataOf(block, type); });
}
