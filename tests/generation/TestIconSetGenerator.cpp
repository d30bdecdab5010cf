#include "files/AtomicFile.h"
#include "files/Folder.h"
#include "generation/IconSetGenerator.h"
#include "imaging/icns/IcnsReader.h"
#include "imaging/io/ImageSource.h"
#include "imaging/png/PngReader.h"
#include "imaging/png/PngWriter.h"
#include "tests/generation/FakeSurroundings.h"
#include "tests/support/Files.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/Text.h"

#include <QDirIterator>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

QStringList idioms(const QStringList& files) {
    QStringList found;
    for (const QString& file : files) {
        const QString idiom = file.section(QLatin1Char('/'), 0, 0);
        if (!found.contains(idiom))
            found << idiom;
    }
    return found;
}

qsizetype threadCount() {
    return static_cast<qsizetype>(
        QDir(text("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
}

class GenerationThreads : public testing::Test {
  protected:
    void SetUp() override {
        if (threadCount() == 0)
            GTEST_SKIP() << "this system does not count threads in /proc";
    }
};

} // namespace

TEST(OutputFolder, the_path_is_plain_concatenation) {
    GeneratorFixture fixture;
    fixture.input.out = text("/Users/a/Out");
    EXPECT_EQ(fixture.generator.appiconsetPathString(text("ipad")),
              text("/Users/a/Out/ipad/AppIcon.appiconset"));
    EXPECT_EQ(fixture.generator.appiconsetPathString(text("android")), text("/Users/a/Out/android/icons"));
    fixture.input.out = text("/");
    EXPECT_EQ(fixture.generator.appiconsetPathString(text("mac")), text("//mac/AppIcon.appiconset"));
    fixture.input.out = text("/a/../b//%41/");
    EXPECT_EQ(fixture.generator.appiconsetPathString(text("mac")),
              text("/a/../b//%41//mac/AppIcon.appiconset"));
    fixture.input.out = QString();
    EXPECT_EQ(fixture.generator.appiconsetPathString(text("%1")), text("/%1/AppIcon.appiconset"));
}

TEST(IconSetGenerator, each_index_writes_its_idioms) {
    const QList<QPair<int, QStringList>> expected{
        {0, {text("iphone")}}, {1, {text("ipad")}},   {2, {text("ipad"), text("iphone")}},
        {3, {text("watch")}},  {4, {text("mac")}},    {5, {text("android")}},
        {6, {text("iphone")}}, {-7, {text("iphone")}}};
    for (const auto& [index, folders] : expected) {
        GeneratorFixture fixture;
        fixture.generate(index);
        EXPECT_EQ(idioms(fixture.files()), folders) << index;
        EXPECT_TRUE(fixture.observer.failures.isEmpty());
    }
}

TEST(IconSetGenerator, every_file_has_its_catalogue_size_and_its_place) {
    GeneratorFixture fixture;
    QStringList expected;
    const IconSizeCatalogue catalogue = *IconSizeCatalogue::load(fixture.bundle);
    for (const Platform platform : Platforms::all) {
        const QString idiom = Platforms::idiom(platform);
        const QString folder =
            idiom == text("android") ? text("android/icons/") : idiom + text("/AppIcon.appiconset/");
        for (const QVariant& entry : catalogue.dictionary(platform))
            expected << folder + IconSizeCatalogue::name(entry.toMap()) + text(".png");
    }
    expected << text("mac/Application.icns");
    expected.sort();
    for (const int index : {2, 3, 4, 5})
        fixture.generate(index);
    EXPECT_EQ(fixture.files(), expected);
    for (const Platform platform : Platforms::all) {
        for (const QVariant& entry : catalogue.dictionary(platform)) {
            const QString name = IconSizeCatalogue::name(entry.toMap());
            const auto file =
                std::ranges::find_if(fixture.observer.files, [&](const GenerationObserver::File& f) {
                    return f.idiom == Platforms::idiom(platform) && f.path.endsWith(name + text(".png"));
                });
            ASSERT_NE(file, fixture.observer.files.end());
            const Result<DecodedPicture> png = readPng(contents(file->path));
            ASSERT_TRUE(png);
            EXPECT_EQ(QSizeF(png->raster.size()), IconSizeCatalogue::dimensions(entry.toMap()));
            EXPECT_EQ(file->pixelSize, png->raster.size());
            EXPECT_EQ(file->bytes, contents(file->path).size());
        }
    }
}

TEST(IconSetGenerator, a_file_holds_exactly_the_renders_pixels) {
    GeneratorFixture fixture;
    fixture.input.style = {true, 0.3F, true, 0.1F, {0.2, 0.9, 0.4, 0.5}};
    fixture.input.picture = Pictures::loadedImage(Pictures::translucentNoise(100, 100, 5));
    fixture.useCatalogue(onlyIphone(entry(text("k"), text("{57, 57}"), text("icon"))));
    fixture.generate(0);
    const QImage render = fixture.generator.renderer()
                              .drawImage(fixture.input.picture, QSizeF(57, 57))
                              .largestRaster()
                              .valueOr({});
    const Result<DecodedPicture> png =
        readPng(contents(fixture.path(text("iphone/AppIcon.appiconset/icon.png"))));
    ASSERT_TRUE(png);
    EXPECT_TRUE(Pictures::same(png->raster, render));
}

TEST(IconSetGenerator, the_display_scale_does_not_change_the_files_sizes) {
    GeneratorFixture fixture;
    fixture.useCatalogue(onlyIphone(entry(text("k"), text("{57, 58}"), text("icon"))));
    for (const int scale : {1, 2, 3}) {
        fixture.screen.factor = scale;
        fixture.generate(0);
        EXPECT_EQ(fixture.observer.files.back().pixelSize, QSize(57, 58)) << scale;
    }
}

TEST(IconSetGenerator, the_folder_is_opened_once_for_each_idiom) {
    for (const auto& [index, times] : {std::pair{0, 1}, {1, 1}, {2, 2}, {3, 1}, {4, 1}, {5, 1}}) {
        GeneratorFixture fixture;
        fixture.generate(index);
        EXPECT_EQ(fixture.workspace.opened, QStringList(times, fixture.input.out)) << index;
    }
}

TEST(IconSetGenerator, iphone_is_written_and_opened_before_ipad) {
    GeneratorFixture fixture;
    QList<QStringList> seen;
    fixture.workspace.onOpen = [&] { seen << idioms(fixture.files()); };
    fixture.generate(2);
    EXPECT_EQ(seen, QList<QStringList>({{text("iphone")}, {text("ipad"), text("iphone")}}));
}

TEST(IconSetGenerator, the_folder_is_opened_before_the_container_is_written) {
    GeneratorFixture fixture;
    bool isThere = true;
    fixture.workspace.onOpen = [&] { isThere = QFile::exists(fixture.path(text("mac/Application.icns"))); };
    fixture.generate(4);
    EXPECT_FALSE(isThere);
    EXPECT_TRUE(QFile::exists(fixture.path(text("mac/Application.icns"))));
}

TEST(IconSetGenerator, the_log_lines_and_their_order) {
    GeneratorFixture fixture;
    const RecordingLog log;
    fixture.generate(2);
    EXPECT_EQ(log.lines(),
              QStringList({text("output url file://") + fixture.input.out + text("/"),
                           text("file://") + fixture.input.out, text("file://") + fixture.input.out}));
}

TEST(IconSetGenerator, a_percent_sign_in_the_path_is_no_directive_in_the_log) {
    GeneratorFixture fixture;
    fixture.input.out = fixture.path(text("50%1 %@"));
    const RecordingLog log;
    fixture.generate(0);
    EXPECT_EQ(log.lines(),
              QStringList({text("output url file://") + fixture.folder.path() + text("/50%251%20%25@"),
                           text("file://") + fixture.input.out}));
}

TEST(IconSetGenerator, the_containers_elements_are_those_of_the_seven_sizes_largest_first) {
    GeneratorFixture fixture;
    fixture.generate(4);
    const QByteArray file = contents(fixture.path(text("mac/Application.icns")));
    const Result<IcnsReader> icns = IcnsReader::open(file);
    ASSERT_TRUE(icns);
    QStringList types;
    for (const IcnsElement& element : icns->elements())
        types << element.type.text();
    EXPECT_EQ(types.join(QLatin1Char(' ')), text("ic10 ic09 ic08 ic07 ic12 il32 l8mk is32 s8mk"));
    const int sizes[] = {1024, 512, 256, 128, 64, 32, 16};
    int next = 0;
    for (const IcnsElement& element : icns->elements()) {
        if (element.type.text().endsWith(text("mk")))
            continue;
        const int size = sizes[next++];
        const Result<DecodedPicture> picture = icns->picture(element);
        ASSERT_TRUE(picture);
        const QImage render = fixture.generator.renderer()
                                  .drawImage(fixture.input.picture, QSizeF(size, size))
                                  .largestRaster()
                                  .valueOr({});
        EXPECT_TRUE(Pictures::same(picture->raster, render)) << size;
    }
}

TEST(IconSetGenerator, the_containers_pictures_are_scaled_with_the_display_and_2048_is_left_out) {
    GeneratorFixture fixture;
    fixture.screen.factor = 2;
    fixture.generate(4);
    const QByteArray file = contents(fixture.path(text("mac/Application.icns")));
    const Result<IcnsReader> icns = IcnsReader::open(file);
    ASSERT_TRUE(icns);
    QStringList types;
    for (const IcnsElement& element : icns->elements())
        types << element.type.text();
    EXPECT_EQ(types.join(QLatin1Char(' ')), text("ic10 ic09 ic08 ic07 ic12 il32 l8mk"));
    const Result<DecodedPicture> largest = icns->largestPicture();
    ASSERT_TRUE(largest);
    EXPECT_EQ(largest->raster.size(), QSize(1024, 1024));
}

TEST(IconSetGenerator, an_empty_platform_makes_no_folder_but_the_output_folder_is_opened) {
    GeneratorFixture fixture;
    fixture.useCatalogue(onlyIphone(QString()));
    fixture.generate(0);
    EXPECT_TRUE(QDir(fixture.folder.path()).isEmpty());
    EXPECT_EQ(fixture.workspace.opened.size(), 1);
}

TEST(IconSetGenerator, without_a_catalogue_the_container_is_tried_and_fails_for_want_of_its_folder) {
    GeneratorFixture fixture;
    fixture.bundle.catalogue = fixture.path(text("missing.plist"));
    fixture.generate(4);
    EXPECT_TRUE(fixture.files().isEmpty());
    EXPECT_EQ(fixture.workspace.opened.size(), 1);
    EXPECT_EQ(fixture.observer.failures.size(), 2);
}

TEST(IconSetGenerator, without_a_catalogue_the_container_is_written_into_an_earlier_runs_folder) {
    GeneratorFixture fixture;
    fixture.bundle.catalogue = fixture.path(text("missing.plist"));
    ASSERT_TRUE(Folder::create(fixture.path(text("mac"))));
    fixture.generate(4);
    EXPECT_EQ(fixture.files(), QStringList(text("mac/Application.icns")));
}

TEST(IconSetGenerator, fewer_than_five_platforms_end_the_generation_before_anything_happens) {
    GeneratorFixture fixture;
    fixture.useCatalogue(text("<dict>") + entry(text("k"), text("{20, 20}"), text("icon")) +
                         text("</dict><dict/><dict/><dict/>"));
    const RecordingLog log;
    fixture.generate(0);
    EXPECT_TRUE(fixture.files().isEmpty());
    EXPECT_TRUE(fixture.workspace.opened.isEmpty());
    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_EQ(fixture.observer.failures.size(), 1);
}

TEST(IconSetGenerator, each_generation_has_the_icons_of_the_catalogue_that_it_is_given) {
    GeneratorFixture fixture;
    fixture.useCatalogue(onlyIphone(entry(text("k"), text("{20, 20}"), text("first"))));
    fixture.generate(0);
    fixture.useCatalogue(onlyIphone(entry(text("k"), text("{20, 20}"), text("second"))));
    fixture.generate(0);
    EXPECT_EQ(fixture.files(), QStringList({text("iphone/AppIcon.appiconset/first.png"),
                                            text("iphone/AppIcon.appiconset/second.png")}));
}

TEST(IconSetGenerator, an_entry_without_a_name_is_called_null) {
    GeneratorFixture fixture;
    fixture.useCatalogue(
        onlyIphone(text("<key>k</key><dict><key>Dimensions</key><string>{20, 20}</string></dict>")));
    fixture.generate(0);
    EXPECT_EQ(fixture.files(), QStringList(text("iphone/AppIcon.appiconset/(null).png")));
}

TEST(IconSetGenerator, an_entry_without_dimensions_writes_nothing_and_the_next_follows) {
    GeneratorFixture fixture;
    fixture.useCatalogue(onlyIphone(text("<key>a</key><dict><key>Name</key><string>a</string></dict>") +
                                    entry(text("b"), text("{20, 20}"), text("b"))));
    fixture.generate(0);
    EXPECT_EQ(fixture.files(), QStringList(text("iphone/AppIcon.appiconset/b.png")));
    EXPECT_EQ(fixture.observer.failures.size(), 1);
}

TEST(IconSetGenerator, two_entries_of_one_name_write_one_file) {
    GeneratorFixture fixture;
    fixture.useCatalogue(onlyIphone(entry(text("a"), text("{20, 20}"), text("same")) +
                                    entry(text("b"), text("{30, 30}"), text("same"))));
    fixture.generate(0);
    EXPECT_EQ(fixture.files(), QStringList(text("iphone/AppIcon.appiconset/same.png")));
    EXPECT_EQ(readPng(contents(fixture.path(text("iphone/AppIcon.appiconset/same.png"))))->raster.size(),
              fixture.observer.files.back().pixelSize);
}

TEST(IconSetGenerator, a_name_with_a_slash_needs_a_folder_that_is_there) {
    GeneratorFixture fixture;
    fixture.useCatalogue(onlyIphone(entry(text("a"), text("{20, 20}"), text("sub/icon"))));
    const RecordingLog log;
    fixture.generate(0);
    EXPECT_TRUE(fixture.files().isEmpty());
    EXPECT_EQ(fixture.observer.failures.size(), 1);
    EXPECT_FALSE(log.lines().join(QString()).contains(text("Error"))) << "a failed write is not logged";
    ASSERT_TRUE(Folder::create(fixture.path(text("iphone/AppIcon.appiconset/sub"))));
    fixture.generate(0);
    EXPECT_EQ(fixture.files(), QStringList(text("iphone/AppIcon.appiconset/sub/icon.png")));
}

TEST(IconSetGenerator, files_of_the_same_name_are_replaced_and_others_left_alone) {
    GeneratorFixture fixture;
    fixture.useCatalogue(onlyIphone(entry(text("a"), text("{20, 20}"), text("icon"))));
    fixture.generate(0);
    const QString foreign = fixture.path(text("iphone/AppIcon.appiconset/Contents.json"));
    ASSERT_TRUE(AtomicFile::write(foreign, "{}"));
    const QString path = fixture.path(text("iphone/AppIcon.appiconset/icon.png"));
    ASSERT_TRUE(AtomicFile::write(path, "old"));
    const RecordingLog log;
    fixture.generate(0);
    EXPECT_TRUE(readPng(contents(path)));
    EXPECT_EQ(contents(foreign), "{}");
    EXPECT_EQ(fixture.files().size(), 2);
    EXPECT_FALSE(log.lines().join(QString()).contains(text("Error"))) << "an existing folder is no error";
}

TEST(IconSetGenerator, a_folder_that_cannot_be_made_is_logged_and_the_rest_tried) {
    GeneratorFixture fixture;
    fixture.useCatalogue(onlyIphone(entry(text("a"), text("{20, 20}"), text("icon"))));
    ASSERT_TRUE(AtomicFile::write(fixture.path(text("iphone")), "a file in the way"));
    const RecordingLog log;
    fixture.generate(0);
    ASSERT_EQ(log.lines().size(), 3);
    EXPECT_TRUE(log.lines()[1].startsWith(text("Error："))) << log.lines()[1].toStdString();
    EXPECT_EQ(fixture.observer.failures.size(), 1);
    EXPECT_EQ(contents(fixture.path(text("iphone"))), "a file in the way");
    EXPECT_EQ(fixture.workspace.opened.size(), 1);
}

TEST(IconSetGenerator, an_escape_in_the_chosen_folders_name_parts_the_folder_from_the_file) {
    GeneratorFixture fixture;
    fixture.useCatalogue(onlyIphone(entry(text("a"), text("{20, 20}"), text("icon"))));
    fixture.input.out = fixture.path(text("a%20b"));
    const RecordingLog log;
    fixture.generate(0);
    EXPECT_TRUE(QFileInfo(fixture.path(text("a%20b/iphone/AppIcon.appiconset"))).isDir());
    EXPECT_TRUE(fixture.files().isEmpty());
    EXPECT_EQ(fixture.observer.failures.size(), 1);
    EXPECT_FALSE(log.lines().join(QString()).contains(text("Error")));
    // The file goes into the folder with the unescaped name if that folder exists.
    ASSERT_TRUE(Folder::create(fixture.path(text("a b/iphone/AppIcon.appiconset"))));
    fixture.generate(0);
    EXPECT_EQ(fixture.files(), QStringList(text("a b/iphone/AppIcon.appiconset/icon.png")));
}

TEST(IconSetGenerator, a_path_that_is_taken_as_it_is_keeps_its_escapes) {
    GeneratorFixture fixture;
    fixture.useCatalogue(text("<dict/><dict/><dict/><dict>") +
                         entry(text("a"), text("{20, 20}"), text("icon")) + text("</dict><dict/>"));
    fixture.input.isUnescaped = false;
    for (const char* name : {"a%20b", "a%00", "a%ff"}) {
        fixture.input.out = fixture.path(text(name));
        fixture.generate(4);
        EXPECT_EQ(GeneratorFixture::filesBelow(fixture.input.out),
                  QStringList({text("mac/AppIcon.appiconset/icon.png"), text("mac/Application.icns")}))
            << name;
    }
    EXPECT_TRUE(fixture.observer.failures.isEmpty());
}

TEST(IconSetGenerator, an_escape_in_an_entrys_name_stays) {
    GeneratorFixture fixture;
    fixture.useCatalogue(onlyIphone(entry(text("a"), text("{20, 20}"), text("i%41"))));
    fixture.generate(0);
    EXPECT_EQ(fixture.files(), QStringList(text("iphone/AppIcon.appiconset/i%41.png")));
}

TEST(IconSetGenerator, the_containers_path_is_unescaped_too) {
    GeneratorFixture fixture;
    fixture.useCatalogue(onlyIphone(QString()));
    fixture.input.out = fixture.path(text("a%20b"));
    ASSERT_TRUE(Folder::create(fixture.path(text("a b/mac"))));
    fixture.generate(4);
    EXPECT_EQ(fixture.files(), QStringList(text("a b/mac/Application.icns")));
}

TEST(IconSetGenerator, an_unescaped_path_with_a_NUL_is_no_path) {
    GeneratorFixture fixture;
    fixture.useCatalogue(onlyIphone(entry(text("a"), text("{20, 20}"), text("icon"))));
    fixture.input.out = fixture.path(text("a%00b"));
    fixture.generate(0);
    fixture.generate(4);
    EXPECT_TRUE(fixture.files().isEmpty());
    EXPECT_EQ(fixture.observer.failures.size(), 2);
}

TEST(IconSetGenerator, the_style_counts_from_the_moment_it_changes) {
    GeneratorFixture fixture;
    fixture.input.picture = Pictures::loadedImage(Pictures::flat(64, 64, Qt::black));
    const QString icon = entry(text("k"), text("{40, 40}"), text("icon"));
    fixture.useCatalogue(text("<dict>") + icon + text("</dict><dict>") + icon +
                         text("</dict><dict/><dict/><dict/>"));
    fixture.workspace.onOpen = [&] { fixture.input.style.roundCorner = true; };
    fixture.generate(2);
    const QImage first = readPng(contents(fixture.path(text("iphone/AppIcon.appiconset/icon.png"))))->raster;
    const QImage second = readPng(contents(fixture.path(text("ipad/AppIcon.appiconset/icon.png"))))->raster;
    EXPECT_EQ(Pictures::pixel(first, 0, 0).alpha, 255);
    EXPECT_EQ(Pictures::pixel(second, 0, 0).alpha, 0);
}

TEST(IconSetGenerator, a_second_run_writes_the_same_bytes) {
    GeneratorFixture fixture;
    fixture.generate(4);
    const QByteArray first = contents(fixture.path(text("mac/Application.icns")));
    const QByteArray png = contents(fixture.path(text("mac/AppIcon.appiconset/icon_512x512.png")));
    fixture.generate(4);
    EXPECT_EQ(contents(fixture.path(text("mac/Application.icns"))), first);
    EXPECT_EQ(contents(fixture.path(text("mac/AppIcon.appiconset/icon_512x512.png"))), png);
    EXPECT_FALSE(first.isEmpty());
    EXPECT_FALSE(png.isEmpty());
}

TEST_F(GenerationThreads, a_generation_starts_none) {
    GeneratorFixture fixture;
    fixture.input.picture = Pictures::loadedImage(Pictures::translucentNoise(2048, 2048, 1));
    fixture.input.style = {true, 0.3F, true, 0.1F, {0.2, 0.9, 0.4, 0.5}};
    const qsizetype before = threadCount();
    for (const int index : {2, 3, 4, 5})
        fixture.generate(index);
    EXPECT_EQ(threadCount(), before);
}

TEST_F(GenerationThreads, the_generation_of_a_drawing_with_filters_starts_none) {
    const QByteArray svg = "<svg xmlns='http://www.w3.org/2000/svg' width='200' height='200'>"
                           "<filter id='b'><feGaussianBlur stdDeviation='7'/></filter>"
                           "<rect x='20' y='20' width='150' height='150' filter='url(#b)'/></svg>";
    GeneratorFixture fixture;
    const Result<LoadedPicture> picture = ImageSource::load(svg);
    ASSERT_TRUE(picture);
    fixture.input.picture = picture->image;
    const qsizetype before = threadCount();
    fixture.generate(4);
    EXPECT_TRUE(fixture.observer.failures.isEmpty());
    EXPECT_EQ(threadCount(), before);
}

TEST(IconSetGenerator, the_container_is_not_written_without_one_of_its_pictures) {
    GeneratorFixture fixture;
    fixture.useCatalogue(onlyIphone(QString()));
    ASSERT_TRUE(Folder::create(fixture.path(text("mac"))));
    fixture.screen.factor = 40; // renders of 40960 pixels are larger than every limit
    fixture.generate(4);
    EXPECT_TRUE(fixture.files().isEmpty());
    EXPECT_EQ(fixture.observer.failures.size(), 1);
}

TEST(IconSetGenerator, the_size_told_of_the_container_is_that_of_its_largest_picture) {
    GeneratorFixture fixture;
    fixture.screen.factor = 2;
    fixture.generate(4);
    EXPECT_EQ(fixture.observer.files.back().pixelSize, QSize(1024, 1024));
}

TEST_F(GenerationThreads, a_conversion_that_starts_some_is_seen) {
    const qsizetype before = threadCount();
    QImage large(2048, 2048, QImage::Format_ARGB32);
    large.fill(Qt::red);
    const QImage converted = large.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    ASSERT_FALSE(converted.isNull());
    EXPECT_GT(threadCount(), before);
}

TEST(IconSetGenerator, a_name_that_leads_out_of_the_folder_is_not_written) {
    GeneratorFixture fixture;
    fixture.useCatalogue(onlyIphone(entry(text("a"), text("{20, 20}"), text("../../escaped")) +
                                    entry(text("b"), text("{20, 20}"), text("..inside"))));
    fixture.generate(0);
    EXPECT_EQ(fixture.files(), QStringList(text("iphone/AppIcon.appiconset/..inside.png")));
    EXPECT_EQ(fixture.observer.failures.size(), 1);
}
