// Takes any bytes as a block of icns data, stores an element in it, and fetches it back.

#include "imaging/icns/IcnsReader.h"
#include "imaging/icns/IconFamilyBlock.h"
#include "tests/fuzz/Require.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The first bytes choose the type and how much of the others is stored.
    if (size < 6)
        return 0;
    const FourCharCode type(qFromBigEndian<quint32>(data));
    const QByteArray bytes(reinterpret_cast<const char*>(data) + 6, static_cast<qsizetype>(size) - 6);
    const QByteArray value = bytes.right(qFromBigEndian<quint16>(data + 4));
    for (const QByteArray& before : {QByteArray(), bytes}) {
        QByteArray block = before;
        if (!IconFamilyBlock::setIconFamilyData(block, type, value)) {
            require(block == before);
            continue;
        }
        // The stored element is there, and no other element has changed.
        const Result<IcnsReader> after = IcnsReader::open(block);
        require(after && after->length() == block.size());
        require(after->element(type)->data == value);
        const Result<IcnsReader> old = IcnsReader::open(before);
        const std::size_t count = old ? old->elements().size() : 0;
        require(after->elements().size() >= count && after->elements().size() <= count + 1);
        bool isReplaced = false;
        for (std::size_t i = 0; i < count; ++i) {
            const IcnsElement& element = old->elements()[i];
            require(after->elements()[i].type == element.type);
            const bool isFirst = element.type == type && !isReplaced;
            isReplaced = isReplaced || isFirst;
            require(after->elements()[i].data == (isFirst ? QByteArrayView(value) : element.data));
        }
        const Result<QByteArray> fetched = IconFamilyBlock::getIconFamilyData(block, type);
        require(icnsElementType(type) != nullptr || (fetched && *fetched == value));
    }
    return 0;
}
