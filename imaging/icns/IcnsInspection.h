#pragma once

#include "base/Result.h"
#include "imaging/icns/IcnsEncoding.h"

#include <QByteArray>
#include <QStringList>

#include <vector>

/// What is to be told of an icns file without showing its pictures.
struct IcnsInspection {
    struct Element {
        FourCharCode type;
        IcnsPictureInfo info;    ///< Unknown, and no size, of types that hold no picture or mask
        qsizetype bytes = 0;     ///< of the data
        bool isRepeated = false; ///< another of its type stands before it, which is the one that counts
        QStringList remarks;     ///< sentences about what else is odd
    };

    std::vector<Element> elements; ///< in the file's order
    QStringList remarks;           ///< about the whole file
};

/// Takes time in proportion to the number of elements: of several elements of one type only the first is
/// looked into, and files inside are not decoded. Damaged as IcnsReader::open.
Result<IcnsInspection> inspectIcns(const QByteArray& bytes);

/// What a type stands for, for people.
QString icnsTypeDescription(FourCharCode type);

/// The encoding, for people.
QString icnsEncodingName(IcnsEncoding encoding);
