#include "tests/cli/CliTest.h"

#include <QJsonArray>

#include <gmock/gmock.h>

namespace {

class Json : public CliTest {
  protected:
    ProcessResult run(const QStringList& words) const { return runCli(words, path({})); }

    /// A minimal icns file.
    QString icns(const QString& name) const {
        return file(name, QByteArray("icns\0\0\0\x18", 8) + QByteArray("odd\x1b\0\0\0\x10", 8) + "contents");
    }
};

/// What Python makes of a document when it writes it again, with the members in their order.
QByteArray rewritten(const QByteArray& document) {
    return printedByPython(u"import json, sys\n"
                           "print(json.dumps(json.loads(sys.argv[1]), indent=2, ensure_ascii=False))"_s,
                           {QString::fromUtf8(document)});
}

/// The names of an object's members in the order in which they stand in the document, without those of the
/// objects in it. `path` leads to the object in Python: "['files'][0]".
std::string members(const QByteArray& document, const QString& path = {}) {
    return printedByPython(u"import json, sys\nprint(*json.loads(sys.argv[1])"_s + path + u')',
                           {QString::fromUtf8(document)})
        .trimmed()
        .toStdString();
}

void expectOnlyError(const QByteArray& document, const std::string& path, const std::string& code,
                     const std::string& sentence) {
    EXPECT_EQ(members(document, u"['errors'][0]"_s), "path code sentence") << document.toStdString();
    ProcessResult result;
    result.output = document;
    const QJsonArray errors = printedJson(result)[u"errors"_s].toArray();
    ASSERT_EQ(errors.size(), 1) << document.toStdString();
    EXPECT_EQ(errors[0][u"path"_s].toString().toStdString(), path);
    EXPECT_EQ(errors[0][u"code"_s].toString().toStdString(), code);
    EXPECT_THAT(errors[0][u"sentence"_s].toString().toStdString(), testing::HasSubstr(sentence));
}

} // namespace

TEST_F(Json, every_document_has_the_same_style) {
    const QString picture = sample(u"svg"_s);
    const QString list = icns(u"odd.icns"_s);
    for (const QStringList& words : std::vector<QStringList>{
             {u"generate"_s, picture, u"--out"_s, out(), u"--json"_s},
             {u"generate"_s, picture, u"--out"_s, out(), u"--json"_s, u"--layout"_s, u"web"_s},
             {u"generate"_s, path(u"nowhere"_s), u"--out"_s, out(), u"--json"_s},
             {u"generate"_s, picture, path(u"nowhere"_s), u"--out"_s, out(), u"--json"_s},
             {u"layouts"_s, u"--json"_s},
             {u"layouts"_s, u"web"_s, u"--json"_s},
             {u"layouts"_s, u"nowhere"_s, u"--json"_s},
             {u"icns"_s, u"list"_s, picture, u"--json"_s},
             {u"generate"_s, u"--json"_s}}) {
        const QByteArray document = run(words).output;
        EXPECT_EQ(document.toStdString(), rewritten(document).toStdString())
            << words.join(u' ').toStdString();
    }
    // Here a character is escaped that a terminal may obey.
    const QByteArray odd = run({u"icns"_s, u"list"_s, list, u"--json"_s}).output;
    EXPECT_THAT(odd.toStdString(), testing::HasSubstr("\"type\": \"odd\\u001b\""));
    EXPECT_EQ(odd.toStdString(), rewritten(odd).toStdString());
}

TEST_F(Json, members_stand_in_their_order) {
    const QByteArray plain = generated(sample(u"svg"_s), {u"--json"_s, u"--timings"_s}).output;
    EXPECT_EQ(members(plain), "picture out files warnings errors timings");
    EXPECT_EQ(members(plain, u"['files'][0]"_s), "platform path width height bytes");
    EXPECT_EQ(members(plain, u"['timings']"_s),
              "decode reduce decorate tiff choose filter compress write other total");
    const QByteArray web = generated(sample(u"svg"_s), {u"--json"_s, u"--background"_s, u"red"_s,
                                                        u"--padding"_s, u"0.15"_s, u"--layout"_s, u"web"_s})
                               .output;
    EXPECT_EQ(members(web), "picture out files notes warnings errors");
    EXPECT_EQ(members(web, u"['files'][0]"_s), "layout path width height bytes");
    const QByteArray all = run({u"layouts"_s, u"--json"_s}).output;
    EXPECT_EQ(members(all), "layouts errors");
    EXPECT_EQ(members(all, u"['layouts'][0]"_s), "name title files");
    const QByteArray one = run({u"layouts"_s, u"web"_s, u"--json"_s}).output;
    EXPECT_EQ(members(one), "name title files errors");
    EXPECT_EQ(members(one, u"['files'][0]"_s), "path sizes for");
    const QString family = path(u"a.icns"_s);
    ASSERT_EQ(run({u"icns"_s, u"make"_s, sample(u"svg"_s), u"--out"_s, family}).exitStatus, 0);
    const QByteArray list = run({u"icns"_s, u"list"_s, family, u"--json"_s}).output;
    EXPECT_EQ(members(list), "file bytes elements remarks errors");
    EXPECT_EQ(members(list, u"['elements'][0]"_s), "type what width height encoding bytes remarks");
}

