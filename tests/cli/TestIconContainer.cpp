#include "tests/cli/CliTest.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

namespace {

/// The common beginning of the scripts. Pictures are compared by their premultiplied pixels, so the colours
/// of transparent pixels do not matter.
const char* const prelude =
    "import sys\n"
    "from PIL import Image\n"
    "set_ = sys.argv[1] + '/AppIcon.appiconset/'\n"
    "container = Image.open(sys.argv[1] + '/Application.icns').icns\n"
    "icons = {1024: 'icon_512x512@2x', 512: 'icon_512x512', 256: 'icon_256x256', 128: 'icon_128x128',\n"
    "         64: 'icon_32x32@2x', 32: 'icon_32x32', 16: 'icon_16x16'}\n"
    "def icon(side): return Image.open(set_ + icons[side] + '.png').convert('RGBA')\n"
    "def element(side):\n"
    "    size = {1024: (512, 512, 2), 64: (32, 32, 2)}.get(side, (side, side, 1))\n"
    "    return container.getimage(size).convert('RGBA')\n"
    "def difference(a, b):\n"
    "    assert a.size == b.size, (a.size, b.size)\n"
    "    a, b = a.convert('RGBa').tobytes(), b.convert('RGBa').tobytes()\n"
    "    return max(abs(p - q) for p, q in zip(a, b))\n";

class IconContainer : public CliTest, public testing::WithParamInterface<const char*> {
  protected:
    /// Makes the Mac's set with rounded, partly transparent edges, so that alpha is compared too.
    QByteArray measured(const QString& script) const {
        generated(sample(QString::fromLatin1(GetParam())),
                  {u"--platform"_s, u"mac"_s, u"--round-corner"_s, u"0.22"_s});
        return printedByPython(QString::fromLatin1(prelude) + script, {out() + u"/mac"_s}).trimmed();
    }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(samples, IconContainer, testing::Values("svg", "png"),
                         [](const auto& sample) { return std::string(sample.param); });

TEST_P(IconContainer, holds_seven_sizes) {
    const QByteArray sizes = measured(u"print(*sorted(w * s for w, h, s in container.itersizes()))"_s);
    EXPECT_EQ(sizes.toStdString(), "16 32 64 128 256 512 1024");
}

TEST_P(IconContainer, has_the_large_pictures_exactly_as_the_files_have_them) {
    const QByteArray differences =
        measured(u"print(*[difference(element(s), icon(s)) for s in (1024, 512, 256, 128, 64)])"_s);
    EXPECT_EQ(differences.toStdString(), "0 0 0 0 0");
}

TEST_P(IconContainer, has_the_small_pictures_as_the_files_but_for_rounding) {
    const QList<QByteArray> differences =
        measured(u"print(*[difference(element(s), icon(s)) for s in (32, 16)])"_s).split(' ');
    ASSERT_EQ(differences.size(), 2);
    EXPECT_LE(differences[0].toInt(), 1);
    EXPECT_LE(differences[1].toInt(), 1);
}

TEST_P(IconContainer, has_the_same_transparency_in_the_small_pictures_as_the_files) {
    const QByteArray same = measured(
        u"alpha = lambda picture: picture.getchannel('A').tobytes()\n"
        "print(*[alpha(element(s)) == alpha(icon(s)) and min(alpha(icon(s))) < 255 for s in (32, 16)])"_s);
    EXPECT_EQ(same.toStdString(), "True True");
}

TEST_P(IconContainer, is_read_by_icns2png_with_the_same_pixels) {
    measured(u"pass"_s);
    const QString mac = out() + u"/mac"_s;
    const QString extracted = path(u"extracted"_s);
    ASSERT_TRUE(QDir().mkdir(extracted));
    const ProcessResult result =
        runProcess(u"icns2png"_s, {u"-x"_s, u"-o"_s, extracted, mac + u"/Application.icns"_s});
    EXPECT_EQ(result.exitStatus, 0) << result.errors.toStdString();
    for (const char* type : {"ic08", "ic09", "ic10", "il32", "is32"})
        EXPECT_TRUE(result.output.contains(QByteArray("'") + type + "' element")) << type;
    QStringList sides{u"1024"_s, u"512"_s, u"256"_s, u"32"_s, u"16"_s};
    const auto fileName = [](const QString& side) { return u"Application_%1x%1x32.png"_s.arg(side); };
    // Newer versions know ic07 and ic12 too.
    if (QFile::exists(extracted + u'/' + fileName(u"128"_s)))
        sides << u"128"_s << u"64"_s;
    std::vector<std::string> files;
    for (const QString& side : sides)
        files.push_back(fileName(side).toStdString());
    EXPECT_THAT(tree(extracted), testing::UnorderedElementsAreArray(files));
    const QByteArray differences =
        printedByPython(QString::fromLatin1(prelude) +
                            u"other = lambda s: Image.open('%s/Application_%dx%dx32.png' % (sys.argv[2], s, "
                            u"s)).convert('RGBA')\n"
                            "print({difference(other(s), element(s)) for s in map(int, sys.argv[3:])})"_s,
                        QStringList{mac, extracted} + sides);
    EXPECT_EQ(differences.trimmed().toStdString(), "{0}");
}

TEST_P(IconContainer, is_as_long_as_it_says) {
    measured(u"pass"_s);
    const QByteArray container = content(out() + u"/mac/Application.icns"_s);
    ASSERT_GT(container.size(), 8);
    EXPECT_EQ(container.first(4).toStdString(), "icns");
    EXPECT_EQ(container.mid(4, 4).toHex().toLongLong(nullptr, 16), container.size());
}
