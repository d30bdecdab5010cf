#include "tests/cli/CliTest.h"
#include "tests/support/IcnsBytes.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>

namespace {

using IcnsBytes::element;
using IcnsBytes::icns;

class IcnsCommands : public CliTest {
  protected:
    ProcessResult run(const QStringList& words) const {
        return runCli(QStringList{u"icns"_s} + words, path({}));
    }

    /// An icns file with an uncompressed picture of 16 × 16 pixels in one colour.
    QString plain(const QString& name, const QByteArray& pixel = QByteArray("\xff\x01\x02\x03", 4)) const {
        return file(name, icns(element("ic04", pixel.repeated(256))));
    }
};

QStringList remarks(const QJsonObject& object) {
    QStringList result;
    for (const QJsonValue& remark : object.value(u"remarks"_s).toArray())
        result << remark.toString();
    return result;
}

} // namespace

TEST_F(IcnsCommands, make_writes_the_same_container_as_generate) {
    const QStringList style{u"--round-corner"_s, u"0.3"_s, u"--border"_s, u"0.1"_s,
                            u"--border-color"_s, u"red"_s};
    generated(sample(u"png"_s), QStringList{u"--platform"_s, u"mac"_s} + style);
    const ProcessResult made =
        run(QStringList{u"make"_s, sample(u"png"_s), u"--out"_s, u"made.icns"_s} + style);
    EXPECT_EQ(made.exitStatus, 0) << made.errors.toStdString();
    EXPECT_EQ(made.output, "made.icns\n");
    EXPECT_FALSE(content(path(u"made.icns"_s)).isEmpty());
    EXPECT_EQ(content(path(u"made.icns"_s)), content(out() + u"/mac/Application.icns"_s));
}

TEST_F(IcnsCommands, make_warns_as_generate_does) {
    const ProcessResult made =
        run({u"make"_s, flatPicture(u"small.png"_s, 30, 20, Qt::red), u"--out"_s, u"a.icns"_s});
    EXPECT_EQ(made.exitStatus, 0);
    ASSERT_EQ(made.errorLines().size(), 2);
    EXPECT_TRUE(made.errorLines()[0].contains(u"smaller"_s));
    EXPECT_TRUE(made.errorLines()[1].contains(u"not square"_s));
}

TEST_F(IcnsCommands, make_fails_with_a_sentence) {
    expectOneError(run({u"make"_s, u"missing.png"_s, u"--out"_s, u"a.icns"_s}), u"missing.png: "_s);
    expectOneError(run({u"make"_s, sample(u"png"_s), u"--out"_s, u"no/folder/a.icns"_s}), u"No such file"_s);
    EXPECT_TRUE(tree(path({})).empty());
}

TEST_F(IcnsCommands, list_prints_a_table) {
    const ProcessResult listed = run({u"list"_s, plain(u"a.icns"_s)});
    EXPECT_EQ(listed.exitStatus, 0);
    EXPECT_EQ(listed.errors, "");
    EXPECT_EQ(listed.output.toStdString(), "type  what                pixels   encoding    bytes\n"
                                           "ic04  picture, 16 points  16 × 16  plain ARGB   1024\n"
                                           "odd: ic04: it holds plain samples, which few readers know\n");
}

TEST_F(IcnsCommands, list_prints_json) {
    const QString name =
        file(u"a.icns"_s, icns(element("TOC ", "") + element("s8mk", QByteArray(256, 'x'))) + "more");
    const QJsonObject document = printedJson(run({u"list"_s, name, u"--json"_s}));
    EXPECT_EQ(document.value(u"file"_s).toString(), name);
    EXPECT_EQ(document.value(u"bytes"_s).toInt(), 8 + 8 + 264 + 4);
    EXPECT_EQ(remarks(document), QStringList({u"4 bytes follow the icon family"_s,
                                              u"it has no picture of a kind that is read here"_s}));
    const QJsonArray elements = document.value(u"elements"_s).toArray();
    ASSERT_EQ(elements.size(), 2);
    const QJsonObject contents = elements[0].toObject();
    EXPECT_EQ(contents.value(u"type"_s).toString(), u"TOC "_s);
    EXPECT_EQ(contents.value(u"what"_s).toString(), u"table of contents"_s);
    EXPECT_FALSE(contents.contains(u"encoding"_s));
    EXPECT_FALSE(contents.contains(u"width"_s));
    EXPECT_EQ(remarks(contents), QStringList{u"it does not agree with the elements"_s});
    const QJsonObject mask = elements[1].toObject();
    EXPECT_EQ(mask.value(u"encoding"_s).toString(), u"mask"_s);
    EXPECT_EQ(mask.value(u"width"_s).toInt(), 16);
    EXPECT_EQ(mask.value(u"bytes"_s).toInt(), 256);
    EXPECT_EQ(remarks(mask), QStringList{u"it is the mask of is32, which is missing"_s});
}

