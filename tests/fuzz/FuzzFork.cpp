// Reads any bytes as a resource fork and as an AppleDouble file. What was read is written and read again.

#include "platform/forks/AppleDouble.h"
#include "platform/forks/ResourceFork.h"
#include "tests/fuzz/Require.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (Result<ResourceFork> fork = ResourceFork::parse(bytes)) {
        const Result<QByteArray> written = fork->data();
        // Names may share bytes in a file. Written separately, they may need more room than the format has.
        if (!written)
            return 0;
        const Result<ResourceFork> again = ResourceFork::parse(*written);
        require(again && again->resources().size() == fork->resources().size());
        require(*again->data() == *written);
        for (const Resource& resource : fork->resources())
            require(again->resource(resource.type, resource.number) != nullptr);
    }
    if (Result<AppleDouble> file = AppleDouble::parse(bytes)) {
        const FinderInfo info = file->finderInfo();
        const QByteArray fork = file->resourceFork();
        const Result<AppleDouble> again = AppleDouble::parse(file->data());
        require(again && again->finderInfo() == info && again->resourceFork() == fork);
        require(again->data() == file->data());
        file->setResourceFork("fork");
        file->setFinderInfo(info);
        const Result<AppleDouble> changed = AppleDouble::parse(file->data());
        require(changed && changed->finderInfo() == info && changed->resourceFork() == "fork");
    }
    return 0;
}
