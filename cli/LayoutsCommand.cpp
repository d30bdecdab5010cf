#include "cli/LayoutsCommand.h"

#include "cli/text/ErrorDocument.h"
#include "cli/text/Terminal.h"
#include "layouts/LayoutCatalogue.h"

#include <algorithm>

namespace {

QString sizesText(const LayoutFile& file) {
    QStringList sizes;
    for (const QSize& size : file.sizes)
        sizes << (size.width() == size.height()
                      ? QString::number(size.width())
                      : QStringLiteral("%1x%2").arg(size.width()).arg(size.height()));
    return sizes.isEmpty() ? QStringLiteral("-") : sizes.join(u',');
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

bool printJson(const std::vector<Layout>& layouts) {
    JsonWriter json;
    json.beginObject();
    json.key("layouts").beginArray();
    for (const Layout& layout : layouts) {
        json.beginObject();
        json.key("name").value(layout.name);
        json.key("title").value(layout.title);
        json.key("files").value(layout.files.size());
        json.endObject();
    }
    json.endArray();
    ErrorDocument::writeMember(json, {});
    json.endObject();
    return json.finish();
}

bool printJson(const Layout& layout) {
    JsonWriter json;
    json.beginObject();
    json.key("name").value(layout.name);
    json.key("title").value(layout.title);
    json.key("files").beginArray();
    for (const LayoutFile& file : layout.files) {
        json.beginObject();
        json.key("path").value(file.path);
        json.key("sizes").beginArray();
        for (const QSize& size : file.sizes) {
            json.beginObject();
            json.key("width").value(size.width());
            json.key("height").value(size.height());
            json.endObject();
        }
        json.endArray();
        json.key("for").value(file.purpose);
        json.endObject();
    }
    json.endArray();
    ErrorDocument::writeMember(json, {});
    json.endObject();
    return json.finish();
}

Result<bool> printList(bool isJson) {
    std::vector<Layout> layouts;
    for (const QString& name : LayoutCatalogue::names()) {
        Result<Layout> layout = LayoutCatalogue::load(name);
        if (!layout)
            return about(QStringLiteral("layout \"%1\"").arg(name), layout.error());
        layouts.push_back(std::move(*layout));
    }
    if (isJson)
        return printJson(layouts);
    std::vector<QStringList> rows;
    rows.reserve(layouts.size());
    for (const Layout& layout : layouts)
        rows.push_back({layout.name, layout.title});
    return printColumns(rows);
}

Result<bool> printFiles(const QString& name, bool isJson) {
    const Result<Layout> layout = LayoutCatalogue::load(name);
    if (!layout)
        return layout.error().code == ErrorCode::NotFound
                   ? layout.error()
                   : about(QStringLiteral("layout \"%1\"").arg(name), layout.error());
    if (isJson)
        return printJson(*layout);
    std::vector<QStringList> rows;
    for (const LayoutFile& file : layout->files)
        rows.push_back({file.path, sizesText(file), file.purpose});
    return printColumns(rows);
}

} // namespace

int runLayouts(const LayoutsOptions& options) {
    constexpr int wrongUsage = 2;
    const Result<bool> isPrinted =
        options.layout.isEmpty() ? printList(options.json) : printFiles(options.layout, options.json);
    if (isPrinted)
        return *isPrinted ? 0 : Terminal::outputFailure();
    Terminal::error(isPrinted.error().sentence);
    if (options.json && !ErrorDocument::print(ErrorDocument::told({}, isPrinted.error())))
        return Terminal::outputFailure();
    return wrongUsage;
}
