#pragma once

#include "base/Result.h"
#include "imaging/icns/IcnsTypes.h"

#include <QByteArray>
#include <QByteArrayView>

/// Stores and fetches elements in a block of icns data, as the platform's icon services do. All integers are
/// big-endian. Of several elements of one type the first counts; all others are kept as they are.
namespace IconFamilyBlock {

/// Replaces the element of `type` by one with `data`, or appends it where the block has no such element.
/// Updates the lengths of the element and of the block. An empty block gets the header first. Damaged where
/// the block is no icns data, TooLarge where its length would not fit into 32 bits, OutOfMemory. After an
/// error the block is unchanged.
Result<Done> setIconFamilyData(QByteArray& block, FourCharCode type, QByteArrayView data);

/// The platform's code for an error of `setIconFamilyData`: -108 where memory is short or the block would
/// become too long, else -50.
qint16 platformStatus(const Error& error);

/// The data of the element of `type`, without its header. Packed colours, which other writers store in
/// 'is32', 'il32', 'ih32' and 'it32', are returned as plain A, R, G, B samples with A = 0. NotFound where
/// there is no such element, Damaged where the block is no icns data or packed colours break off,
/// OutOfMemory.
Result<QByteArray> getIconFamilyData(const QByteArray& block, FourCharCode type);

} // namespace IconFamilyBlock
