#pragma once

#include "base/Result.h"
#include "imaging/icns/IcnsEncoding.h"

#include <QByteArray>
#include <QStringList>

#include <vector>

/// A description of an icns file, without its pictures.
struct IcnsInspection {
    struct Element {
        FourCharCode type;
        IcnsPictureInfo info;    ///< Unknown and without a size for types that hold no picture or mask
        qsizetype bytes = 0;     ///< of the data
        bool isRepeated = false; ///< an element of the same type stands before it, and counts instead
        QStringList remarks;     ///< sentences about other odd things
    };

    std::vector<Element> elements; ///< in the file's order
    QStringList remarks;           ///< about the whole file
};

/// Takes time in proportion to the number of elements: only the first element of each type is looked into,
/// and PNG and JPEG 2000 files are not decoded. `fileSize` is that of the whole file, which may be longer
/// than `bytes`. Damaged as IcnsReader::open.
Result<IcnsInspection> inspectIcns(const QByteArray& bytes, qint64 fileSize);
/// The same for a whole file in `bytes`.
Result<IcnsInspection> inspectIcns(const QByteArray& bytes);

/// A description of a type for people.
QString icnsTypeDescription(FourCharCode type);

/// The name of an encoding for people.
QString icnsEncodingName(IcnsEncoding encoding);
