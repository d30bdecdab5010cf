#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <vector>

/// The file of a project that says which sets it wants: docs/project-file.md.
namespace ProjectFile {

inline constexpr char name[] = "tobrimax.toml";

/// A key that the file may have.
struct Key {
    enum class Kind { Text, Texts, Number, Flag };

    QString name;
    Kind kind = Kind::Text;
    bool isForAll = false; ///< holds for the whole call; not within a set
};

/// The keys of one set with their values as words. A flag that is true has the word "true"; one that is false
/// is left out.
using Set = QMap<QString, QStringList>;

/// Reads the sets, at least one; what stands above the first holds for each. Malformed with the set, the key
/// and the nearest one where a key, a type or the document is wrong.
Result<std::vector<Set>> read(const QByteArray& toml, const std::vector<Key>& keys);

} // namespace ProjectFile
