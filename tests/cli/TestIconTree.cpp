#include "tests/cli/CliTest.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

class IconTree : public CliTest, public testing::WithParamInterface<const char*> {
  protected:
    static QString source() { return sample(QString::fromLatin1(GetParam())); }
    static QString builtInCatalogue() { return QStringLiteral(RESOURCES_DIR "/ImageSizeFile.plist"); }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(samples, IconTree, testing::Values("svg", "png"),
                         [](const auto& sample) { return std::string(sample.param); });

TEST_P(IconTree, holds_every_icon_of_the_catalogue_at_its_size_and_the_container_and_nothing_else) {
    generated(source());
    const std::vector<std::string> icons = wanted(builtInCatalogue());
    EXPECT_EQ(icons.size(), 53U);
    EXPECT_EQ(found(), icons);
    std::vector<std::string> files{"mac/Application.icns"};
    for (const std::string& icon : icons)
        files.push_back(icon.substr(0, icon.find(' ')));
    std::ranges::sort(files);
    EXPECT_EQ(tree(), files);
}

TEST_P(IconTree, is_all_sound_PNG) {
    generated(source());
    QStringList arguments{u"-q"_s};
    for (const std::string& name : tree()) {
        if (name.ends_with(".png"))
            arguments << out() + u'/' + QString::fromStdString(name);
    }
    EXPECT_EQ(arguments.size(), 1 + 53);
    const ProcessResult checked = runProcess(u"pngcheck"_s, arguments);
    EXPECT_EQ(checked.exitStatus, 0) << checked.output.toStdString();
    EXPECT_EQ(checked.output.toStdString(), "");
}

TEST_P(IconTree, has_the_same_bytes_after_each_run) {
    generated(source());
    const std::vector<std::string> names = tree();
    ASSERT_EQ(names.size(), 54U);
    const QString first = path(u"first"_s);
    ASSERT_TRUE(QDir().rename(out(), first));
    generated(source());
    ASSERT_EQ(tree(), names);
    for (const std::string& each : names) {
        const QString name = QString::fromStdString(each);
        EXPECT_EQ(content(out() + u'/' + name), content(first + u'/' + name)) << each;
    }
}

TEST_P(IconTree, shows_the_picture) {
    generated(source());
    const QImage expected =
        QImage(sample(u"png"_s)).scaled(256, 256, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QImage made = icon(u"mac/AppIcon.appiconset/icon_256x256.png"_s);
    for (const QPoint at :
         {QPoint(128, 128), QPoint(60, 128), QPoint(128, 40), QPoint(20, 20), QPoint(200, 230)})
        EXPECT_TRUE(isNear(made.pixelColor(at), expected.pixelColor(at), 24)) << at.x() << ", " << at.y();
}

TEST_P(IconTree, replaces_what_it_made_before_and_leaves_other_files_alone) {
    const QByteArray notes = "not ours";
    const QString icons = u"icons/iphone/AppIcon.appiconset/"_s;
    const QString old = file(icons + u"Icon-App-20x20@2x.png"_s, "an older icon");
    const QString contents = file(icons + u"Contents.json"_s, notes);
    const QString hidden = file(u"icons/.notes"_s, notes);
    generated(source());
    generated(source());
    EXPECT_EQ(QImage(old).size(), QSize(40, 40));
    EXPECT_EQ(content(contents), notes);
    EXPECT_EQ(content(hidden), notes);
    EXPECT_EQ(tree().size(), 56U);
}
