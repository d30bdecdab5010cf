#include "tests/cli/CliTest.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

class Proof : public CliTest {
  protected:
    /// Options for two small icons: one of an iPhone, one of a watch.
    QStringList small() const {
        const QString catalogue =
            propertyList(u"sizes.plist"_s,
                         u"[{'a': entry('a', '{40, 40}')}, {}, {'b': entry('b', '{61, 61}')}, {}, {}]"_s);
        return {u"--catalogue"_s, catalogue, u"--platform"_s, u"iphone,watch"_s};
    }
    QString icns() const {
        const QString path = this->path(u"logo.icns"_s);
        EXPECT_EQ(runCli({u"icns"_s, u"make"_s, sample(u"svg"_s), u"--out"_s, path}).exitStatus, 0);
        return path;
    }
};

/// How often `part` is in the file at `path`.
qsizetype countIn(const QString& path, const QByteArray& part) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll().count(part);
}

} // namespace

TEST_F(Proof, is_written_beside_the_icons_and_told_in_json) {
    const QString page = path(u"proof.html"_s);
    const QJsonObject document =
        printedJson(generated(flatPicture(u"logo.png"_s, 1024, 1024),
                              {u"--platform"_s, u"mac"_s, u"--json"_s, u"--proof"_s, page}));
    EXPECT_EQ(document.value(u"proof").toString(), page);
    EXPECT_EQ(document.value(u"files").toArray().size(), 11);
    // Ten PNG files and seven elements.
    EXPECT_EQ(countIn(page, "<li class=\"icon"), 17);
    EXPECT_EQ(countIn(page, "<h1>logo.png</h1>"), 1);
}

TEST_F(Proof, is_not_in_json_where_it_is_not_asked_for) {
    const ProcessResult result =
        generated(flatPicture(u"logo.png"_s, 1024, 1024), {u"--platform"_s, u"android"_s, u"--json"_s});
    EXPECT_FALSE(printedJson(result).contains(u"proof"_s));
}

TEST_F(Proof, of_layouts_is_grouped_by_their_purposes) {
    const QString page = path(u"proof.html"_s);
    generated(flatPicture(u"logo.png"_s, 1024, 1024),
              {u"--layout"_s, u"web"_s, u"--layout"_s, u"windows"_s, u"--name"_s, u"A & B"_s, u"--padding"_s,
               u"0.15"_s, u"--background"_s, u"white"_s, u"--proof"_s, page});
    EXPECT_EQ(countIn(page, "<h1>A &amp; B</h1>"), 1);
    EXPECT_EQ(countIn(page, "<h2 "), 2);
    EXPECT_EQ(countIn(page, "<h3 class=\"part\">Tabs and bookmarks</h3>"), 1);
    // Three pictures of favicon.ico, five PNG files; eight pictures of app.ico, sixteen PNG files.
    EXPECT_EQ(countIn(page, "<li class=\"icon"), 3 + 5 + 8 + 16);
    // Two maskable icons: the smaller with a view of its own on each ground, the larger with lines on both.
    EXPECT_EQ(countIn(page, "class=\"ring\""), 2 * 2 * 2);
}

TEST_F(Proof, as_a_picture_is_an_opaque_png) {
    const QString sheet = path(u"proof.PNG"_s);
    generated(flatPicture(u"logo.png"_s, 64, 64), small() + QStringList{u"--proof"_s, sheet});
    const QImage image(sheet);
    EXPECT_EQ(image.width(), 1444);
    EXPECT_FALSE(image.hasAlphaChannel());
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::white));
}

TEST_F(Proof, is_the_same_from_run_to_run) {
    const QString picture = flatPicture(u"logo.png"_s, 64, 64);
    const QStringList options = small();
    for (const QString& ending : {u".html"_s, u".png"_s}) {
        for (const QString& name : {u"one"_s, u"two"_s})
            generated(picture, options + QStringList{u"--proof"_s, path(name + ending)});
        EXPECT_EQ(content(path(u"one"_s + ending)), content(path(u"two"_s + ending))) << ending.toStdString();
    }
}

TEST_F(Proof, tells_which_icon_is_left_out) {
    const QString page = path(u"proof.html"_s);
    // A folder stands where an icon goes.
    ASSERT_TRUE(QDir().mkpath(out() + u"/watch/AppIcon.appiconset/b.png"_s));
    const ProcessResult result =
        generate(flatPicture(u"logo.png"_s, 64, 64), small() + QStringList{u"--proof"_s, page});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(countIn(page, "<li class=\"icon"), 1);
    EXPECT_EQ(countIn(page, "<p class=\"note\">watch/AppIcon.appiconset/b.png is left out: "), 1);
}

