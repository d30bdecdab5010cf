#include "files/Folder.h"
#include "generation/GenerationPlan.h"
#include "generation/IconContainer.h"
#include "generation/OutputFolder.h"
#include "imaging/icns/IcnsReader.h"
#include "imaging/png/PngReader.h"
#include "tests/generation/FakeSurroundings.h"
#include "tests/support/Files.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

namespace {

GenerationPlan planOf(const GeneratorFixture& fixture, int index) {
    return {*IconSizeCatalogue::load(fixture.bundle), Platforms::ofIndex(index), fixture.screen.scale()};
}

/// The size of a PNG file, or of the largest picture of an icns file.
QSize sizeOnDisk(const QString& path) {
    const QByteArray bytes = contents(path);
    if (path.endsWith(text(".png"))) {
        const Result<DecodedPicture> png = readPng(bytes);
        return png ? png->raster.size() : QSize();
    }
    const Result<IcnsReader> icns = IcnsReader::open(bytes);
    if (!icns)
        return {};
    const Result<DecodedPicture> largest = icns->largestPicture();
    return largest ? largest->raster.size() : QSize();
}

/// Generates, and expects that the result follows the plan: each file in its order, written or failed, with
/// its size; and afterwards exactly the remaining files on the disk. `root` is the folder of the files.
void expectPlanned(GeneratorFixture& fixture, int index, const QString& root) {
    const GenerationPlan plan = planOf(fixture, index);
    fixture.observer = {};
    fixture.generate(index);
    QStringList paths;
    std::vector<PlannedFile> written;
    for (const PlannedFile& file : plan.files()) {
        paths << (file.hasPath ? root : fixture.input.out) + u'/' + file.path;
        const bool isFolderThere = file.isFolderMade || QFileInfo(QFileInfo(paths.last()).path()).isDir();
        if (file.canBeWritten() && isFolderThere)
            written.push_back(file);
    }
    EXPECT_EQ(fixture.observer.paths, paths);
    ASSERT_EQ(fixture.observer.files.size(), written.size());
    for (std::size_t i = 0; i < written.size(); ++i) {
        const GenerationObserver::File& told = fixture.observer.files[i];
        EXPECT_EQ(told.path, root + u'/' + written[i].path);
        EXPECT_EQ(told.idiom, written[i].idiom);
        EXPECT_EQ(told.pixelSize, written[i].pixelSize) << told.path.toStdString();
    }
    QStringList remaining;
    for (const PlannedFile& file : plan.remainingFiles()) {
        if (!file.isFolderMade && !QFileInfo(QFileInfo(root + u'/' + file.path).path()).isDir())
            continue;
        remaining << QDir::cleanPath(file.path);
        EXPECT_EQ(sizeOnDisk(root + u'/' + file.path), file.pixelSize) << file.path.toStdString();
    }
    remaining.sort();
    EXPECT_EQ(GeneratorFixture::filesBelow(root), remaining);
}

const QString oddEntries =
    // Pairs of entries with the same name: with one size; with two sizes; with a second size that can't be
    // made; with two spellings of the name.
    entry(text("a1"), text("{20, 20}"), text("same")) + entry(text("a2"), text("{20, 20}"), text("same")) +
    entry(text("b1"), text("{30, 30}"), text("twice")) + entry(text("b2"), text("{31, 17}"), text("twice")) +
    entry(text("c1"), text("{8, 8}"), text("stays")) + entry(text("c2"), text("{0, 0}"), text("stays")) +
    entry(text("d1"), text("{9, 9}"), text("spelled")) +
    entry(text("d2"), text("{7, 7}"), text("./spelled")) +
    // Odd names.
    entry(text("e1"), text("{10, 10}"), QString()) + entry(text("e2"), text("{10, 10}"), text("sub/icon")) +
    entry(text("e3"), text("{11, 11}"), text("/leading")) +
    entry(text("e4"), text("{12, 12}"), text("../out")) +
    entry(text("e5"), text("{12, 12}"), text("a/../b")) +
    entry(text("e6"), text("{13, 13}"), text("i%41 ü")) + entry(text("e7"), text("{13, 13}"), text("..")) +
    entry(text("e8"), text("{13, 13}"), text(".")) +
    entry(text("e9"), text("{14, 14}"), text("Application.icns")) +
    text("<key>f1</key><dict><key>Dimensions</key><string>{15, 15}</string></dict>") +
    // Odd sizes.
    text("<key>g1</key><dict><key>Name</key><string>no size</string></dict><key>g2</key><dict/>") +
    entry(text("h1"), text("{-20, 20}"), text("negative")) +
    entry(text("h2"), text("{0, 20}"), text("flat")) +
    entry(text("h3"), text("{1e999, 20}"), text("infinite")) +
    entry(text("h4"), text("nan, inf"), text("words")) +
    entry(text("h5"), text("{100000, 100000}"), text("huge")) +
    entry(text("h6"), text("{1e-7, 1}"), text("noise")) +
    entry(text("h7"), text("{0.5, 0.25}"), text("part")) +
    entry(text("h8"), text("{27.5, 16.25}"), text("parts")) +
    entry(text("h9"), text("{20}"), text("one number")) + entry(text("i1"), text("{700, 1}"), text("wide"));

} // namespace

