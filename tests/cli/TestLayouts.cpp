#include "tests/cli/CliTest.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

class Layouts : public CliTest {};

} // namespace

TEST_F(Layouts, are_listed_with_a_line_each) {
    const ProcessResult listed = runCli({u"layouts"_s});
    EXPECT_EQ(listed.exitStatus, 0);
    EXPECT_TRUE(listed.output.contains("\nflutter "));
    const ProcessResult json = runCli({u"layouts"_s, u"--json"_s});
    const QJsonArray list = QJsonDocument::fromJson(json.output).object().value(u"layouts").toArray();
    EXPECT_EQ(list.size(), listed.output.count('\n'));
}

TEST_F(Layouts, one_is_shown_with_its_files) {
    const ProcessResult shown = runCli({u"layouts"_s, u"web"_s});
    EXPECT_EQ(shown.exitStatus, 0);
    EXPECT_TRUE(shown.output.startsWith("favicon.ico")) << shown.output.constData();
    EXPECT_TRUE(shown.output.contains("16,32,48"));
}

TEST_F(Layouts, are_written_into_the_project) {
    const QString source = flatPicture(u"logo.png"_s, 1024, 1024);
    const ProcessResult result =
        generate(source, {u"--layout"_s, u"xcode"_s, u"--layout"_s, u"web"_s, u"--json"_s});
    EXPECT_EQ(result.exitStatus, 0);
    const QJsonObject document = QJsonDocument::fromJson(result.output).object();
    EXPECT_EQ(document.value(u"files").toArray().size(), 16 + 8);
    EXPECT_TRUE(document.contains(u"notes"));
    for (const QJsonValue& file : document.value(u"files").toArray()) {
        EXPECT_TRUE(file[u"layout"].toString() == u"xcode" || file[u"layout"].toString() == u"web");
        EXPECT_TRUE(QFile::exists(file[u"path"].toString()));
    }
}

TEST_F(Layouts, a_transparent_picture_on_an_opaque_icon_is_a_warning_with_the_way_out) {
    const QString source = flatPicture(u"logo.png"_s, 1024, 1024, QColor(255, 0, 0, 100));
    const ProcessResult plain = generate(source, {u"--layout"_s, u"xcode"_s});
    EXPECT_EQ(plain.exitStatus, 0);
    EXPECT_TRUE(plain.errors.contains("--background")) << plain.errors.constData();
    EXPECT_TRUE(
        generate(source, {u"--layout"_s, u"xcode"_s, u"--background"_s, u"white"_s}).errors.isEmpty());
}

TEST_F(Layouts, a_line_that_the_project_lacks_is_a_note) {
    file(u"icons/index.html"_s, "<html></html>");
    const ProcessResult result = generate(flatPicture(u"logo.png"_s, 512, 512), {u"--layout"_s, u"web"_s});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_TRUE(result.errors.contains("note: index.html lacks the line: <link rel=\"manifest\""))
        << result.errors.constData();
}

TEST_F(Layouts, a_layout_of_ones_own_is_a_file) {
    const QString layout = file(u"own.toml"_s, "[[file]]\npath = '{name}-7.png'\nsize = 7\n");
    generated(flatPicture(u"logo.png"_s, 64, 64), {u"--layout"_s, layout});
    EXPECT_EQ(icon(u"logo-7.png"_s).size(), QSize(7, 7));
    generated(flatPicture(u"logo.png"_s, 64, 64), {u"--layout"_s, layout, u"--name"_s, u"other"_s});
    EXPECT_EQ(icon(u"other-7.png"_s).size(), QSize(7, 7));
}

TEST_F(Layouts, what_can_not_be_used_is_wrong_usage_and_writes_nothing) {
    const QString source = flatPicture(u"logo.png"_s, 64, 64);
    const QString bad = file(u"bad.toml"_s, "[[file]]\npath = 'a.png'\nsize = 0\n");
    const QString same = file(u"same.toml"_s, "[[file]]\npath = 'favicon.ico'\nsizes = [16]\n");
    const std::pair<QStringList, const char*> cases[] = {
        {{u"--layout"_s, u"xcod"_s}, "there is no layout \"xcod\"; did you mean \"xcode\"?"},
        {{u"--layout"_s, bad}, "file 1 (a.png): \"size\" takes a whole number from 1 to 16384"},
        {{u"--layout"_s, same, u"--layout"_s, u"web"_s},
         "the layouts \"same\" and \"web\" both write favicon.ico"},
        {{u"--layout"_s, u"web"_s, u"--platform"_s, u"mac"_s}, "--platform and --layout exclude each other"},
        {{u"--layout"_s, u"web"_s, u"--background"_s, u"#ffffff80"_s}, "--background takes an opaque colour"},
        {{u"--dark"_s, source}, "--dark belongs to --layout"},
        {{u"--name"_s, u"x"_s}, "--name belongs to --layout"}};
    for (const auto& [options, sentence] : cases) {
        const ProcessResult result = generate(source, options);
        EXPECT_EQ(result.exitStatus, 2) << sentence;
        EXPECT_TRUE(result.errors.contains(sentence)) << result.errors.constData();
        EXPECT_EQ(result.errorLines().size(), 1);
        EXPECT_FALSE(QFile::exists(out())) << sentence;
    }
}

