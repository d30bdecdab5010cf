#include "layouts/LayoutTemplate.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace {

QString folderOf(const QString& path) {
    return path.section(u'/', 0, -2);
}

QString fileNameOf(const QString& path) {
    return path.section(u'/', -1);
}

/// Whether `name` is the end of `path`, in whole components.
bool names(const QString& name, const QString& path) {
    return path == name || path.endsWith(u'/' + name);
}

/// The file of that name; of several the one that is nearest to `from`. Null where there is no such file.
const LayoutFile* fileNamed(const QString& name, const QString& from, const std::vector<LayoutFile>& files) {
    const auto distance = [&](const LayoutFile& file) {
        return QDir(u'/' + folderOf(from)).relativeFilePath(u'/' + file.path).count(u'/');
    };
    const LayoutFile* nearest = nullptr;
    for (const LayoutFile& file : files) {
        if (names(name, file.path) && (nearest == nullptr || distance(file) < distance(*nearest)))
            nearest = &file;
    }
    return nearest;
}

QString jsonText(const QString& text) {
    const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(list.sliced(2, list.size() - 4));
}

/// `text` as it stands in a file with that path.
QString escaped(const QString& text, const QString& path) {
    const auto endsWith = [&](const char* ending) { return path.endsWith(QLatin1String(ending)); };
    if (endsWith(".json") || endsWith(".webmanifest"))
        return jsonText(text);
    if (endsWith(".xml") || endsWith(".html"))
        return text.toHtmlEscaped();
    return text;
}

/// A value as Xcode writes it: a space on both sides of colons.
QString jsonValue(const QVariant& value, int indent);

QString jsonObject(const QVariantMap& map, int indent) {
    const QString margin(indent, u' ');
    QStringList lines;
    for (auto entry = map.begin(); entry != map.end(); ++entry)
        lines << QStringLiteral("%1  \"%2\" : %3")
                     .arg(margin, jsonText(entry.key()), jsonValue(entry.value(), indent + 2));
    return QStringLiteral("{\n%1\n%2}").arg(lines.join(QStringLiteral(",\n")), margin);
}

QString jsonValue(const QVariant& value, int indent) {
    if (value.typeId() == QMetaType::QVariantMap)
        return jsonObject(value.toMap(), indent);
    if (value.typeId() == QMetaType::QVariantList) {
        const QString margin(indent, u' ');
        QStringList elements;
        for (const QVariant& element : value.toList())
            elements << margin + QStringLiteral("  ") + jsonValue(element, indent + 2);
        return QStringLiteral("[\n%1\n%2]").arg(elements.join(QStringLiteral(",\n")), margin);
    }
    if (value.typeId() == QMetaType::QString)
        return u'"' + jsonText(value.toString()) + u'"';
    return value.toString();
}

/// The places of an asset catalogue that the files beside `path` fill.
QString placesText(const QString& path, const std::vector<LayoutFile>& written) {
    constexpr int indent = 4;
    QStringList objects;
    for (const LayoutFile& file : written) {
        if (folderOf(file.path) != folderOf(path))
            continue;
        for (QVariantMap place : file.places) {
            place.insert(QStringLiteral("filename"), fileNameOf(file.path));
            objects << QString(indent, u' ') + jsonObject(place, indent);
        }
    }
    return objects.join(QStringLiteral(",\n"));
}

QString colorText(const Color& color) {
    const auto byte = [](double part) {
        return QStringLiteral("%1")
            .arg(static_cast<int>(std::lround(part * 255)), 2, 16, QLatin1Char('0'))
            .toUpper();
    };
    return u'#' + byte(color.red) + byte(color.green) + byte(color.blue);
}

/// Fills a template from its beginning to its end.
class Filling {
  public:
    Filling(const LayoutFile& file, const std::vector<LayoutFile>& known,
            const std::vector<LayoutFile>& written, const TemplateValues& values)
        : m_file(file), m_known(known), m_written(written), m_values(values) {}