TEST(GenerationPlan, a_generation_does_what_it_says) {
    for (const int index : {0, 1, 2, 3, 4, 5, 6, -1}) {
        for (const int scale : {1, 2, 3}) {
            SCOPED_TRACE(testing::Message() << "index " << index << ", scale " << scale);
            GeneratorFixture fixture;
            fixture.screen.factor = scale;
            expectPlanned(fixture, index, fixture.folder.path());
        }
    }
}

TEST(GenerationPlan, a_generation_of_an_odd_catalogue_does_what_it_says) {
    for (const int index : {0, 1, 2, 3, 4, 5}) {
        for (const int scale : {1, 2, 3}) {
            SCOPED_TRACE(testing::Message() << "index " << index << ", scale " << scale);
            GeneratorFixture fixture;
            fixture.useCatalogue((text("<dict>") + oddEntries + text("</dict>")).repeated(5));
            fixture.screen.factor = scale;
            expectPlanned(fixture, index, fixture.folder.path());
        }
    }
}

TEST(GenerationPlan, an_odd_catalogue_in_numbers) {
    GeneratorFixture fixture;
    fixture.useCatalogue(onlyIphone(oddEntries));
    const GenerationPlan plan = planOf(fixture, 0);
    EXPECT_EQ(plan.files().size(), 30U);
    EXPECT_EQ(std::ranges::count_if(plan.files(), &PlannedFile::canBeWritten), 18);
    QStringList remaining;
    for (const PlannedFile& file : plan.remainingFiles())
        remaining << file.path.section(u'/', 2) +
                         text(" %1 %2").arg(file.pixelSize.width()).arg(file.pixelSize.height());
    EXPECT_EQ(remaining,
              QStringList({text("same.png 20 20"), text("twice.png 31 17"), text("stays.png 8 8"),
                           text("./spelled.png 7 7"), text(".png 10 10"), text("sub/icon.png 10 10"),
                           text("/leading.png 11 11"), text("i%41 ü.png 13 13"), text("...png 13 13"),
                           text("..png 13 13"), text("Application.icns.png 14 14"), text("(null).png 15 15"),
                           text("part.png 1 1"), text("parts.png 28 17"), text("wide.png 700 1")}));
}

TEST(GenerationPlan, a_folder_that_is_there_is_used_though_it_is_not_made) {
    GeneratorFixture fixture;
    fixture.useCatalogue(onlyIphone(entry(text("a"), text("{20, 20}"), text("sub/icon"))));
    ASSERT_TRUE(Folder::create(fixture.path(text("iphone/AppIcon.appiconset/sub"))));
    EXPECT_FALSE(planOf(fixture, 0).files().front().isFolderMade);
    expectPlanned(fixture, 0, fixture.folder.path());
    EXPECT_EQ(fixture.files(), QStringList(text("iphone/AppIcon.appiconset/sub/icon.png")));
}

