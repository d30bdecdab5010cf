#pragma once

#include "imaging/icns/IcnsTypes.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

/// Elements in a block of icns data, as the platform's icon services store and fetch them. All integers are
/// big-endian; of several elements of one type the first counts; all others are kept as they are.
namespace IconFamilyBlock {

/// The result of a store; the platform's 16-bit error codes.
enum class Status : qint16 {
    NoError = 0,
    ParameterError = -50, ///< the block is no icns data: it is left as it is
    MemoryFull = -108,    ///< memory is short, or it would become longer than its length can tell
};

/// Puts `data` in the place of the element of that type, or after the others where there is none, and
/// rewrites both lengths. An empty block becomes the header first.
Status setIconFamilyData(QByteArray& block, FourCharCode type, QByteArrayView data);

/// The data of the element of that type, without its header; packed colours ('is32', 'il32', 'ih32', 'it32'
/// of other writers) as plain A, R, G, B samples with A = 0. No value where there is no such element, the
/// block is no icns data, packed colours break off, or memory is short.
std::optional<QByteArray> getIconFamilyData(const QByteArray& block, FourCharCode type);

} // namespace IconFamilyBlock
