#include "cli/common/InputFile.h"

#include "cli/text/Terminal.h"
#include "files/PathBytes.h"

#include <limits>

int InputFile::fail(const std::string& path, const Error& error) {
    Terminal::error(QStringLiteral("%1: %2").arg(PathBytes::decoded(path), error.sentence));
    return 1;
}

Result<RegularFile::Part> InputFile::readIcns(const std::string& path) {
    // An icns file's length is stored in 32 bits in its header.
    constexpr qint64 largest = std::numeric_limits<quint32>::max();
    return RegularFile::readPart(path, largest, IcnsReader::lengthToRead);
}

std::optional<InputFile::IcnsFile> InputFile::openIcns(const std::string& path) {
    Result<RegularFile::Part> file = readIcns(path);
    if (!file) {
        fail(path, file.error());
        return std::nullopt;
    }
    Result<IcnsReader> reader = IcnsReader::open(file->bytes);
    if (reader)
        return IcnsFile{std::move(file->bytes), std::move(*reader)};
    fail(path, reader.error());
    return std::nullopt;
}
