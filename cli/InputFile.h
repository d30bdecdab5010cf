#pragma once

#include "base/Result.h"
#include "imaging/icns/IcnsReader.h"

#include <QByteArray>

#include <optional>
#include <string>

/// Files that commands read, named in the file system's own bytes, and what is said where they can't.
namespace InputFile {

/// Tells the error and returns the exit status that goes with it.
int fail(const std::string& path, const Error& error);

/// An icns file and the reader of its bytes.
struct IcnsFile {
    QByteArray bytes;
    IcnsReader reader;
};

/// A whole icns file. No value where it can't be read or is none, which is told.
std::optional<IcnsFile> openIcns(const std::string& path);

/// The bytes of a file that begins as an icns file. No value where it can't be read or is none, which is
/// told.
std::optional<QByteArray> readIcns(const std::string& path);

} // namespace InputFile
