#pragma once

#include "base/Result.h"

#include <QString>

/// `path` as a file URL for log lines: percent-encoded, with a trailing slash for an existing folder.
QString fileUrlText(const QString& path);

/// `path` with its percent escapes replaced. An escape is a percent sign and two hexadecimal digits; its
/// bytes are read as UTF-8. Any other percent sign stays. NotAPath if the result holds a NUL or invalid
/// UTF-8.
Result<QString> replacingPercentEscapes(const QString& path);

/// `path` without its last component: "/a/b" gives "/a", "/a" gives "/", "a" gives "".
QString deletingLastPathComponent(const QString& path);

/// The last component of `path`: "b" of "/a/b" and of "/a/b/".
QString lastPathComponent(const QString& path);

/// `path` and `component` with exactly one slash where they meet.
QString appendingPathComponent(const QString& path, const QString& component);

/// The last component of `path` without its ending: "b" of "/a/b.png". "." and ".." are never names.
QString nameWithoutEnding(const QString& path);
