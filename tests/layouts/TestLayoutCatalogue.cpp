#include "layouts/LayoutCatalogue.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class Files {
  public:
    QString write(const char* name, const QByteArray& toml) const {
        QFile file(m_folder.filePath(QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(toml) == toml.size());
        return file.fileName();
    }

  private:
    QTemporaryDir m_folder;
};

std::string refusal(const QString& nameOrPath) {
    const Result<Layout> layout = LayoutCatalogue::load(nameOrPath);
    return layout ? std::string() : layout.error().sentence.toStdString();
}

} // namespace

TEST(LayoutCatalogue, every_built_in_layout_can_be_used) {
    const QStringList names = LayoutCatalogue::names();
    for (const char* name :
         {"android", "capacitor", "electron", "expo", "flutter", "linux", "react-native", "tauri", "web",
          "windows", "xcode", "xcode-mac", "xcode-single", "xcode-watch", "xcode-watch-single"})
        EXPECT_TRUE(names.contains(QLatin1String(name))) << name;
    for (const QString& name : names) {
        const Result<Layout> layout = LayoutCatalogue::load(name);
        ASSERT_TRUE(layout) << name.toStdString() << ": " << layout.error().sentence.toStdString();
        EXPECT_EQ(layout->name, name);
        EXPECT_FALSE(layout->title.isEmpty()) << name.toStdString();
        for (const LayoutFile& file : layout->files)
            EXPECT_FALSE(file.purpose.isEmpty()) << name.toStdString() << " " << file.path.toStdString();
    }
}

TEST(LayoutCatalogue, a_wrong_name_is_told_with_the_nearest) {
    const Result<Layout> layout = LayoutCatalogue::load(QStringLiteral("xcod"));
    ASSERT_FALSE(layout);
    EXPECT_EQ(layout.error().code, ErrorCode::NotFound);
    EXPECT_EQ(layout.error().sentence.toStdString(),
              std::string("there is no layout \"xcod\"; did you mean \"xcode\"?"));
}

TEST(LayoutCatalogue, a_layout_takes_others_in) {
    const Files files;
    files.write("part.toml", "[[file]]\npath = 'a.png'\nsize = 1\n[[file]]\npath = 'b.png'\nsize = 1\n"
                             "[[note]]\nfile = 'x'\nline = 'y'\n");
    const Result<Layout> layout = LayoutCatalogue::load(files.write(
        "whole.toml", "title = 't'\n[[use]]\nlayout = './part.toml'\nat = 'in'\nwithout = ['b.png']\n"
                      "[[file]]\npath = 'c.png'\nsize = 2\n"));
    ASSERT_TRUE(layout) << layout.error().sentence.toStdString();
    EXPECT_EQ(layout->name.toStdString(), "whole");
    ASSERT_EQ(layout->files.size(), 2U);
    EXPECT_EQ(layout->files[0].path.toStdString(), "in/a.png");
    EXPECT_EQ(layout->files[1].path.toStdString(), "c.png");
    ASSERT_EQ(layout->notes.size(), 1U);
    EXPECT_EQ(layout->notes[0].file.toStdString(), "in/x");
}

TEST(LayoutCatalogue, a_layout_that_uses_itself_is_refused) {
    const Files files;
    files.write("b.toml", "[[use]]\nlayout = './a.toml'\n");
    const std::string sentence = refusal(files.write("a.toml", "[[use]]\nlayout = './b.toml'\n"));
    EXPECT_NE(sentence.find("it uses itself"), std::string::npos) << sentence;
}

TEST(LayoutCatalogue, two_files_of_one_path_are_refused) {
    const Files files;
    EXPECT_EQ(refusal(files.write(
                  "a.toml", "[[file]]\npath = 'a.png'\nsize = 1\n[[file]]\npath = 'a.png'\nsize = 2\n")),
              "two files have the path \"a.png\"");
}

TEST(LayoutCatalogue, templates_name_files_that_are_there) {
    const Files files;
    const auto withText = [&](const QByteArray& text) {
        return refusal(
            files.write("a.toml", "[[file]]\npath = 'a.png'\nsize = 1\n[[file]]\npath = 't.txt'\ntext = '" +
                                      text + "'\n"));
    };
    EXPECT_EQ(
        withText("{{path:a.png}} {{size:a.png}} {{name}} {{background}} {{slots}} {{if:a.png}}x{{end}}"), "");
    EXPECT_EQ(withText("{{path:b.png}}"), "the template of \"t.txt\": the layout has no file \"b.png\"");
    EXPECT_EQ(withText("{{nmae}}"), "the template of \"t.txt\": there is no placeholder {{nmae}}");
    EXPECT_EQ(withText("{{end}}"), "the template of \"t.txt\": an {{end}} has no {{if:…}}");
    EXPECT_EQ(withText("{{if:a.png}}"), "the template of \"t.txt\": an {{if:…}} has no {{end}}");
}

TEST(LayoutCatalogue, a_missing_or_large_file_is_refused) {
    const Files files;
    EXPECT_NE(refusal(QStringLiteral("/no/such/layout.toml")), "");
    EXPECT_NE(refusal(files.write("large.toml", QByteArray(10 << 20, '#'))), "");
}
