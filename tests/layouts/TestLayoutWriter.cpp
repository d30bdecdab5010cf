#include "layouts/LayoutCatalogue.h"
#include "layouts/LayoutTemplate.h"
#include "layouts/LayoutVariables.h"
#include "layouts/LayoutWriter.h"
#include "tests/support/Pictures.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// Remembers what was written and what failed.
class Report final : public GenerationObserver {
  public:
    void fileWritten(const File& file) override { files.push_back(file); }
    void failed(const QString& path, const Error& error) override { failures[path] = error.sentence; }

    std::vector<File> files;
    QMap<QString, QString> failures;
};

/// A project's folder.
class Project {
  public:
    Project() {
        m_input.out = m_folder.path();
        m_input.name = QStringLiteral("An \"app\" & more");
        m_input.pictures.main = Pictures::loadedImage(Pictures::translucentNoise(64, 64, 1));
    }

    LayoutInput& input() { return m_input; }
    const LayoutInput& input() const { return m_input; }
    QString path(const QString& name) const { return m_folder.filePath(name); }
    bool has(const char* name) const { return QFile::exists(path(QLatin1String(name))); }

    void put(const QString& name, const QByteArray& content) const {
        EXPECT_TRUE(QFileInfo(path(name)).dir().mkpath(QStringLiteral(".")));
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }

    QByteArray content(const QString& name) const {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        return file.readAll();
    }

    Layout layout(const char* name) const {
        Result<Layout> layout = LayoutCatalogue::load(QLatin1String(name));
        EXPECT_TRUE(layout);
        layout = withVariables(std::move(*layout), m_input.out, m_input.name);
        EXPECT_TRUE(layout);
        return *layout;
    }

    Report write(const char* name) const {
        Report report;
        LayoutWriter::write(layout(name), m_input, report);
        return report;
    }

  private:
    QTemporaryDir m_folder;
    LayoutInput m_input;
};

/// The colour type in a PNG's header.
int colorType(const QByteArray& png) {
    return png.at(25);
}

} // namespace

TEST(LayoutWriter, an_icon_set_has_a_file_for_each_place) {
    for (const char* name : {"xcode", "xcode-single", "xcode-watch", "xcode-watch-single", "xcode-mac"}) {
        const Project project;
        const Report report = project.write(name);
        EXPECT_TRUE(report.failures.isEmpty()) << name;
        const QString folder = QStringLiteral("AppIcon.appiconset/");
        const QJsonObject contents =
            QJsonDocument::fromJson(project.content(folder + QStringLiteral("Contents.json"))).object();
        EXPECT_EQ(contents.value(u"info").toObject().value(u"author").toString().toStdString(), "xcode");
        const QJsonArray images = contents.value(u"images").toArray();
        EXPECT_FALSE(images.isEmpty()) << name;
        for (const QJsonValue& image : images) {
            const QByteArray png = project.content(folder + image[u"filename"].toString());
            const double points = image[u"size"].toString().section(u'x', 0, 0).toDouble();
            const double scale =
                image[u"scale"].isUndefined() ? 1 : image[u"scale"].toString().chopped(1).toDouble();
            const QImage icon = QImage::fromData(png);
            EXPECT_EQ(icon.width(), points * scale);
            EXPECT_EQ(icon.height(), points * scale);
            EXPECT_EQ(colorType(png), image[u"idiom"].toString() == QLatin1String("mac") ? 6 : 2);
        }
    }
}

TEST(LayoutWriter, files_of_pictures_that_were_not_given_are_left_out) {
    Project project;
    project.write("xcode-single");
    EXPECT_FALSE(project.has("AppIcon.appiconset/AppIcon-Dark.png"));
    project.input().pictures.dark = Pictures::image(Pictures::flat(8, 8, Qt::black));
    project.write("xcode-single");
    EXPECT_TRUE(project.has("AppIcon.appiconset/AppIcon-Dark.png"));
    const QByteArray contents = project.content(QStringLiteral("AppIcon.appiconset/Contents.json"));
    EXPECT_TRUE(contents.contains("\"value\" : \"dark\""));
    EXPECT_FALSE(contents.contains("tinted"));
}

