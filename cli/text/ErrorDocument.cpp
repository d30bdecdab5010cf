#include "cli/text/ErrorDocument.h"

QString ErrorDocument::codeName(ErrorCode code) {
    switch (code) {
    case ErrorCode::NotFound:
        return QStringLiteral("not-found");
    case ErrorCode::NotReadable:
        return QStringLiteral("not-readable");
    case ErrorCode::NotWritable:
        return QStringLiteral("not-writable");
    case ErrorCode::NotAPath:
        return QStringLiteral("not-a-path");
    case ErrorCode::UnknownFormat:
        return QStringLiteral("unknown-format");
    case ErrorCode::Unsupported:
        return QStringLiteral("unsupported");
    case ErrorCode::Damaged:
        return QStringLiteral("damaged");
    case ErrorCode::TooLarge:
        return QStringLiteral("too-large");
    case ErrorCode::TakesTooLong:
        return QStringLiteral("takes-too-long");
    case ErrorCode::Malformed:
        return QStringLiteral("malformed");
    case ErrorCode::EmptySize:
        return QStringLiteral("empty-size");
    case ErrorCode::OutOfMemory:
        return QStringLiteral("out-of-memory");
    case ErrorCode::DiskFull:
        return QStringLiteral("disk-full");
    }
    return {};
}

ToldError ErrorDocument::told(const QString& path, const Error& error) {
    return {path, codeName(error.code), error.sentence};
}

void ErrorDocument::writeMember(JsonWriter& json, const std::vector<ToldError>& errors) {
    json.key("errors").beginArray();
    for (const ToldError& error : errors) {
        json.beginObject();
        json.key("path").value(error.path);
        json.key("code").value(error.code);
        json.key("sentence").value(error.sentence);
        json.endObject();
    }
    json.endArray();
}

bool ErrorDocument::print(const ToldError& error) {
    JsonWriter json;
    json.beginObject();
    writeMember(json, {error});
    json.endObject();
    return json.finish();
}
