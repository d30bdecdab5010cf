#pragma once

#include "base/Result.h"
#include "cli/text/JsonWriter.h"

#include <QString>

#include <vector>

/// An error as JSON documents tell it.
struct ToldError {
    QString path; ///< what can't be read or written; empty if the error is not about one file or folder
    QString code; ///< of `ErrorDocument::codeName`, or `ErrorDocument::wrongUsage`
    QString sentence;
};

/// The errors in JSON documents.
namespace ErrorDocument {

/// The code of a command line that can't be understood.
inline constexpr char wrongUsage[] = "wrong-usage";

/// A code's name for programs, "not-found" for instance. The names stay from version to version.
QString codeName(ErrorCode code);

ToldError told(const QString& path, const Error& error);

/// Writes the member "errors".
void writeMember(JsonWriter& json, const std::vector<ToldError>& errors);

/// Prints a document that has nothing but this error. False if it could not be printed.
bool print(const ToldError& error);

} // namespace ErrorDocument