TEST(GenerationPlan, without_icons_of_the_mac_the_containers_folder_is_not_made) {
    for (const bool isThere : {false, true}) {
        GeneratorFixture fixture;
        fixture.useCatalogue(onlyIphone(QString()));
        if (isThere) {
            ASSERT_TRUE(Folder::create(fixture.path(text("mac"))));
        }
        const GenerationPlan plan = planOf(fixture, 4);
        ASSERT_EQ(plan.files().size(), 1U);
        EXPECT_FALSE(plan.files().front().isFolderMade);
        EXPECT_TRUE(plan.files().front().canBeWritten());
        expectPlanned(fixture, 4, fixture.folder.path());
        EXPECT_EQ(fixture.files().size(), isThere ? 1 : 0);
    }
}

TEST(GenerationPlan, icons_that_cannot_be_made_make_the_containers_folder) {
    GeneratorFixture fixture;
    fixture.useCatalogue(text("<dict/><dict/><dict/><dict><key>k</key><dict/></dict><dict/>"));
    expectPlanned(fixture, 4, fixture.folder.path());
    EXPECT_EQ(fixture.files(), QStringList(text("mac/Application.icns")));
}

TEST(GenerationPlan, paths_are_relative_to_the_unescaped_output_folder) {
    GeneratorFixture fixture;
    fixture.useCatalogue(onlyIphone(entry(text("a"), text("{20, 20}"), text("i%41"))));
    fixture.input.out = fixture.path(text("a%20b"));
    ASSERT_TRUE(Folder::create(fixture.path(text("a b/iphone/AppIcon.appiconset"))));
    expectPlanned(fixture, 0, fixture.path(text("a b")));
    EXPECT_EQ(fixture.files(), QStringList(text("a b/iphone/AppIcon.appiconset/i%41.png")));
}

TEST(GenerationPlan, the_built_in_catalogue_in_numbers) {
    const GeneratorFixture fixture;
    const std::pair<int, std::size_t> counts[] = {{0, 9}, {1, 10}, {2, 19}, {3, 17}, {4, 11}, {5, 7}};
    for (const auto& [index, count] : counts) {
        const GenerationPlan plan = planOf(fixture, index);
        EXPECT_EQ(plan.files().size(), count) << index;
        EXPECT_EQ(plan.remainingFiles().size(), count) << index;
        EXPECT_EQ(plan.renders().size(), count + (index == 4 ? IconContainer::sides.size() - 1 : 0)) << index;
        EXPECT_TRUE(std::ranges::all_of(plan.files(), &PlannedFile::isFolderMade)) << index;
    }
}

TEST(GenerationPlan, a_file_has_its_idiom_name_path_and_sizes) {
    GeneratorFixture fixture;
    fixture.useCatalogue(text("<dict/><dict/><dict/><dict/><dict>") +
                         entry(text("k"), text("{57, 27.5}"), text("icon")) + text("</dict>"));
    fixture.screen.factor = 2;
    const GenerationPlan plan = planOf(fixture, 5);
    ASSERT_EQ(plan.files().size(), 1U);
    const PlannedFile& file = plan.files().front();
    EXPECT_EQ(file.idiom, text("android"));
    EXPECT_EQ(file.name, text("icon"));
    EXPECT_EQ(file.path, text("android/icons/icon.png"));
    EXPECT_FALSE(file.isContainer);
    ASSERT_EQ(file.renders.size(), 1U);
    EXPECT_EQ(file.renders.front().points, QSizeF(28.5, 13.75));
    EXPECT_EQ(file.renders.front().pixels, QSizeF(57, 27.5));
    EXPECT_EQ(file.pixelSize, QSize(57, 28));
    EXPECT_EQ(plan.renders(), std::vector({QSizeF(57, 27.5)}));
}