TEST_F(Layouts, a_file_that_is_missing_is_named) {
    const QString layout = path(u"none.toml"_s);
    const QStringList lines[] = {{u"generate"_s, sample(u"svg"_s), u"--out"_s, out(), u"--layout"_s, layout},
                                 {u"layouts"_s, layout}};
    for (const QStringList& line : lines) {
        const ProcessResult result = runCli(line);
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_EQ(result.errorLines().size(), 1) << result.errors.constData();
        EXPECT_TRUE(result.errors.contains("error: " + layout.toUtf8() + ": ")) << result.errors.constData();
    }
    EXPECT_FALSE(QFile::exists(out()));
}

TEST_F(Layouts, a_picture_that_is_missing_writes_nothing) {
    const QString source = flatPicture(u"logo.png"_s, 64, 64);
    const ProcessResult result =
        generate(source, {u"--layout"_s, u"xcode-single"_s, u"--dark"_s, path(u"none.png"_s)});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(result.errors.contains("none.png: "));
    EXPECT_FALSE(QFile::exists(out()));
}

TEST_F(Layouts, a_background_takes_the_alpha_channel_out_of_the_plain_sets) {
    // Half transparent pixels show the ground; a wholly transparent picture gets a warning.
    const QString source = flatPicture(u"logo.png"_s, 1024, 1024, QColor(0x10, 0x20, 0x30, 128));
    generated(source,
              {u"--platform"_s, u"iphone"_s, u"--platform"_s, u"mac"_s, u"--background"_s, u"#102030"_s});
    const QByteArray png = content(out() + u"/iphone/AppIcon.appiconset/Icon-App-60x60@3x.png"_s);
    EXPECT_EQ(png.at(25), 2) << "colour type";
    EXPECT_EQ(icon180().pixelColor(90, 90), QColor(0x10, 0x20, 0x30));
    const ProcessResult listed = runCli({u"icns"_s, u"list"_s, out() + u"/mac/Application.icns"_s});
    EXPECT_EQ(listed.exitStatus, 0);
}

TEST_F(Layouts, several_layouts_are_written_with_commas_and_in_any_case) {
    const QString source = flatPicture(u"logo.png"_s, 1024, 1024);
    EXPECT_EQ(generate(source, {u"-l"_s, u"Web,xcode-SINGLE"_s}).exitStatus, 0);
    EXPECT_TRUE(QFile::exists(out() + u"/favicon.ico"_s));
    EXPECT_TRUE(QFile::exists(out() + u"/AppIcon.appiconset/Contents.json"_s));
    EXPECT_EQ(runCli({u"layouts"_s, u"WEB"_s}).output.toStdString(),
              runCli({u"layouts"_s, u"web"_s}).output.toStdString());
}

TEST_F(Layouts, a_layout_files_name_may_have_a_comma) {
    const QString layout = file(u"a,web.toml"_s, "[[file]]\npath = 'x.png'\nsize = 7\n");
    generated(flatPicture(u"logo.png"_s, 64, 64), {u"--layout"_s, layout});
    EXPECT_EQ(tree(), std::vector<std::string>{"x.png"});
}

TEST_F(Layouts, a_compressed_drawing_is_written_uncompressed) {
    const QByteArray document = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\">"
                                "<circle cx=\"4.5\" cy=\"4.5\" r=\"4\"/></svg>";
    const QString compressed = path(u"logo.svgz"_s);
    printedByPython(u"import gzip, sys\n"
                    "with gzip.open(sys.argv[1], 'wb') as file: file.write(sys.argv[2].encode())"_s,
                    {compressed, QString::fromUtf8(document)});
    ASSERT_TRUE(content(compressed).startsWith("\x1f\x8b"));
    generate(compressed, {u"--layout"_s, u"web"_s});
    EXPECT_EQ(content(out() + u"/icon.svg"_s), document);
}

TEST_F(Layouts, a_file_that_is_not_square_is_shown_with_both_sides) {
    const ProcessResult shown = runCli({u"layouts"_s, u"windows"_s});
    EXPECT_TRUE(shown.output.contains("310x150")) << shown.output.constData();
    const QJsonObject json = printedJson(runCli({u"layouts"_s, u"windows"_s, u"--json"_s}));
    for (const QJsonValue& file : json[u"files"].toArray()) {
        const QJsonObject size = file[u"sizes"].toArray().first().toObject();
        const bool isWide = file[u"path"].toString() == u"Wide310x150Logo.png";
        EXPECT_EQ(size[u"width"].toInt() == size[u"height"].toInt(), !isWide);
        if (isWide) {
            EXPECT_EQ(size[u"width"].toInt(), 310);
        }
    }
    generated(flatPicture(u"logo.png"_s, 512, 512), {u"--layout"_s, u"windows"_s});
    const QImage wide = icon(u"Wide310x150Logo.png"_s);
    EXPECT_EQ(wide.size(), QSize(310, 150));
    EXPECT_EQ(wide.pixelColor(79, 75).alpha(), 0);
    EXPECT_EQ(wide.pixelColor(80, 0), QColor(Qt::red));
    EXPECT_EQ(wide.pixelColor(229, 149), QColor(Qt::red));
    EXPECT_EQ(wide.pixelColor(230, 75).alpha(), 0);
}