TEST_F(Json, a_platforms_files_are_listed_by_size) {
    const QJsonObject document = printedJson(
        generated(sample(u"svg"_s), {u"--json"_s, u"--platform"_s, u"mac"_s, u"--platform"_s, u"iphone"_s}));
    std::vector<std::string> listed;
    for (const QJsonValue file : document[u"files"_s].toArray())
        listed.push_back(QStringLiteral("%1 %2")
                             .arg(file[u"platform"_s].toString())
                             .arg(file[u"width"_s].toInt())
                             .toStdString());
    EXPECT_THAT(listed, testing::ElementsAre("mac 16", "mac 32", "mac 32", "mac 64", "mac 128", "mac 256",
                                             "mac 256", "mac 512", "mac 512", "mac 1024", "mac 1024",
                                             "iphone 40", "iphone 58", "iphone 60", "iphone 80", "iphone 87",
                                             "iphone 120", "iphone 120", "iphone 180", "iphone 1024"));
}

TEST_F(Json, wrong_usage_gives_a_document_too) {
    const ProcessResult missing = run({u"generate"_s, sample(u"svg"_s), u"--json"_s});
    EXPECT_EQ(missing.exitStatus, 2);
    ASSERT_EQ(missing.errorLines().size(), 1);
    EXPECT_EQ(members(missing.output), "errors");
    expectOnlyError(missing.output, "", "wrong-usage", "--out is required");
    const ProcessResult unknown = run({u"icns"_s, u"list"_s, u"--json"_s, u"--jsno"_s, u"a.icns"_s});
    EXPECT_EQ(unknown.exitStatus, 2);
    expectOnlyError(unknown.output, "", "wrong-usage", "there is no option '--jsno'");
    // Behind "--" stands a file of that name.
    const ProcessResult operand = run({u"icns"_s, u"list"_s, u"--jsno"_s, u"--"_s, u"--json"_s});
    EXPECT_EQ(operand.exitStatus, 2);
    EXPECT_EQ(operand.output.toStdString(), "");
}

TEST_F(Json, an_unknown_layout_gives_a_document_too) {
    const ProcessResult listed = run({u"layouts"_s, u"wbe"_s, u"--json"_s});
    EXPECT_EQ(listed.exitStatus, 2);
    expectOnlyError(listed.output, "", "not-found", "wbe");
    const ProcessResult written = generate(sample(u"svg"_s), {u"--layout"_s, u"wbe"_s, u"--json"_s});
    EXPECT_EQ(written.exitStatus, 2);
    EXPECT_EQ(written.errorLines().size(), 1);
    EXPECT_EQ(members(written.output), "picture out files notes warnings errors");
    expectOnlyError(written.output, "", "not-found", "wbe");
}

TEST_F(Json, an_icns_file_that_cant_be_listed_gives_a_document_too) {
    const QString nowhere = path(u"nowhere"_s);
    const ProcessResult missing = run({u"icns"_s, u"list"_s, nowhere, u"--json"_s});
    expectOneError(missing, u"nowhere: No such file"_s);
    expectOnlyError(missing.output, nowhere.toStdString(), "not-found", "No such file or directory");
    const QString text = file(u"text"_s, "this is no icon family");
    const ProcessResult other = run({u"icns"_s, u"list"_s, text, u"--json"_s});
    expectOneError(other, u"text: "_s);
    expectOnlyError(other.output, text.toStdString(), "unknown-format", "");
}

TEST_F(Json, codes_tell_causes_apart) {
    const QString damaged = file(u"damaged.png"_s, content(sample(u"png"_s)).first(2000));
    expectOnlyError(generate(damaged, {u"--json"_s}).output, damaged.toStdString(), "damaged", "");
    const QString text = file(u"text.png"_s, "no picture");
    expectOnlyError(generate(text, {u"--json"_s}).output, text.toStdString(), "unknown-format", "");
    const QString catalogue = propertyList(u"none.plist"_s, u"[{'a': entry('a', 'none')}, {}, {}, {}, {}]"_s);
    const QStringList bySizes{u"--json"_s, u"--platform"_s, u"iphone"_s, u"--catalogue"_s, catalogue};
    expectOnlyError(generate(sample(u"svg"_s), bySizes).output,
                    (out() + u"/iphone/AppIcon.appiconset/a.png"_s).toStdString(), "empty-size",
                    "not two numbers");
}