TEST_F(Proof, of_an_icns_file_shows_each_picture) {
    const QString page = path(u"proof.html"_s);
    const ProcessResult result = runCli({u"icns"_s, u"list"_s, icns(), u"--json"_s, u"--proof"_s, page});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(printedJson(result).value(u"proof").toString(), page);
    EXPECT_EQ(countIn(page, "<li class=\"icon"), 7);
    EXPECT_EQ(countIn(page, ">is32</h3>"), 1);
    EXPECT_EQ(countIn(page, "colours, 16 points"), 1);
}

TEST_F(Proof, of_an_icns_file_leaves_out_what_can_not_be_shown) {
    QByteArray bytes = content(icns());
    // The first PNG file's pixels.
    bytes.replace(bytes.indexOf("IDAT") + 40, 40, QByteArray(40, 'x'));
    const QString page = path(u"proof.html"_s);
    const ProcessResult result =
        runCli({u"icns"_s, u"list"_s, file(u"damaged.icns"_s, bytes), u"--proof"_s, page});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.errorLines().size(), 1);
    EXPECT_TRUE(result.errors.contains("warning: ic10 is left out: ")) << result.errors.constData();
    EXPECT_EQ(countIn(page, "<li class=\"icon"), 6);
    EXPECT_EQ(countIn(page, "<p class=\"note\">"), 1);
}

TEST_F(Proof, of_several_pictures_is_wrong_usage) {
    const ProcessResult result =
        runCli({u"generate"_s, flatPicture(u"a.png"_s, 64, 64), flatPicture(u"b.png"_s, 64, 64), u"--out"_s,
                out(), u"--proof"_s, path(u"proof.html"_s)});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_TRUE(result.errors.contains("one PICTURE")) << result.errors.constData();
    EXPECT_FALSE(QFileInfo::exists(out()));
}

TEST_F(Proof, of_another_ending_is_wrong_usage) {
    const QString picture = flatPicture(u"logo.png"_s, 64, 64);
    for (const QString& name : {u"proof.pdf"_s, u"proof"_s, u"-"_s, u"proof.html/"_s, u""_s}) {
        const ProcessResult result = generate(picture, {u"--proof="_s + name});
        EXPECT_EQ(result.exitStatus, 2) << name.toStdString();
        EXPECT_FALSE(QFileInfo::exists(out()));
    }
    EXPECT_EQ(runCli({u"icns"_s, u"list"_s, u"x.icns"_s, u"--proof"_s, u"p.svg"_s}).exitStatus, 2);
}

TEST_F(Proof, never_replaces_the_picture_or_an_icon) {
    const QString picture = flatPicture(u"logo.png"_s, 64, 64);
    const QByteArray before = content(picture);
    EXPECT_EQ(generate(picture, {u"--proof"_s, u"./logo.png"_s}).exitStatus, 2);
    EXPECT_EQ(content(picture), before);
    const QString icon = out() + u"/iphone/AppIcon.appiconset/a.png"_s;
    const ProcessResult result = generate(picture, small() + QStringList{u"--proof"_s, icon});
    expectOneError(result, u"the proof sheet would replace an icon"_s);
    EXPECT_EQ(QImage(icon).size(), QSize(40, 40));
}

TEST_F(Proof, that_can_not_be_written_fails_after_the_icons_are_there) {
    const ProcessResult result =
        generate(flatPicture(u"logo.png"_s, 64, 64),
                 small() + QStringList{u"--json"_s, u"--proof"_s, path(u"missing/proof.html"_s)});
    EXPECT_EQ(result.exitStatus, 1);
    const QJsonObject document = QJsonDocument::fromJson(result.output).object();
    EXPECT_EQ(document.value(u"files").toArray().size(), 2);
    EXPECT_FALSE(document.contains(u"proof"_s));
    EXPECT_EQ(document.value(u"errors")[0][u"path"].toString(), path(u"missing/proof.html"_s));
}

TEST_F(Proof, of_no_icon_is_not_written) {
    file(u"proof.html"_s, "mine");
    const ProcessResult result =
        generate(file(u"broken.png"_s, "\x89PNG\r\n\x1a\n"), {u"--proof"_s, path(u"proof.html"_s)});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(content(path(u"proof.html"_s)), QByteArray("mine"));
}

TEST_F(Proof, shows_names_without_obeying_them) {
    const QString picture = flatPicture(u"<b>\u202e\x1b[31m.png"_s, 64, 64);
    const QString page = path(u"proof.html"_s);
    generated(picture, small() + QStringList{u"--proof"_s, page});
    EXPECT_EQ(countIn(page, "<b>"), 0);
    EXPECT_EQ(countIn(page, "\x1b"), 0);
    EXPECT_EQ(countIn(page, "&lt;b&gt;"), 2);
    generated(picture, small() + QStringList{u"--proof"_s, path(u"proof.png"_s)});
}
