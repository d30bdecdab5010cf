#pragma once

#include "base/Color.h"
#include "base/Result.h"
#include "layouts/Layout.h"

#include <QByteArray>

/// What a template's placeholders stand for, besides the layout's files.
struct TemplateValues {
    QString name; ///< of the app
    Color background;
};

/// Whether each placeholder in the template of `file` has a meaning and names one of `files`. Malformed with
/// the placeholder where that is not so.
Result<Done> checkTemplate(const LayoutFile& file, const std::vector<LayoutFile>& files);

/// The text of `file`, where `files` are the layout's files and `written` those of them that are written.
/// Placeholders are those of docs/layouts.md. Names are escaped as the text's path wants it: for JSON, XML
/// and HTML. Malformed as `checkTemplate`.
Result<QByteArray> filledTemplate(const LayoutFile& file, const std::vector<LayoutFile>& files,
                                  const std::vector<LayoutFile>& written, const TemplateValues& values);
