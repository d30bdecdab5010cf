#include "tests/cli/CliTest.h"

#include <QDir>
#include <QJsonArray>

#include <gmock/gmock.h>

namespace {

class Check : public CliTest {
  protected:
    ProcessResult checked(const QStringList& more = {}) const {
        return generate(sample(u"svg"_s), QStringList{u"--check"_s} + more);
    }

    /// Expects that a check tells these lines and that nothing is written.
    void expectLines(const QStringList& more, const std::string& lines) const {
        const std::vector<std::string> before = tree(path({}));
        const ProcessResult result = checked(more);
        EXPECT_EQ(result.output.toStdString(), lines);
        EXPECT_EQ(otherErrorLines(result), QStringList());
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(tree(path({})), before);
    }

    void expectNoDifference(const QStringList& more) const {
        const ProcessResult result = checked(more);
        EXPECT_EQ(result.exitStatus, 0) << result.output.toStdString();
        EXPECT_THAT(result.output.toStdString(), testing::EndsWith(" as they would be written\n"));
        EXPECT_EQ(result.output.count('\n'), 1) << result.output.toStdString();
    }
};

} // namespace

TEST_F(Check, a_set_that_is_as_it_would_be_written_passes) {
    generated(sample(u"svg"_s));
    expectNoDifference({});
    expectNoDifference({u"--platform"_s, u"mac"_s});
    EXPECT_EQ(checked({u"--quiet"_s}).output.toStdString(), "");
}

TEST_F(Check, names_what_is_missing_differs_and_has_another_size) {
    generated(sample(u"svg"_s), {u"--platform"_s, u"mac"_s});
    const QString icons = out() + u"/mac/AppIcon.appiconset/"_s;
    ASSERT_TRUE(QFile::remove(icons + u"icon_128x128.png"_s));
    ASSERT_TRUE(QFile::remove(icons + u"icon_16x16.png"_s));
    ASSERT_TRUE(QFile::copy(icons + u"icon_32x32.png"_s, icons + u"icon_16x16.png"_s));
    file(u"icons/mac/AppIcon.appiconset/icon_512x512.png"_s, content(icons + u"icon_512x512.png"_s) + 'x');
    QByteArray container = content(out() + u"/mac/Application.icns"_s);
    container[container.size() / 2] = static_cast<char>(container[container.size() / 2] ^ 1);
    file(u"icons/mac/Application.icns"_s, container);
    const std::string at = icons.toStdString();
    expectLines({u"--platform"_s, u"mac"_s}, at + "icon_128x128.png: missing\n" + at +
                                                 "icon_16x16.png: has another size (32 × 32, not 16 × 16)\n" +
                                                 at + "icon_512x512.png: differs\n" + out().toStdString() +
                                                 "/mac/Application.icns: differs\n");
    const QByteArray document = checked({u"--platform"_s, u"mac"_s, u"--json"_s}).output;
    ProcessResult result;
    result.output = document;
    std::vector<std::string> kinds;
    for (const QJsonValue difference : printedJson(result)[u"differences"_s].toArray())
        kinds.push_back(difference[u"difference"_s].toString().toStdString());
    EXPECT_THAT(kinds, testing::ElementsAre("missing", "other-size", "other-bytes", "other-bytes"));
}

TEST_F(Check, an_option_that_changes_the_icons_shows) {
    generated(sample(u"svg"_s), {u"--platform"_s, u"iphone"_s});
    EXPECT_EQ(checked({u"--platform"_s, u"iphone"_s, u"--background"_s, u"red"_s}).exitStatus, 1);
}

TEST_F(Check, a_folder_that_is_not_there_lacks_every_file) {
    const ProcessResult result = checked();
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output.count(": missing\n"), 54);
    EXPECT_EQ(otherErrorLines(result), QStringList());
    EXPECT_TRUE(tree(path({})).empty());
}

TEST_F(Check, files_that_no_run_would_write_are_not_looked_at) {
    generated(sample(u"svg"_s), {u"--platform"_s, u"iphone"_s});
    file(u"icons/iphone/AppIcon.appiconset/Contents.json"_s, "{}");
    file(u"icons/mac/Application.icns"_s, "of somebody else");
    expectNoDifference({u"--platform"_s, u"iphone"_s});
}

TEST_F(Check, an_icon_that_is_named_twice_is_compared_as_the_last_one) {
    const QString catalogue = propertyList(
        u"twice.plist"_s, u"[{'a': entry('x', '{9, 9}'), 'b': entry('x', '{8, 8}')}, {}, {}, {}, {}]"_s);
    const QStringList options{u"--catalogue"_s, catalogue, u"--platform"_s, u"iphone"_s};
    generated(sample(u"svg"_s), options);
    const ProcessResult result = checked(options);
    EXPECT_EQ(result.exitStatus, 0) << result.output.toStdString();
}

TEST_F(Check, layouts_are_compared_in_every_format) {
    const QStringList options{u"--background"_s, u"white"_s, u"--padding"_s, u"0.15"_s,
                              u"--layout"_s,     u"web"_s,   u"--layout"_s,  u"tauri"_s};
    generated(sample(u"svg"_s), options);
    expectNoDifference(options);
    for (const QString& name : {u"icon.svg"_s, u"favicon.ico"_s, u"src-tauri/icons/icon.icns"_s}) {
        const QByteArray right = content(out() + u'/' + name);
        file(u"icons/"_s + name, right.chopped(1));
        expectLines(options, (out() + u'/' + name + u": differs\n"_s).toStdString());
        file(u"icons/"_s + name, right);
    }
    // Ours is compared; somebody else's is not looked at.
    const QString manifest = out() + u"/manifest.webmanifest"_s;
    const QByteArray ours = content(manifest);
    file(u"icons/manifest.webmanifest"_s, ours + '\n');
    expectLines(options, manifest.toStdString() + ": differs\n");
    file(u"icons/manifest.webmanifest"_s, "{}");
    EXPECT_EQ(checked(options).exitStatus, 0);
}

TEST_F(Check, a_file_that_cant_be_compared_is_an_error) {
    generated(sample(u"svg"_s), {u"--platform"_s, u"iphone"_s});
    const QString icon = out() + u"/iphone/AppIcon.appiconset/Icon-App-60x60@3x.png"_s;
    ASSERT_TRUE(QFile::remove(icon));
    ASSERT_TRUE(QDir().mkpath(icon));
    expectOneError(checked({u"--platform"_s, u"iphone"_s}), u"Icon-App-60x60@3x.png: Is a directory"_s);
}

TEST_F(Check, a_broken_picture_is_an_error) {
    expectOneError(generate(path(u"nowhere.png"_s), {u"--check"_s}), u"nowhere.png"_s);
}