    Result<QString> text() {
        const QString& text = m_file.text;
        qsizetype at = 0;
        while (true) {
            const qsizetype begin = text.indexOf(QLatin1String("{{"), at);
            const qsizetype end = text.indexOf(QLatin1String("}}"), begin);
            if (begin < 0 || end < 0)
                break;
            add(text.sliced(at, begin - at));
            if (const Result<Done> filled = fill(text.sliced(begin + 2, end - begin - 2)); !filled)
                return filled.error();
            at = end + 2;
        }
        add(text.sliced(at));
        if (m_isInCondition)
            return wrong(QStringLiteral("an {{if:…}} has no {{end}}"));
        return m_text;
    }

  private:
    void add(const QString& text) {
        if (!m_isLeftOut)
            m_text += text;
    }

    Error wrong(const QString& sentence) const {
        return {ErrorCode::Malformed,
                QStringLiteral("the template of \"%1\": %2").arg(m_file.path, sentence)};
    }

    Result<Done> fill(const QString& placeholder) {
        if (placeholder == QLatin1String("name"))
            add(escaped(m_values.name, m_file.path));
        else if (placeholder == QLatin1String("background"))
            add(colorText(m_values.background));
        else if (placeholder == QLatin1String("slots"))
            add(placesText(m_file.path, m_written));
        else if (placeholder == QLatin1String("end"))
            return endCondition();
        else
            return fillFrom(placeholder.section(u':', 0, 0), placeholder.section(u':', 1));
        return Done{};
    }

    Result<Done> endCondition() {
        if (!m_isInCondition)
            return wrong(QStringLiteral("an {{end}} has no {{if:…}}"));
        m_isInCondition = false;
        m_isLeftOut = false;
        return Done{};
    }

    /// The placeholders that name a file.
    Result<Done> fillFrom(const QString& word, const QString& name) {
        const bool isCondition = word == QLatin1String("if");
        const bool isSide = word == QLatin1String("size") || word == QLatin1String("width") ||
                            word == QLatin1String("height");
        if (!isCondition && !isSide && word != QLatin1String("path"))
            return wrong(QStringLiteral("there is no placeholder {{%1}}").arg(word));
        const LayoutFile* file = fileNamed(name, m_file.path, m_known);
        if (file == nullptr)
            return wrong(QStringLiteral("the layout has no file \"%1\"").arg(name));
        if (isCondition)
            return beginCondition(*file);
        if (isSide)
            return fillSide(word, *file);
        add(escaped(QDir(u'/' + folderOf(m_file.path)).relativeFilePath(u'/' + file->path), m_file.path));
        return Done{};
    }

    Result<Done> fillSide(const QString& word, const LayoutFile& file) {
        const QSize size = file.sizes.empty() ? QSize(0, 0) : file.sizes.front();
        if (word == QLatin1String("size") && size.width() != size.height())
            return wrong(QStringLiteral("\"%1\" has no size in one number, but {{width:…}} and {{height:…}}")
                             .arg(file.path));
        add(QString::number(word == QLatin1String("height") ? size.height() : size.width()));
        return Done{};
    }

    Result<Done> beginCondition(const LayoutFile& file) {
        if (m_isInCondition)
            return wrong(QStringLiteral("an {{if:…}} is inside of another"));
        m_isInCondition = true;
        m_isLeftOut = std::ranges::find(m_written, file.path, &LayoutFile::path) == m_written.end();
        return Done{};
    }

    const LayoutFile& m_file;
    const std::vector<LayoutFile>& m_known;
    const std::vector<LayoutFile>& m_written;
    const TemplateValues& m_values;
    QString m_text;
    bool m_isInCondition = false;
    bool m_isLeftOut = false;
};

} // namespace

Result<Done> checkTemplate(const LayoutFile& file, const std::vector<LayoutFile>& files) {
    const TemplateValues values;
    const Result<QString> text = Filling(file, files, files, values).text();
    if (!text)
        return text.error();
    return Done{};
}

Result<QByteArray> filledTemplate(const LayoutFile& file, const std::vector<LayoutFile>& files,
                                  const std::vector<LayoutFile>& written, const TemplateValues& values) {
    const Result<QString> text = Filling(file, files, written, values).text();
    if (!text)
        return text.error();
    return text->toUtf8();
}
