#pragma once

#include "base/Result.h"
#include "files/RegularFile.h"
#include "imaging/icns/IcnsReader.h"
#include "imaging/io/ImageSource.h"

#include <QByteArray>

#include <optional>
#include <string>

/// Reads the input files of commands and reports errors. Paths are in the file system's own encoding; "-" is
/// standard input, which is read once and kept.
namespace InputFile {

/// Whether the word stands for standard input.
bool isStandardInput(const std::string& path);

/// The path for people.
QString shown(const std::string& path);

/// The picture at `path`, or on standard input. If `isTold`, a terminal is told after half a second what is
/// read.
Result<LoadedPicture> loadPicture(const std::string& path, const LoadOptions& options = {},
                                  bool isTold = true);

/// The bytes of the file at `path`, or of the picture on standard input.
Result<QByteArray> read(const std::string& path, qint64 maximumBytes);

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
