#include "cli/LayoutsCommand.h"

#include "cli/text/Terminal.h"
#include "layouts/LayoutCatalogue.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

QString sizesText(const LayoutFile& file) {
    QStringList sizes;
    for (const int side : file.sizes)
        sizes << QString::number(side);
    return sizes.isEmpty() ? QStringLiteral("-") : sizes.join(u',');
}

bool printJson(const QJsonDocument& document) {
    return Terminal::print(Terminal::escapedJson(QString::fromUtf8(document.toJson()).trimmed()));
}

/// Prints two or three columns.
bool printColumns(const std::vector<QStringList>& rows) {
    std::vector<qsizetype> widths;
    for (const QStringList& row : rows) {
        widths.resize(std::max(widths.size(), static_cast<std::size_t>(row.size())));
        for (qsizetype i = 0; i < row.size(); ++i)
            widths[static_cast<std::size_t>(i)] =
                std::max(widths[static_cast<std::size_t>(i)], row[i].size());
    }
    return std::ranges::all_of(rows, [&](const QStringList& row) {
        QString line;
        for (qsizetype i = 0; i + 1 < row.size(); ++i)
            line += row[i].leftJustified(widths[static_cast<std::size_t>(i)] + 2);
        return Terminal::print(Terminal::escaped(line + row.last()));
    });
}

Result<bool> printList(bool isJson) {
    std::vector<QStringList> rows;
    QJsonArray list;
    for (const QString& name : LayoutCatalogue::names()) {
        const Result<Layout> layout = LayoutCatalogue::load(name);
        if (!layout)
            return about(QStringLiteral("layout \"%1\"").arg(name), layout.error());
        rows.push_back({name, layout->title});
        list.append(QJsonObject{{QStringLiteral("name"), name},
                                {QStringLiteral("title"), layout->title},
                                {QStringLiteral("files"), static_cast<qint64>(layout->files.size())}});
    }
    return isJson ? printJson(QJsonDocument(QJsonObject{{QStringLiteral("layouts"), list}}))
                  : printColumns(rows);
}

Result<bool> printFiles(const QString& name, bool isJson) {
    const Result<Layout> layout = LayoutCatalogue::load(name);
    if (!layout)
        return layout.error().code == ErrorCode::NotFound
                   ? layout.error()
                   : about(QStringLiteral("layout \"%1\"").arg(name), layout.error());
    std::vector<QStringList> rows;
    QJsonArray files;
    for (const LayoutFile& file : layout->files) {
        rows.push_back({file.path, sizesText(file), file.purpose});
        QJsonArray sizes;
        for (const int side : file.sizes)
            sizes.append(side);
        files.append(QJsonObject{{QStringLiteral("path"), file.path},
                                 {QStringLiteral("sizes"), sizes},
                                 {QStringLiteral("for"), file.purpose}});
    }
    return isJson ? printJson(QJsonDocument(QJsonObject{{QStringLiteral("name"), layout->name},
                                                        {QStringLiteral("title"), layout->title},
                                                        {QStringLiteral("files"), files}}))
                  : printColumns(rows);
}

} // namespace

int runLayouts(const LayoutsOptions& options) {
    constexpr int wrongUsage = 2;
    const Result<bool> isPrinted =
        options.layout.isEmpty() ? printList(options.json) : printFiles(options.layout, options.json);
    if (isPrinted)
        return *isPrinted ? 0 : Terminal::outputFailure();
    Terminal::error(isPrinted.error().sentence);
    return wrongUsage;
}