TEST(GenerationPlan, the_container_follows_the_macs_icons_with_its_seven_renders) {
    GeneratorFixture fixture;
    fixture.screen.factor = 2;
    const GenerationPlan plan = planOf(fixture, 4);
    EXPECT_EQ(std::ranges::count_if(plan.files(), &PlannedFile::isContainer), 1);
    const PlannedFile& container = plan.files().back();
    EXPECT_TRUE(container.isContainer);
    EXPECT_EQ(container.idiom, text("mac"));
    EXPECT_EQ(container.name, text("Application"));
    EXPECT_EQ(container.path, text("mac/Application.icns"));
    ASSERT_EQ(container.renders.size(), IconContainer::sides.size());
    for (std::size_t i = 0; i < container.renders.size(); ++i) {
        const double side = IconContainer::sides.at(i);
        EXPECT_EQ(container.renders[i].points, QSizeF(side, side));
        EXPECT_EQ(container.renders[i].pixels, QSizeF(2 * side, 2 * side));
    }
    EXPECT_EQ(container.pixelSize, QSize(1024, 1024)) << "2048 pixels have no element";
}

TEST(GenerationPlan, a_display_whose_scale_no_element_has_makes_no_container) {
    GeneratorFixture fixture;
    fixture.screen.factor = 3;
    EXPECT_FALSE(planOf(fixture, 4).files().back().canBeWritten());
}

TEST(GenerationPlan, platforms_are_planned_in_the_order_in_which_they_are_named) {
    const GeneratorFixture fixture;
    const IconSizeCatalogue catalogue = *IconSizeCatalogue::load(fixture.bundle);
    const std::vector platforms{Platform::Watch, Platform::Iphone};
    const GenerationPlan plan(catalogue, platforms, 1);
    EXPECT_EQ(plan.files().size(), 26U);
    EXPECT_EQ(plan.files().front().idiom, text("watch"));
    EXPECT_EQ(plan.files().back().idiom, text("iphone"));
    EXPECT_TRUE(GenerationPlan(catalogue, {}, 1).files().empty());
}

TEST(GenerationPlan, icons_come_in_the_order_of_the_keys_and_a_key_without_an_entry_is_one_too) {
    const QVariantMap dictionary{
        {text("a"), QVariantMap{{text("Name"), text("one")}, {text("Dimensions"), text("{30, 60}")}}},
        {text("b"), QVariantMap{{text("Name"), text("two")}, {text("Dimensions"), text("{10, 20}")}}}};
    const std::vector<PlannedIcon> icons =
        GenerationPlan::icons(dictionary, {text("b"), text("none"), text("a"), text("b")}, 2);
    ASSERT_EQ(icons.size(), 4U);
    EXPECT_EQ(icons[0].name, text("two"));
    EXPECT_EQ(icons[0].render.points, QSizeF(5, 10));
    EXPECT_EQ(icons[0].render.pixels, QSizeF(10, 20));
    EXPECT_EQ(icons[1].name, text("(null)"));
    EXPECT_EQ(icons[1].render.pixels, QSizeF(0, 0));
    EXPECT_EQ(icons[2].name, text("one"));
    EXPECT_EQ(icons[3].name, text("two"));
}

TEST(OutputFolder, a_name_with_a_NUL_or_a_folder_of_two_points_has_no_path) {
    EXPECT_FALSE(OutputFolder::pngIn(text("f"), QStringLiteral("a") + QChar::Null));
    for (const char* name : {"../", "../a", "../..", "a/../b", "/../a"})
        EXPECT_FALSE(OutputFolder::pngIn(text("f"), text(name))) << name;
    // With the suffix these are three points.
    EXPECT_EQ(*OutputFolder::pngIn(text("f"), text("..")), text("f/...png"));
    EXPECT_EQ(*OutputFolder::pngIn(text("f"), text("a/..")), text("f/a/...png"));
    EXPECT_EQ(*OutputFolder::pngIn(text("f"), text("..a")), text("f/..a.png"));
    EXPECT_EQ(*OutputFolder::pngIn(text("f"), QString()), text("f/.png"));
}
