#include "tests/cli/CliTest.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <algorithm>
#include <cstdlib>

void CliTest::SetUp() {
    ASSERT_TRUE(m_folder.isValid());
}

QString CliTest::sample(const QString& suffix) {
    return QStringLiteral(RESOURCES_DIR "/sample/tobrimax-sample.") + suffix;
}

ProcessResult CliTest::generate(const QString& picture, const QStringList& more) const {
    return runCli(QStringList{u"generate"_s, picture, u"--out"_s, out()} + more, m_folder.path());
}

ProcessResult CliTest::generated(const QString& picture, const QStringList& more) const {
    ProcessResult result = generate(picture, more);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_TRUE(otherErrorLines(result).isEmpty()) << result.errors.toStdString();
    return result;
}

QString CliTest::file(const QString& name, const QByteArray& content) const {
    QString full = path(name);
    QFile file(full);
    EXPECT_TRUE(QDir().mkpath(QFileInfo(full).path()));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << full.toStdString();
    EXPECT_EQ(file.write(content), content.size());
    return full;
}

QString CliTest::picture(const QString& name, const QImage& image) const {
    QString full = path(name);
    EXPECT_TRUE(image.save(full)) << full.toStdString();
    return full;
}

QString CliTest::flatPicture(const QString& name, int width, int height, const QColor& color) const {
    QImage image(width, height, QImage::Format_RGBA8888);
    image.fill(color);
    return picture(name, image);
}

QString CliTest::propertyList(const QString& name, const QString& expression, bool isBinary) const {
    QString full = path(name);
    printedByPython(
        u"import plistlib, sys\n"
        "def entry(name, size): return {'Name': name, 'Dimensions': size}\n"
        "form = plistlib.FMT_BINARY if sys.argv[3] == 'binary' else plistlib.FMT_XML\n"
        "with open(sys.argv[1], 'wb') as file: plistlib.dump(eval(sys.argv[2]), file, fmt=form)\n"_s,
        {full, expression, isBinary ? u"binary"_s : u"xml"_s});
    return full;
}

QString CliTest::pillowPicture(const QString& name, const QString& script) const {
    QString full = path(name);
    printedByPython(u"import sys\nfrom PIL import Image\npath = sys.argv[1]\n"_s + script, {full});
    return full;
}

QByteArray CliTest::content(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

QImage CliTest::icon(const QString& name) const {
    const QImage image(out() + u'/' + name);
    EXPECT_FALSE(image.isNull()) << name.toStdString();
    return image.convertToFormat(QImage::Format_RGBA8888);
}

std::vector<std::string> CliTest::tree(const QString& folder) {
    std::vector<std::string> names;
    const QDir::Filters everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    QDirIterator entries(folder, everything, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString entry = entries.next();
        if (!QFileInfo(entry).isDir() || QDir(entry).isEmpty(everything))
            names.push_back(QDir(folder).relativeFilePath(entry).toStdString());
    }
    std::ranges::sort(names);
    return names;
}

std::vector<std::string> CliTest::wanted(const QString& catalogue) {
    const QByteArray printed = printedByPython(
        u"import plistlib, re, sys\n"
        "folders = ['iphone/AppIcon.appiconset', 'ipad/AppIcon.appiconset', 'watch/AppIcon.appiconset',\n"
        "           'mac/AppIcon.appiconset', 'android/icons']\n"
        "for folder, entries in zip(folders, plistlib.load(open(sys.argv[1], 'rb'))):\n"
        "    for entry in entries.values():\n"
        "        size = re.findall('[0-9]+', entry['Dimensions'])\n"
        "        print('%s/%s.png' % (folder, entry['Name']), *size)\n"_s,
        {catalogue});
    std::vector<std::string> lines;
    for (const QByteArray& line : printed.trimmed().split('\n'))
        lines.push_back(line.toStdString());
    std::ranges::sort(lines);
    return lines;
}

std::vector<std::string> CliTest::found() const {
    QStringList names;
    QStringList arguments{u"-format"_s, u"%w %h\n"_s};
    for (const std::string& name : tree()) {
        if (!name.ends_with(".png"))
            continue;
        names << QString::fromStdString(name);
        arguments << out() + u'/' + names.last();
    }
    const ProcessResult identified = runProcess(u"identify"_s, arguments);
    EXPECT_EQ(identified.exitStatus, 0) << identified.errors.toStdString();
    const QList<QByteArray> sizes = identified.output.trimmed().split('\n');
    EXPECT_EQ(sizes.size(), names.size());
    std::vector<std::string> lines;
    for (qsizetype i = 0; i < std::min(sizes.size(), names.size()); ++i)
        lines.push_back(names[i].toStdString() + ' ' + sizes[i].toStdString());
    return lines;
}

QByteArray printedByPython(const QString& script, const QStringList& arguments) {
    const ProcessResult result = runPython(script, arguments);
    EXPECT_EQ(result.exitStatus, 0) << result.errors.toStdString();
    return result.output;
}

QJsonObject printedJson(const ProcessResult& result) {
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(result.output, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << result.output.toStdString();
    EXPECT_TRUE(document.isObject());
    return document.object();
}

QStringList otherErrorLines(const ProcessResult& result) {
    QStringList lines = result.errorLines();
    lines.removeIf([](const QString& line) {
        return line.startsWith(u"tobrimax-cli: warning: the icons for "_s) &&
               (line.contains(u"have an alpha channel"_s) || line.contains(u"have rounded corners"_s));
    });
    return lines;
}

void expectOneError(const ProcessResult& result, const QString& sentence) {
    const QStringList lines = otherErrorLines(result);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(lines.size(), 1) << result.errors.toStdString();
    EXPECT_TRUE(lines.value(0).startsWith(u"tobrimax-cli: error: "_s)) << result.errors.toStdString();
    EXPECT_TRUE(lines.value(0).contains(sentence)) << result.errors.toStdString();
}

bool isNear(const QColor& a, const QColor& b, int tolerance) {
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance && std::abs(a.alpha() - b.alpha()) <= tolerance;
}
