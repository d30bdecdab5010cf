#pragma once

#include "base/Result.h"
#include "imaging/icns/IcnsTypes.h"

#include <QByteArray>
#include <QByteArrayView>

/// Elements in a block of icns data, as the platform's icon services store and fetch them. All integers are
/// big-endian; of several elements of one type the first counts; all others are kept as they are.
namespace IconFamilyBlock {

/// Puts `data` in the place of the element of that type, or after the others where there is none, and
/// rewrites both lengths. An empty block becomes the header first. Damaged where the block is no icns data,
/// TooLarge where it would become longer than its length can tell, OutOfMemory; the block stays as it is
/// then.
Result<Done> setIconFamilyData(QByteArray& block, FourCharCode type, QByteArrayView data);

/// The platform's code for an error of `setIconFamilyData`: -108 where memory is short or the block would
/// become too long, else -50.
qint16 platformStatus(const Error& error);

/// The data of the element of that type, without its header; packed colours ('is32', 'il32', 'ih32', 'it32'
/// of other writers) as plain A, R, G, B samples with A = 0. NotFound where there is no such element, Damaged
/// where the block is no icns data or packed colours break off, OutOfMemory.
Result<QByteArray> getIconFamilyData(const QByteArray& block, FourCharCode type);

} // namespace IconFamilyBlock
