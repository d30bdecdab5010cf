#pragma once

#include "base/Result.h"
#include "files/RegularFile.h"
#include "imaging/icns/IcnsReader.h"

#include <QByteArray>

#include <optional>
#include <string>

/// Reads the input files of commands and reports errors. Paths are in the file system's own encoding.
namespace InputFile {

/// Prints the error and returns the exit status 1.
int fail(const std::string& path, const Error& error);

/// An icns file's bytes and their reader.
struct IcnsFile {
    QByteArray bytes;
    IcnsReader reader;
};

/// Opens an icns file. If it can't be read or is not an icns file, prints the error and returns no value.
std::optional<IcnsFile> openIcns(const std::string& path);

/// The bytes of a file that begins like an icns file, up to the length in its header. Fails if it can't be
/// read or does not begin so.
Result<RegularFile::Part> readIcns(const std::string& path);

} // namespace InputFile
