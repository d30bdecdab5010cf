#include "cli/common/InputFile.h"

#include "cli/text/ReadingNote.h"
#include "cli/text/Terminal.h"
#include "files/PathBytes.h"
#include "files/StandardInput.h"
#include "imaging/io/PictureFormat.h"

#include <algorithm>
#include <limits>

namespace {

/// Standard input. Of what is no picture, only the beginning.
const Result<QByteArray>& standardInput() {
    static const Result<QByteArray> bytes =
        StandardInput::read(ImageSource::maximumFile,
                            [](const QByteArray& start) { return PictureFormats::find(start) != nullptr; });
    return bytes;
}

} // namespace

bool InputFile::isStandardInput(const std::string& path) {
    return path == "-";
}

QString InputFile::shown(const std::string& path) {
    return isStandardInput(path) ? QStringLiteral("standard input") : PathBytes::decoded(path);
}

Result<LoadedPicture> InputFile::loadPicture(const std::string& path, const LoadOptions& options,
                                             bool isTold) {
    const ReadingNote note(shown(path), isTold);
    if (!isStandardInput(path))
        return ImageSource::loadFile(path, options);
    const Result<QByteArray>& bytes = standardInput();
    return bytes ? ImageSource::load(*bytes, options) : bytes.error();
}

Result<QByteArray> InputFile::read(const std::string& path, qint64 maximumBytes) {
    return isStandardInput(path) ? standardInput() : RegularFile::read(path, maximumBytes);
}

int InputFile::fail(const std::string& path, const Error& error) {
    Terminal::error(about(shown(path), error).sentence);
    return 1;
}

Result<RegularFile::Part> InputFile::readIcns(const std::string& path) {
    // An icns file's length is stored in 32 bits in its header.
    constexpr qint64 largest = std::numeric_limits<quint32>::max();
    if (!isStandardInput(path))
        return RegularFile::readPart(path, largest, IcnsReader::lengthToRead);
    const Result<QByteArray>& bytes = standardInput();
    if (!bytes)
        return bytes.error();
    const Result<qint64> length = IcnsReader::lengthToRead(*bytes);
    if (!length)
        return length.error();
    return RegularFile::Part{bytes->first(std::min<qint64>(*length, bytes->size())), bytes->size()};
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
