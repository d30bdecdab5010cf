#include "cli/InputFile.h"

#include "cli/Terminal.h"
#include "files/PathBytes.h"
#include "files/RegularFile.h"

#include <limits>

int InputFile::fail(const std::string& path, const Error& error) {
    Terminal::error(QStringLiteral("%1: %2").arg(PathBytes::decoded(path), error.sentence));
    return 1;
}

std::optional<QByteArray> InputFile::readIcns(const std::string& path) {
    // An icns file's length is stored in 32 bits in its header.
    constexpr qint64 largest = std::numeric_limits<quint32>::max();
    const auto check = [](const QByteArray& start) -> Result<Done> {
        if (IcnsReader::lengthOf(start))
            return Done{};
        return Error{ErrorCode::UnknownFormat, QStringLiteral("not an icns file")};
    };
    Result<QByteArray> bytes = RegularFile::read(path, largest, check);
    if (bytes)
        return std::move(*bytes);
    fail(path, bytes.error());
    return std::nullopt;
}

std::optional<InputFile::IcnsFile> InputFile::openIcns(const std::string& path) {
    std::optional<QByteArray> bytes = readIcns(path);
    if (!bytes)
        return std::nullopt;
    Result<IcnsReader> reader = IcnsReader::open(*bytes);
    if (reader)
        return IcnsFile{std::move(*bytes), std::move(*reader)};
    fail(path, reader.error());
    return std::nullopt;
}
