#include "tests/cli/CliTest.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

using Printing = CliTest;

namespace {

std::vector<std::string> keys(const QJsonObject& object) {
    std::vector<std::string> names;
    for (const QString& key : object.keys())
        names.push_back(key.toStdString());
    return names;
}

std::vector<std::string> strings(const QJsonValue& array) {
    std::vector<std::string> values;
    for (const QJsonValue value : array.toArray())
        values.push_back(value.toString().toStdString());
    return values;
}

/// The errors of a document, each as "PATH|CODE|SENTENCE".
std::vector<std::string> errors(const QJsonObject& document) {
    std::vector<std::string> texts;
    for (const QJsonValue value : document[u"errors"_s].toArray()) {
        const QJsonObject error = value.toObject();
        EXPECT_THAT(keys(error), testing::UnorderedElementsAre("path", "code", "sentence"));
        texts.push_back((error[u"path"_s].toString() + u'|' + error[u"code"_s].toString() + u'|' +
                         error[u"sentence"_s].toString())
                            .toStdString());
    }
    return texts;
}

} // namespace

TEST_F(Printing, json_is_one_document_that_lists_every_file) {
    const QString picture = sample(u"svg"_s);
    const QJsonObject document =
        printedJson(generated(picture, {u"--json"_s, u"--background"_s, u"white"_s}));
    EXPECT_THAT(keys(document),
                testing::UnorderedElementsAre("picture", "out", "files", "warnings", "errors"));
    EXPECT_EQ(document[u"picture"_s].toString(), picture);
    EXPECT_EQ(document[u"out"_s].toString(), out());
    EXPECT_TRUE(document[u"warnings"_s].isArray());
    EXPECT_THAT(strings(document[u"warnings"_s]), testing::IsEmpty());
    EXPECT_TRUE(document[u"errors"_s].isArray());
    EXPECT_THAT(errors(document), testing::IsEmpty());
    std::vector<std::string> listed;
    for (const QJsonValue value : document[u"files"_s].toArray()) {
        const QJsonObject file = value.toObject();
        EXPECT_THAT(keys(file),
                    testing::UnorderedElementsAre("platform", "path", "width", "height", "bytes"));
        listed.push_back(QDir(out()).relativeFilePath(file[u"path"_s].toString()).toStdString());
    }
    std::ranges::sort(listed);
    EXPECT_EQ(listed, tree());
    EXPECT_EQ(listed.size(), 54U);
}

TEST_F(Printing, json_has_the_files_own_sizes) {
    const QJsonObject document = printedJson(generated(sample(u"png"_s), {u"--json"_s}));
    const QJsonArray files = document[u"files"_s].toArray();
    ASSERT_EQ(files.size(), 54);
    for (const QJsonValue value : files) {
        const QJsonObject file = value.toObject();
        const QString path = file[u"path"_s].toString();
        EXPECT_EQ(file[u"bytes"_s].toInteger(), QFileInfo(path).size()) << path.toStdString();
        const QSize size(file[u"width"_s].toInt(), file[u"height"_s].toInt());
        EXPECT_EQ(size, path.endsWith(u".icns"_s) ? QSize(1024, 1024) : QImage(path).size())
            << path.toStdString();
        EXPECT_TRUE(path.startsWith(out() + u'/' + file[u"platform"_s].toString() + u'/'))
            << path.toStdString();
    }
}

TEST_F(Printing, json_holds_the_warnings) {
    const ProcessResult result =
        generate(flatPicture(u"small.png"_s, 100, 100), {u"--json"_s, u"--platform"_s, u"android"_s});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_THAT(strings(printedJson(result)[u"warnings"_s]),
                testing::ElementsAre(testing::HasSubstr("smaller")));
}

TEST_F(Printing, json_is_valid_on_failure_too) {
    const ProcessResult result = generate(path(u"nowhere.png"_s), {u"--json"_s});
    expectOneError(result, u"nowhere.png"_s);
    const QJsonObject document = printedJson(result);
    EXPECT_THAT(keys(document),
                testing::UnorderedElementsAre("picture", "out", "files", "warnings", "errors"));
    EXPECT_EQ(document[u"picture"_s].toString(), path(u"nowhere.png"_s));
    EXPECT_TRUE(document[u"files"_s].isArray());
    EXPECT_TRUE(document[u"files"_s].toArray().isEmpty());
    EXPECT_THAT(errors(document), testing::ElementsAre(path(u"nowhere.png"_s).toStdString() +
                                                       "|not-found|No such file or directory"));
}