TEST(LayoutWriter, a_document_is_copied_where_the_picture_is_one) {
    Project project;
    project.write("web");
    EXPECT_FALSE(project.has("icon.svg"));
    EXPECT_FALSE(project.content(QStringLiteral("head.html")).contains("svg"));
    project.input().pictures.document = "<svg xmlns='http://www.w3.org/2000/svg'/>";
    project.write("web");
    EXPECT_EQ(project.content(QStringLiteral("icon.svg")), project.input().pictures.document);
    EXPECT_TRUE(project.content(QStringLiteral("head.html")).contains("href=\"/icon.svg\""));
}

TEST(LayoutWriter, names_are_escaped_as_the_file_wants_it) {
    const Project project;
    project.write("web");
    const QJsonObject manifest =
        QJsonDocument::fromJson(project.content(QStringLiteral("manifest.webmanifest"))).object();
    EXPECT_EQ(manifest.value(u"name").toString(), QStringLiteral("An \"app\" & more"));
    EXPECT_EQ(manifest.value(u"icons").toArray().size(), 4);
}

TEST(LayoutWriter, a_projects_own_text_stays) {
    const Project project;
    project.put(QStringLiteral("manifest.webmanifest"), "{ \"name\": \"mine\" }");
    const Report report = project.write("web");
    EXPECT_EQ(project.content(QStringLiteral("manifest.webmanifest")), "{ \"name\": \"mine\" }");
    EXPECT_TRUE(report.failures.isEmpty());
    for (const GenerationObserver::File& file : report.files)
        EXPECT_FALSE(file.path.endsWith(QLatin1String("manifest.webmanifest")));
}

TEST(LayoutWriter, text_of_an_earlier_run_is_replaced) {
    Project project;
    project.write("web");
    project.input().name = QStringLiteral("Another");
    project.write("web");
    EXPECT_TRUE(project.content(QStringLiteral("manifest.webmanifest")).contains("Another"));
}

TEST(LayoutWriter, a_resource_with_another_ending_is_a_failure_of_that_file) {
    const Project project;
    project.put(QStringLiteral("res/mipmap-hdpi/ic_launcher.webp"), "webp");
    const Report report = project.write("android");
    EXPECT_EQ(report.failures.keys(),
              QStringList{project.path(QStringLiteral("res/mipmap-hdpi/ic_launcher.png"))});
    EXPECT_TRUE(report.failures.first().startsWith(QLatin1String("ic_launcher.webp is there already")));
    EXPECT_FALSE(project.has("res/mipmap-hdpi/ic_launcher.png"));
    EXPECT_TRUE(project.has("res/mipmap-mdpi/ic_launcher.png"));
}

TEST(LayoutWriter, other_files_are_not_touched) {
    const Project project;
    project.put(QStringLiteral("res/mipmap-hdpi/other.png"), "mine");
    project.put(QStringLiteral("res/values/colors.xml"), "mine");
    project.write("android");
    EXPECT_EQ(project.content(QStringLiteral("res/mipmap-hdpi/other.png")), "mine");
    EXPECT_EQ(project.content(QStringLiteral("res/values/colors.xml")), "mine");
}

TEST(LayoutWriter, the_project_says_the_names_of_its_icons) {
    const Project project;
    project.put(QStringLiteral("AndroidManifest.xml"),
                "<application android:icon=\"@mipmap/launcher_icon\"/>");
    project.write("android");
    EXPECT_TRUE(project.has("res/mipmap-hdpi/launcher_icon.png"));
    EXPECT_FALSE(project.has("res/mipmap-hdpi/ic_launcher.png"));
}

TEST(LayoutWriter, the_folder_of_a_target_is_found) {
    const Project project;
    project.put(QStringLiteral("ios/Zebra/Images.xcassets/Contents.json"), "{}");
    project.put(QStringLiteral("ios/Aardvark/other.txt"), "");
    project.write("react-native");
    EXPECT_TRUE(project.has("ios/Zebra/Images.xcassets/AppIcon.appiconset/Contents.json"));
    EXPECT_FALSE(project.has("ios/App"));
}

