#include "layouts/LayoutVariables.h"

#include "files/FilePath.h"
#include "files/PathBytes.h"
#include "files/RegularFile.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QRegularExpression>

#include <algorithm>

namespace {

using Values = QMap<QString, QString>;

/// The part of the first folder's path that stands for the * of `pattern`.
QString folderValue(const QString& out, const QString& pattern, const QString& fallback) {
    // The component that has the *, and what comes before and behind it.
    const qsizetype star = pattern.indexOf(u'*');
    const qsizetype begin = pattern.lastIndexOf(u'/', star) + 1;
    const qsizetype slash = pattern.indexOf(u'/', star);
    const QString component = pattern.mid(begin, slash < 0 ? -1 : slash - begin);
    const QString behind = slash < 0 ? QString() : pattern.mid(slash);
    const QDir folder(appendingPathComponent(out, pattern.left(begin)));
    for (const QString& entry :
         folder.entryList({component}, QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        if (QDir(folder.filePath(entry) + behind).exists())
            return entry.mid(star - begin, entry.size() - component.size() + 1);
    }
    return fallback;
}

/// The first group of the first match in the file at `path`.
QString fileValue(const QString& path, const QString& pattern, const QString& fallback) {
    constexpr qint64 mostBytes = 4 << 20;
    const Result<QByteArray> bytes = RegularFile::read(PathBytes::encoded(path).toStdString(), mostBytes);
    if (!bytes)
        return fallback;
    const QRegularExpressionMatch match = QRegularExpression(pattern).match(QString::fromUtf8(*bytes));
    return match.hasMatch() ? match.captured(1) : fallback;
}

/// Whether the value stays in its folder. It may have several components.
bool isPathPart(const QString& value) {
    const QStringList components = value.split(u'/');
    return !value.contains(QChar::Null) && std::ranges::none_of(components, [](const QString& component) {
        return component.isEmpty() || component == QLatin1String(".") || component == QLatin1String("..");
    });
}

Result<Done> replace(QString& path, const Values& values) {
    for (qsizetype begin = path.indexOf(u'{'); begin >= 0; begin = path.indexOf(u'{', begin)) {
        const qsizetype end = path.indexOf(u'}', begin);
        if (end < 0)
            break;
        const QString name = path.mid(begin + 1, end - begin - 1);
        const auto value = values.find(name);
        if (value == values.end())
            return Error{ErrorCode::Malformed,
                         QStringLiteral("\"%1\": there is no variable {%2}").arg(path, name)};
        if (!isPathPart(*value))
            return Error{ErrorCode::Malformed,
                         QStringLiteral("\"%1\": \"%2\" can't be a part of a path").arg(path, *value)};
        path.replace(begin, end + 1 - begin, *value);
        begin += value->size();
    }
    return Done{};
}

} // namespace

Result<Layout> withVariables(Layout layout, const QString& out, const QString& name) {
    Values values{{QStringLiteral("name"), name}};
    for (const LayoutVariable& variable : layout.variables) {
        const QString value =
            out.isEmpty() ? variable.fallback
            : variable.file.isEmpty()
                ? folderValue(out, variable.folder, variable.fallback)
                : fileValue(appendingPathComponent(out, variable.file), variable.pattern, variable.fallback);
        values.insert(variable.name, value);
    }
    QStringList paths;
    for (LayoutFile& file : layout.files) {
        if (const Result<Done> replaced = replace(file.path, values); !replaced)
            return replaced.error();
        if (paths.contains(file.path))
            return Error{ErrorCode::Malformed,
                         QStringLiteral("two files have the path \"%1\"").arg(file.path)};
        paths << file.path;
    }
    for (LayoutNote& note : layout.notes) {
        if (const Result<Done> replaced = replace(note.file, values); !replaced)
            return replaced.error();
        // Other words in curly brackets belong to the line.
        for (auto value = values.begin(); value != values.end(); ++value) {
            const QString variable = u'{' + value.key() + u'}';
            note.line.replace(variable, *value);
            note.pattern.replace(variable, QRegularExpression::escape(*value));
        }
    }
    return layout;
}
