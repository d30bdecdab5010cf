#include "tests/cli/CliTest.h"

#include <QDirIterator>

namespace {

class Compress : public CliTest {
  protected:
    /// The PNG files below a folder, by their paths in it.
    static QMap<QString, QByteArray> pngs(const QString& folder) {
        QMap<QString, QByteArray> files;
        QDirIterator each(folder, {u"*.png"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (each.hasNext()) {
            const QString path = each.next();
            files[path.mid(folder.size())] = content(path);
        }
        return files;
    }

    /// The sets of a picture, made with both efforts.
    std::pair<QMap<QString, QByteArray>, QMap<QString, QByteArray>> both(const QString& picture,
                                                                         const QStringList& options) {
        const auto made = [&](const QString& effort) {
            const QString folder = path(effort);
            const ProcessResult result = runCli(
                QStringList{u"generate"_s, picture, u"--out"_s, folder, u"--compress"_s, effort} + options);
            EXPECT_EQ(result.exitStatus, 0) << result.errors.toStdString();
            return pngs(folder);
        };
        return {made(u"fast"_s), made(u"best"_s)};
    }

    static char colorType(const QByteArray& png) { return png.at(25); }
};

} // namespace

TEST_F(Compress, the_best_files_are_shorter_and_show_the_same_pixels) {
    const auto [fast, best] = both(sample(u"png"_s), {u"--platform"_s, u"iphone"_s});
    ASSERT_EQ(fast.keys(), best.keys());
    ASSERT_EQ(fast.size(), 9);
    for (const QString& name : fast.keys()) {
        EXPECT_LE(best[name].size(), fast[name].size()) << name.toStdString();
        const auto raster = [](const QByteArray& png) {
            return QImage::fromData(png, "PNG").convertToFormat(QImage::Format_RGBA8888);
        };
        EXPECT_EQ(raster(best[name]), raster(fast[name])) << name.toStdString();
    }
}

TEST_F(Compress, only_icons_of_the_platforms_folders_get_other_samples) {
    const QString picture = flatPicture(u"logo.png"_s, 1024, 1024, QColor(30, 30, 30));
    const auto [fast, best] = both(picture, {u"--platform"_s, u"mac"_s});
    for (const QByteArray& png : best)
        EXPECT_NE(colorType(png), 6);
    for (const QByteArray& png : fast)
        EXPECT_EQ(colorType(png), 6);
    const QByteArray container = content(path(u"best/mac/Application.icns"_s));
    const qsizetype first = container.indexOf("\x89PNG");
    ASSERT_GT(first, 0);
    EXPECT_EQ(colorType(container.mid(first)), 6);
    EXPECT_LE(container.size(), content(path(u"fast/mac/Application.icns"_s)).size());
}

TEST_F(Compress, files_of_layouts_and_files_without_alpha_keep_their_samples) {
    const QString picture = flatPicture(u"logo.png"_s, 1024, 1024, QColor(10, 20, 30));
    const auto layout = both(picture, {u"--layout"_s, u"capacitor"_s});
    ASSERT_FALSE(layout.first.isEmpty());
    for (const QString& name : layout.first.keys())
        EXPECT_EQ(colorType(layout.second[name]), colorType(layout.first[name])) << name.toStdString();
    const auto opaque = both(picture, {u"--platform"_s, u"watch"_s, u"--background"_s, u"white"_s}).second;
    const QByteArray icon = opaque[u"/watch/AppIcon.appiconset/Icon-Watch-24x24@2x.png"_s];
    ASSERT_FALSE(icon.isEmpty());
    EXPECT_EQ(colorType(icon), 2);
}

TEST_F(Compress, a_check_compares_with_the_same_effort) {
    const QString picture = flatPicture(u"logo.png"_s, 64, 64, QColor(10, 20, 30));
    const QStringList call{u"generate"_s, picture, u"-o"_s, path(u"a"_s), u"-p"_s, u"android"_s};
    EXPECT_EQ(runCli(call + QStringList{u"--compress"_s, u"BEST"_s}).exitStatus, 0);
    EXPECT_EQ(runCli(call + QStringList{u"--check"_s, u"--compress"_s, u"best"_s}).exitStatus, 0);
    EXPECT_EQ(runCli(call + QStringList{u"--check"_s}).exitStatus, 1);
}

TEST_F(Compress, another_word_is_refused_with_the_nearest) {
    const ProcessResult result =
        runCli({u"generate"_s, u"a.png"_s, u"-o"_s, path(u"a"_s), u"--compress"_s, u"bets"_s});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_TRUE(result.errors.contains("best")) << result.errors.toStdString();
}
