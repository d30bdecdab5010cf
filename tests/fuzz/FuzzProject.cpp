// Reads any bytes as a tobrimax.toml. There is at least one set, with known keys alone, or a sentence.

#include "project/ProjectFile.h"
#include "tests/fuzz/Require.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using Kind = ProjectFile::Key::Kind;
    static const std::vector<ProjectFile::Key> keys{{QStringLiteral("picture"), Kind::Texts, false},
                                                    {QStringLiteral("out"), Kind::Text, false},
                                                    {QStringLiteral("border"), Kind::Number, false},
                                                    {QStringLiteral("open"), Kind::Flag, false},
                                                    {QStringLiteral("json"), Kind::Flag, true}};
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const Result<std::vector<ProjectFile::Set>> sets = ProjectFile::read(bytes, keys);
    if (!sets) {
        require(!sets.error().sentence.isEmpty());
        return 0;
    }
    require(!sets->empty());
    for (const ProjectFile::Set& set : *sets) {
        require(set.size() <= static_cast<qsizetype>(keys.size()));
        for (const QStringList& words : set)
            require(!words.isEmpty());
    }
    return 0;
}