TEST_F(Printing, json_names_every_file_that_failed_and_lists_the_others) {
    const QString broken = u"iphone/AppIcon.appiconset/Icon-App-29x29@%1x.png"_s;
    for (const QString& scale : {u"2"_s, u"3"_s})
        ASSERT_TRUE(QDir().mkpath(out() + u'/' + broken.arg(scale)));
    const ProcessResult result = generate(sample(u"svg"_s), {u"--json"_s, u"--platform"_s, u"iphone"_s});
    expectOneError(result, u"2 files not written"_s);
    const QJsonObject document = printedJson(result);
    EXPECT_EQ(document[u"files"_s].toArray().size(), 7);
    const QString told = out() + u'/' + broken + u"|not-writable|Is a directory"_s;
    EXPECT_THAT(errors(document),
                testing::UnorderedElementsAre(told.arg(2).toStdString(), told.arg(3).toStdString()));
}

TEST_F(Printing, json_is_valid_without_a_catalogue_and_without_an_output_folder_too) {
    const ProcessResult uncatalogued =
        generate(sample(u"svg"_s), {u"--json"_s, u"--catalogue"_s, path(u"nowhere.plist"_s)});
    expectOneError(uncatalogued, u"nowhere.plist"_s);
    EXPECT_THAT(errors(printedJson(uncatalogued)),
                testing::ElementsAre(testing::StartsWith(path(u"nowhere.plist"_s).toStdString() + "|")));
    file(u"icons"_s, "in the way");
    const ProcessResult homeless = generate(sample(u"svg"_s), {u"--json"_s});
    expectOneError(homeless, out());
    EXPECT_THAT(errors(printedJson(homeless)),
                testing::ElementsAre(out().toStdString() + "|not-writable|Not a directory"));
}

TEST_F(Printing, json_keeps_names_as_they_are) {
    const QString name = u"q\"uo\\te\n☃.svg"_s;
    const QString picture = file(name, content(sample(u"svg"_s)));
    const ProcessResult result = generated(picture, {u"--json"_s, u"--platform"_s, u"iphone"_s});
    EXPECT_EQ(printedJson(result)[u"picture"_s].toString(), picture);
}

TEST_F(Printing, a_summary_counts_the_files_of_each_platform_and_names_the_folder) {
    const ProcessResult result = generated(sample(u"svg"_s));
    const QStringList lines = QString::fromUtf8(result.output).split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 6) << result.output.toStdString();
    const QStringList starts{u"iphone 9 files "_s, u"ipad 10 files "_s,   u"watch 17 files "_s,
                             u"mac 11 files "_s,   u"android 7 files "_s, u"all 54 files "_s};
    for (qsizetype i = 0; i < lines.size(); ++i)
        EXPECT_TRUE(lines[i].simplified().startsWith(starts[i])) << lines[i].toStdString();
    EXPECT_TRUE(lines.last().endsWith(u" in "_s + QFileInfo(out()).canonicalFilePath()))
        << lines.last().toStdString();
}

TEST_F(Printing, progress_is_shown_on_terminals_that_can_erase_it) {
    // What a terminal of that kind gets.
    const auto shown = [&](const QString& terminal) {
        return printedByPython(u"import os, pty, sys\n"
                               "os.environ['TERM'] = sys.argv[1]\n"
                               "def read(terminal):\n"
                               "    return os.read(terminal, 4096)\n"
                               "sys.exit(pty.spawn(sys.argv[2:], read))\n"_s,
                               {terminal, QStringLiteral(TOBRIMAX_CLI), u"generate"_s, sample(u"svg"_s),
                                u"--out"_s, out(), u"--platform"_s, u"iphone"_s, u"--background"_s,
                                u"white"_s});
    };
    const QByteArray capable = shown(u"xterm"_s);
    EXPECT_TRUE(capable.contains("9/9 icons\x1b[K\r\x1b[K")) << capable.toStdString();
    for (const QString& terminal : {u"dumb"_s, u""_s}) {
        const QByteArray plain = shown(terminal);
        EXPECT_TRUE(plain.startsWith("iphone ")) << plain.toStdString();
        EXPECT_FALSE(plain.contains('\x1b')) << plain.toStdString();
    }
}