TEST(LayoutWriter, a_lacking_line_is_told_and_a_present_one_not) {
    const Project project;
    EXPECT_TRUE(LayoutWriter::notes(project.layout("web"), project.input().out).empty())
        << "without index.html";
    project.put(QStringLiteral("index.html"), "<html></html>");
    EXPECT_EQ(LayoutWriter::notes(project.layout("web"), project.input().out).size(), 3U);
    project.put(QStringLiteral("index.html"), "<link rel='apple-touch-icon' href='apple-touch-icon.png'>");
    EXPECT_EQ(LayoutWriter::notes(project.layout("web"), project.input().out).size(), 2U);
    EXPECT_EQ(project.content(QStringLiteral("index.html")),
              "<link rel='apple-touch-icon' href='apple-touch-icon.png'>");
}

TEST(LayoutWriter, the_same_input_gives_the_same_bytes) {
    const Project one;
    const Project other;
    for (const char* name : {"android", "windows", "xcode-mac"}) {
        const Report report = one.write(name);
        other.write(name);
        for (const GenerationObserver::File& file : report.files) {
            const QString relative = QDir(one.path({})).relativeFilePath(file.path);
            EXPECT_EQ(one.content(relative), other.content(relative)) << relative.toStdString();
        }
    }
}

TEST(LayoutWriter, a_variable_stays_in_the_folder) {
    const Project project;
    Layout layout;
    layout.variables = {
        {QStringLiteral("a"), {}, QStringLiteral("x.txt"), QStringLiteral("(.*)"), QStringLiteral("b")}};
    layout.files.resize(1);
    layout.files[0].path = QStringLiteral("{a}/icon.png");
    project.put(QStringLiteral("x.txt"), "../..");
    const Result<Layout> resolved = withVariables(layout, project.input().out, {});
    ASSERT_FALSE(resolved);
    EXPECT_EQ(resolved.error().code, ErrorCode::Malformed);
    layout.files[0].path = QStringLiteral("{c}/icon.png");
    EXPECT_FALSE(withVariables(layout, project.input().out, {})) << "an unknown variable";
}

TEST(LayoutWriter, a_folder_of_layers_that_iOS_takes_instead_of_the_picture_is_told) {
    const Project project;
    const auto notes = [&](const QByteArray& ios) {
        project.put(QStringLiteral("app.json"),
                    R"({"icon": "./art/icon.png", "foregroundImage": "./art/android-icon-foreground.png",
                        "monochromeImage": "./art/android-icon-monochrome.png",
                        "favicon": "./art/favicon.png", "ios": {"icon": ")" +
                        ios + "\"}}");
        return LayoutWriter::notes(project.layout("expo"), project.input().out);
    };
    const std::vector<LayoutNote> layers = notes("./art/expo.icon");
    ASSERT_EQ(layers.size(), 1U);
    EXPECT_EQ(layers[0].line.toStdString(), R"("ios": { "icon": "./art/icon.png" })");
    EXPECT_TRUE(notes("./art/icon.png").empty());
}

TEST(LayoutWriter, variables_stand_for_their_values_in_notes) {
    const Project project;
    Layout layout;
    layout.files.resize(1);
    layout.files[0].path = QStringLiteral("icon.png");
    layout.notes = {{QStringLiteral("app.json"), QStringLiteral("{ \"icon\": \"{name}\" }"),
                     QStringLiteral("\"icon\": *\"{name}\"")}};
    const Result<Layout> resolved = withVariables(layout, project.input().out, QStringLiteral("a+b"));
    ASSERT_TRUE(resolved);
    EXPECT_EQ(resolved->notes[0].line, QStringLiteral("{ \"icon\": \"a+b\" }"));
    project.put(QStringLiteral("app.json"), "{\"icon\": \"ab\"}");
    EXPECT_EQ(LayoutWriter::notes(*resolved, project.input().out).size(), 1U);
    project.put(QStringLiteral("app.json"), "{\"icon\": \"a+b\"}");
    EXPECT_TRUE(LayoutWriter::notes(*resolved, project.input().out).empty());
}

TEST(LayoutWriter, a_template_has_both_sides_of_a_file_that_is_not_square) {
    LayoutFile wide;
    wide.path = QStringLiteral("wide.png");
    wide.sizes = {QSize(310, 150)};
    LayoutFile text;
    text.path = QStringLiteral("list.txt");
    text.text = QStringLiteral("{{width:wide.png}} {{height:wide.png}}");
    EXPECT_EQ(filledTemplate(text, {wide, text}, {}, {}).valueOr({}), "310 150");
    text.text = QStringLiteral("{{size:wide.png}}");
    EXPECT_FALSE(checkTemplate(text, {wide, text}));
}
