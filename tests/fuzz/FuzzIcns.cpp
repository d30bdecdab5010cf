// Reads any bytes as an icns file, inspects it, and decodes every picture.

#include "imaging/icns/IcnsInspection.h"
#include "imaging/icns/IcnsReader.h"
#include "tests/fuzz/Require.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const Result<IcnsReader> reader = IcnsReader::open(bytes);
    const Result<IcnsInspection> inspection = inspectIcns(bytes);
    require(reader.operator bool() == inspection.operator bool());
    if (!reader)
        return 0;
    require(inspection->elements.size() == reader->elements().size());
    const Result<std::vector<IcnsElement>> elements = reader->pictureElements();
    require(elements.operator bool());
    for (const IcnsElement& element : *elements) {
        const Result<DecodedPicture> picture = reader->picture(element);
        require(!picture || !picture->raster.isNull());
        const Result<QImage> samples = reader->samples(element);
        require(!samples || samples->size() == picture->raster.size());
    }
    return 0;
}