TEST_F(Printing, causes_are_in_english_in_any_language) {
    const QStringList environment{u"LC_ALL=C.UTF-8"_s, u"LANGUAGE=de:fr:es:ja"_s};
    const ProcessResult result = runProcess(
        u"env"_s, environment + QStringList{QStringLiteral(TOBRIMAX_CLI), u"generate"_s,
                                            path(u"nowhere.png"_s), u"--out"_s, out(), u"--json"_s});
    expectOneError(result, u"nowhere.png: No such file or directory"_s);
    EXPECT_THAT(errors(printedJson(result)),
                testing::ElementsAre(testing::EndsWith("|No such file or directory")));
}

TEST_F(Printing, quiet_prints_nothing) {
    const ProcessResult result = generated(sample(u"svg"_s), {u"--quiet"_s});
    EXPECT_EQ(result.output.toStdString(), "");
    EXPECT_EQ(tree().size(), 54U);
}

TEST_F(Printing, quiet_leaves_warnings_and_errors) {
    const QStringList options{u"--quiet"_s, u"--platform"_s, u"iphone"_s};
    const ProcessResult warned = generate(flatPicture(u"small.png"_s, 100, 100), options);
    EXPECT_EQ(warned.exitStatus, 0);
    EXPECT_EQ(warned.output.toStdString(), "");
    EXPECT_TRUE(warned.errors.startsWith("tobrimax-cli: warning: "));
    const ProcessResult failed = generate(path(u"nowhere.png"_s), options);
    EXPECT_EQ(failed.output.toStdString(), "");
    expectOneError(failed, u"nowhere.png"_s);
}

TEST_F(Printing, verbose_lists_every_file) {
    const ProcessResult result = generate(sample(u"svg"_s), {u"--verbose"_s});
    EXPECT_EQ(result.exitStatus, 0);
    const std::vector<std::string> names = tree();
    ASSERT_EQ(names.size(), 54U);
    for (const std::string& name : names) {
        const qint64 bytes = QFileInfo(out() + u'/' + QString::fromStdString(name)).size();
        const QByteArray start = "  " + QByteArray::fromStdString(name) + "  ";
        const qsizetype at = result.output.indexOf(start);
        ASSERT_GE(at, 0) << name;
        const QByteArray line = result.output.mid(at, result.output.indexOf('\n', at) - at);
        EXPECT_TRUE(line.endsWith("  " + QByteArray::number(bytes) + " bytes")) << line.toStdString();
    }
}

TEST_F(Printing, verbose_shows_the_diagnostic_log) {
    ASSERT_TRUE(QDir().mkdir(path(u"my icons"_s)));
    const QString folder = path(u"my icons"_s);
    const ProcessResult result = runCli({u"generate"_s, sample(u"svg"_s), u"--out"_s, folder, u"--platform"_s,
                                         u"ipad"_s, u"--platform"_s, u"mac"_s, u"--verbose"_s});
    EXPECT_EQ(result.exitStatus, 0);
    const std::string url = "output url file://" + path(u"my%20icons/"_s).toStdString();
    const std::string plain = "file://" + folder.toStdString();
    std::vector<std::string> lines;
    for (const QString& line : otherErrorLines(result))
        lines.push_back(line.toStdString());
    EXPECT_THAT(lines, testing::ElementsAre(url, plain, url, plain));
}

TEST_F(Printing, the_log_is_hidden_without_verbose) {
    const QStringList options{u"--background"_s, u"white"_s};
    EXPECT_EQ(generate(sample(u"svg"_s), options).errors.toStdString(), "");
    EXPECT_EQ(generate(sample(u"svg"_s), options + QStringList{u"--json"_s}).errors.toStdString(), "");
    EXPECT_EQ(generate(sample(u"svg"_s), options + QStringList{u"--quiet"_s}).errors.toStdString(), "");
}

TEST_F(Printing, json_and_verbose_keep_the_log_apart_from_the_document) {
    const ProcessResult result = generate(sample(u"svg"_s), {u"--json"_s, u"--verbose"_s});
    EXPECT_EQ(printedJson(result)[u"files"_s].toArray().size(), 54);
    EXPECT_TRUE(result.errors.contains("output url file://"));
}