TEST_F(IcnsCommands, what_follows_the_family_is_not_read) {
    // More than a file may have: all of it could not be read.
    const QString name = plain(u"a.icns"_s);
    ASSERT_TRUE(QFile::resize(name, qint64{1} << 33));
    const QJsonObject document = printedJson(run({u"list"_s, name, u"--json"_s}));
    EXPECT_EQ(document.value(u"bytes"_s).toInteger(), qint64{1} << 33);
    EXPECT_EQ(remarks(document), QStringList{u"8589933552 bytes follow the icon family"_s});
    for (const QStringList& words :
         {QStringList{u"extract"_s, name, u"--out"_s, u"out"_s}, {u"make"_s, name, u"--out"_s, u"b.icns"_s}})
        EXPECT_EQ(run(words).exitStatus, 0) << words.first().toStdString();
}

TEST_F(IcnsCommands, list_flags_what_fails_elsewhere) {
    const QByteArray png = content(flatPicture(u"16.png"_s, 16, 16, Qt::blue));
    const QString name =
        file(u"a.icns"_s, icns(element("icp4", png) + element("ic10", QByteArray(512 * 512 * 4, 'x'))));
    const QString listed = QString::fromUtf8(run({u"list"_s, name}).output);
    EXPECT_TRUE(listed.contains(
        u"odd: icp4: application bundles show this type wrongly if it holds a PNG or JPEG 2000 file"_s));
    EXPECT_TRUE(
        listed.contains(u"odd: ic10: it holds 512 × 512 pixels; its type stands for 1024 × 1024 pixels"_s));
}

TEST_F(IcnsCommands, list_escapes_what_a_terminal_would_obey) {
    const ProcessResult listed = run({u"list"_s, file(u"a.icns"_s, icns(element("\x1b[2J", "")))});
    EXPECT_TRUE(listed.output.contains("\\x1b[2J  unknown"));
    EXPECT_FALSE(listed.output.contains('\x1b'));
}

TEST_F(IcnsCommands, extract_keeps_png_files_as_they_are_and_stored_colours_too) {
    const QByteArray png = content(flatPicture(u"picture.png"_s, 32, 32, QColor(1, 2, 3, 4)));
    const QString name =
        file(u"a.icns"_s,
             icns(element("ic11", png) + element("ic04", QByteArray("\2\x64\x32\x19", 4).repeated(256))));
    const ProcessResult extracted = run({u"extract"_s, name, u"--out"_s, u"deep/out"_s});
    EXPECT_EQ(extracted.exitStatus, 0) << extracted.errors.toStdString();
    EXPECT_EQ(extracted.output, "deep/out/ic11_32x32.png\ndeep/out/ic04_16x16.png\n");
    EXPECT_EQ(content(path(u"deep/out/ic11_32x32.png"_s)), png);
    QImage read(path(u"deep/out/ic04_16x16.png"_s));
    read.convertTo(QImage::Format_RGBA8888);
    EXPECT_EQ(QByteArray(reinterpret_cast<const char*>(read.constBits()), 4),
              QByteArray("\x64\x32\x19\2", 4));
}

TEST_F(IcnsCommands, extract_keeps_the_colours_of_translucent_jpeg_2000_pictures) {
    const QString jpeg2000 = pillowPicture(u"picture.jp2"_s, u"picture = Image.new('RGBA', (128, 128))\n"
                                                             "picture.putdata([(2 * x, 2 * y, 255 - x, y % 9)"
                                                             " for y in range(128) for x in range(128)])\n"
                                                             "picture.save(path)"_s);
    const QString name = file(u"a.icns"_s, icns(element("ic07", content(jpeg2000))));
    const ProcessResult extracted = run({u"extract"_s, name, u"--out"_s, u"out"_s});
    EXPECT_EQ(extracted.exitStatus, 0) << extracted.errors.toStdString();
    QImage read(path(u"out/ic07_128x128.png"_s));
    read.convertTo(QImage::Format_RGBA8888);
    ASSERT_EQ(read.size(), QSize(128, 128));
    int wrong = 0;
    for (int y = 0; y < 128; ++y) {
        const uchar* pixel = read.constScanLine(y);
        for (int x = 0; x < 128; ++x, pixel += 4)
            wrong += pixel[0] != 2 * x || pixel[1] != 2 * y || pixel[2] != 255 - x || pixel[3] != y % 9;
    }
    EXPECT_EQ(wrong, 0);
}

TEST_F(IcnsCommands, a_mask_that_is_too_short_is_told_and_its_element_is_not_written) {
    const QByteArray colors = QByteArray("\0\1\2\3", 4).repeated(256);
    const QString sentence = u"the mask s8mk of the element is32 has 255 bytes instead of 256"_s;
    const QString name =
        file(u"a.icns"_s, icns(element("is32", colors) + element("s8mk", QByteArray(255, 'x')) +
                               element("icp5", QByteArray(4 * 32 * 32, 'x'))));
    const ProcessResult extracted = run({u"extract"_s, name, u"--out"_s, u"out"_s});
    expectOneError(extracted, sentence);
    EXPECT_EQ(extracted.output, "out/icp5_32x32.png\n");
    const QString alone =
        file(u"b.icns"_s, icns(element("is32", colors) + element("s8mk", QByteArray(255, 'x'))));
    expectOneError(run({u"make"_s, alone, u"--out"_s, u"c.icns"_s}), sentence);
    expectOneError(runCli({u"export"_s, alone, u"--format"_s, u"png"_s, u"--out"_s, u"c.png"_s}, path({})),
                   sentence);
    EXPECT_FALSE(QFileInfo::exists(path(u"c.icns"_s)) || QFileInfo::exists(path(u"c.png"_s)));
}

