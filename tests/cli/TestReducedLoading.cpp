#include "imaging/drawing/GraphicsContext.h"
#include "imaging/icns/IcnsReader.h"
#include "imaging/io/ImageSource.h"
#include "tests/cli/CliTest.h"
#include "tests/support/Pictures.h"

namespace {

/// A render of that size, drawn from the whole picture with all of its reduced copies.
QImage drawn(const QString& picture, const QSizeF& size) {
    const Result<LoadedPicture> whole = ImageSource::loadFile(picture.toStdString());
    if (!whole)
        return {};
    return *drawnRaster(whole->image, size);
}

QImage largestOf(const QByteArray& icns) {
    const Result<IcnsReader> reader = IcnsReader::open(icns);
    if (!reader)
        return {};
    const Result<DecodedPicture> largest = reader->largestPicture();
    return largest ? largest->raster : QImage();
}

/// A command loads only the reduced copies that its renders need. It must know the sizes of all of them.
class ReducedLoading : public CliTest {
  protected:
    QString noise() const { return picture(u"noise.png"_s, Pictures::noise(2048, 2048, 3)); }
};

} // namespace

TEST_F(ReducedLoading, the_containers_pictures_count_beside_the_catalogues) {
    const QString catalogue =
        propertyList(u"catalogue.plist"_s, u"[{}, {}, {}, {'a': entry('small', '{16, 16}')}, {}]"_s);
    const QString source = noise();
    generated(source, {u"--platform"_s, u"mac"_s, u"--catalogue"_s, catalogue});
    const QImage largest = largestOf(content(out() + u"/mac/Application.icns"_s));
    EXPECT_TRUE(Pictures::same(largest, drawn(source, QSizeF(1024, 1024))));
    EXPECT_TRUE(Pictures::same(
        icon(u"mac/AppIcon.appiconset/small.png"_s).convertToFormat(QImage::Format_RGBA8888_Premultiplied),
        drawn(source, QSizeF(16, 16))));
}

TEST_F(ReducedLoading, every_icon_of_a_catalogue_counts) {
    const QString catalogue = propertyList(
        u"catalogue.plist"_s,
        u"[{'a': entry('wide', '{700, 20}'), 'b': entry('small', '{16, 16}')}, {}, {}, {}, {}]"_s);
    const QString source = noise();
    generated(source, {u"--platform"_s, u"iphone"_s, u"--catalogue"_s, catalogue});
    EXPECT_TRUE(Pictures::same(
        icon(u"iphone/AppIcon.appiconset/wide.png"_s).convertToFormat(QImage::Format_RGBA8888_Premultiplied),
        drawn(source, QSizeF(700, 20))));
}

TEST_F(ReducedLoading, a_container_made_alone_has_all_of_its_pictures) {
    const QString source = noise();
    const ProcessResult made = runCli({u"icns"_s, u"make"_s, source, u"--out"_s, path(u"made.icns"_s)});
    ASSERT_EQ(made.exitStatus, 0) << made.errors.constData();
    EXPECT_TRUE(Pictures::same(largestOf(content(path(u"made.icns"_s))), drawn(source, QSizeF(1024, 1024))));
}

TEST_F(ReducedLoading, an_export_has_the_size_that_was_asked_for) {
    const QString source = noise();
    const QString file = path(u"export.png"_s);
    const ProcessResult exported =
        runCli({u"export"_s, source, u"--format"_s, u"png"_s, u"--out"_s, file, u"--size"_s, u"301x200"_s});
    ASSERT_EQ(exported.exitStatus, 0) << exported.errors.constData();
    EXPECT_TRUE(Pictures::same(QImage(file).convertToFormat(QImage::Format_RGBA8888_Premultiplied),
                               drawn(source, QSizeF(301, 200))));
}
