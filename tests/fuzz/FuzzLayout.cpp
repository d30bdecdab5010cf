// Reads any bytes as a layout file. The templates of a valid one can be filled, or say what is wrong with
// them; its paths stay in the folder.

#include "layouts/LayoutReader.h"
#include "layouts/LayoutTemplate.h"
#include "tests/fuzz/Require.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const Result<ReadLayout> read = readLayout(QStringLiteral("fuzz"), bytes);
    if (!read) {
        require(!read.error().sentence.isEmpty());
        return 0;
    }
    const std::vector<LayoutFile>& files = read->layout.files;
    for (const LayoutFile& file : files) {
        require(!file.path.startsWith(u'/') && !file.path.split(u'/').contains(QStringLiteral("..")));
        for (const QSize& pixels : file.sizes)
            require(!pixels.isEmpty());
        const bool isChecked = static_cast<bool>(checkTemplate(file, files));
        const Result<QByteArray> text = filledTemplate(file, files, {}, {QStringLiteral("name"), {}});
        require(isChecked == static_cast<bool>(text));
    }
    return 0;
}