TEST_F(IcnsCommands, extract_goes_on_after_a_picture_that_is_none) {
    const QString name = file(u"a.icns"_s, icns(element("ic07", "nothing") + element("abcd", "x") +
                                                element("ic04", QByteArray(1024, 'x'))));
    const ProcessResult extracted = run({u"extract"_s, name, u"--out"_s, u"out"_s});
    expectOneError(extracted, u"the element ic07 holds a picture of an unknown kind"_s);
    EXPECT_EQ(extracted.output, "out/ic04_16x16.png\n");
}

TEST_F(IcnsCommands, extract_fails_with_a_sentence_where_nothing_can_be_written) {
    file(u"in-the-way"_s, "x");
    expectOneError(run({u"extract"_s, plain(u"a.icns"_s), u"--out"_s, u"in-the-way"_s}), u"in-the-way"_s);
    ASSERT_TRUE(QDir(path({})).mkpath(u"out/ic04_16x16.png"_s));
    expectOneError(run({u"extract"_s, path(u"a.icns"_s), u"--out"_s, u"out"_s}), u"out/ic04_16x16.png: "_s);
}

TEST_F(IcnsCommands, files_that_are_none_are_refused) {
    for (const QString& command : {u"list"_s, u"extract"_s}) {
        const QStringList out = command == u"list"_s ? QStringList() : QStringList{u"--out"_s, u"out"_s};
        expectOneError(run(QStringList{command, u"missing.icns"_s} + out), u"No such file"_s);
        expectOneError(run(QStringList{command, path({})} + out), u"Is a directory"_s);
        expectOneError(run(QStringList{command, sample(u"png"_s)} + out), u"not an icns file"_s);
        expectOneError(run(QStringList{command, u"/dev/zero"_s} + out), u"Not a regular file"_s);
    }
    EXPECT_TRUE(tree(path({})).empty());
}

TEST_F(IcnsCommands, a_full_disk_is_an_error_of_standard_output_too) {
    if (!QFileInfo::exists(u"/dev/full"_s))
        GTEST_SKIP() << "this system has no /dev/full";
    const ProcessResult listed = runProcess(u"/bin/sh"_s, {u"-c"_s, u"\"$0\" icns list \"$1\" >/dev/full"_s,
                                                           QStringLiteral(TOBRIMAX_CLI), plain(u"a.icns"_s)});
    expectOneError(listed, u"standard output can't be written"_s);
}

TEST_F(IcnsCommands, each_size_is_drawn_from_what_was_made_for_it) {
    const auto plainOf = [](int side, const char* pixel) {
        return QByteArray(pixel, 4).repeated(qsizetype{side} * side);
    };
    const QString name = file(u"a.icns"_s, icns(element("ic07", plainOf(128, "\xff\xff\0\0")) +
                                                element("ic05", plainOf(32, "\xff\0\xff\0")) +
                                                element("ic04", plainOf(16, "\xff\0\0\xff"))));
    const ProcessResult result = generate(name, {u"--platform"_s, u"mac"_s});
    EXPECT_EQ(result.exitStatus, 0) << result.errors.toStdString();
    const auto shown = [&](const QString& icon) {
        return this->icon(u"mac/AppIcon.appiconset/"_s + icon + u".png"_s).pixelColor(3, 3);
    };
    EXPECT_EQ(shown(u"icon_16x16"_s), QColor(Qt::blue));
    EXPECT_EQ(shown(u"icon_16x16@2x"_s), QColor(Qt::green));
    EXPECT_EQ(shown(u"icon_32x32"_s), QColor(Qt::green));
    EXPECT_EQ(shown(u"icon_128x128"_s), QColor(Qt::red));
    EXPECT_EQ(shown(u"icon_512x512"_s), QColor(Qt::red));
}

TEST_F(IcnsCommands, a_smaller_picture_that_is_broken_is_passed_over_with_a_warning) {
    const QString name =
        file(u"a.icns"_s, icns(element("ic07", QByteArray("\xff\xff\0\0", 4).repeated(128 * 128)) +
                               element("ic04", "broken")));
    const ProcessResult made = run({u"make"_s, name, u"--out"_s, u"b.icns"_s});
    EXPECT_EQ(made.exitStatus, 0);
    EXPECT_TRUE(made.errors.contains("warning: the element ic04 is left out: "));
    // The largest picture is used, so it is an error if that one is broken.
    const QString broken =
        file(u"c.icns"_s, icns(element("ic07", "broken") + element("ic04", QByteArray(1024, 'x'))));
    expectOneError(run({u"make"_s, broken, u"--out"_s, u"d.icns"_s}),
                   u"the element ic07 holds a picture of an unknown kind"_s);
}
