#include "generation/IconSizeCatalogue.h"
#include "tests/generation/FakeSurroundings.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace {

ErrorCode loadingError(const QString& array) {
    GeneratorFixture fixture;
    fixture.useCatalogue(array);
    const Result<IconSizeCatalogue> catalogue = IconSizeCatalogue::load(fixture.bundle);
    EXPECT_FALSE(catalogue);
    return catalogue.error().code;
}

} // namespace

TEST(SizeString, the_first_two_numbers_are_width_and_height) {
    EXPECT_EQ(sizeFromString(text("{20, 30}")), QSizeF(20, 30));
    EXPECT_EQ(sizeFromString(text("20x30@2")), QSizeF(20, 30));
    EXPECT_EQ(sizeFromString(text("w=1 h=2 and 3")), QSizeF(1, 2));
}

TEST(SizeString, blanks_do_not_matter) {
    EXPECT_EQ(sizeFromString(text("{20,30}")), QSizeF(20, 30));
    EXPECT_EQ(sizeFromString(text("  {  20  ,   30 }  ")), QSizeF(20, 30));
    EXPECT_EQ(sizeFromString(text("\t{20\n,30}")), QSizeF(20, 30));
}

TEST(SizeString, numbers_may_have_fractions_signs_and_exponents) {
    EXPECT_EQ(sizeFromString(text("{27.5, 167.25}")), QSizeF(27.5, 167.25));
    EXPECT_EQ(sizeFromString(text("{-4, +5}")), QSizeF(-4, 5));
    EXPECT_EQ(sizeFromString(text("{1e2, .5}")), QSizeF(100, 0.5));
    EXPECT_EQ(sizeFromString(text("{-.5, 2.}")), QSizeF(-0.5, 2));
}

TEST(SizeString, fewer_than_two_numbers_give_an_empty_size) {
    for (const char* string : {"", "{}", "{20}", "20", "{20, }", "size", "{nan, inf}", "-, +.", "{., .}"})
        EXPECT_EQ(sizeFromString(text(string)), QSizeF(0, 0)) << string;
}

TEST(SizeString, a_number_beyond_all_bounds_is_infinite) {
    EXPECT_TRUE(std::isinf(sizeFromString(text("{1e999, 1}")).width()));
}

TEST(SizeString, a_number_that_is_too_near_to_0_is_0) {
    EXPECT_EQ(sizeFromString(text("{1e-400, -1e-400}")), QSizeF(0, 0));
    EXPECT_EQ(sizeFromString(text("{1e-400, 5}")), QSizeF(0, 5));
}

TEST(IconSizeCatalogue, the_built_in_one_has_53_icons) {
    const Result<IconSizeCatalogue> catalogue = IconSizeCatalogue::load(Bundle());
    ASSERT_TRUE(catalogue);
    EXPECT_EQ(catalogue->keys(Platform::Iphone).size(), 9);
    EXPECT_EQ(catalogue->keys(Platform::Ipad).size(), 10);
    EXPECT_EQ(catalogue->keys(Platform::Watch).size(), 17);
    EXPECT_EQ(catalogue->keys(Platform::Mac).size(), 10);
    EXPECT_EQ(catalogue->keys(Platform::Android).size(), 7);
}

TEST(IconSizeCatalogue, each_time_is_as_the_file_is_then) {
    const auto iphoneKeys = [](const GeneratorFixture& fixture) -> std::optional<QStringList> {
        const Result<IconSizeCatalogue> catalogue = IconSizeCatalogue::load(fixture.bundle);
        return catalogue ? std::optional(catalogue->keys(Platform::Iphone)) : std::nullopt;
    };
    GeneratorFixture fixture;
    const auto useKey = [&](const char* key) {
        fixture.useCatalogue(
            text("<dict><key>%1</key><dict/></dict><dict/><dict/><dict/><dict/>").arg(text(key)));
    };
    useKey("first");
    EXPECT_EQ(iphoneKeys(fixture), QStringList(text("first")));
    EXPECT_EQ(iphoneKeys(fixture), QStringList(text("first")));
    useKey("second");
    EXPECT_EQ(iphoneKeys(fixture), QStringList(text("second")));
    fixture.useCatalogue(text("<string/>"));
    EXPECT_EQ(iphoneKeys(fixture), std::nullopt);
    useKey("first");
    EXPECT_EQ(iphoneKeys(fixture), QStringList(text("first")));
}

TEST(IconSizeCatalogue, elements_are_iphone_ipad_watch_mac_and_android) {
    GeneratorFixture fixture;
    QString array;
    for (const char* key : {"a", "b", "c", "d", "e"})
        array += text("<dict>") + entry(text(key), text("{1, 1}"), text("n")) + text("</dict>");
    fixture.useCatalogue(array);
    const Result<IconSizeCatalogue> catalogue = IconSizeCatalogue::load(fixture.bundle);
    ASSERT_TRUE(catalogue);
    EXPECT_EQ(catalogue->keys(Platform::Iphone), QStringList(text("a")));
    EXPECT_EQ(catalogue->keys(Platform::Ipad), QStringList(text("b")));
    EXPECT_EQ(catalogue->keys(Platform::Watch), QStringList(text("c")));
    EXPECT_EQ(catalogue->keys(Platform::Mac), QStringList(text("d")));
    EXPECT_EQ(catalogue->keys(Platform::Android), QStringList(text("e")));
}

TEST(IconSizeCatalogue, a_sixth_element_is_never_read) {
    GeneratorFixture fixture;
    fixture.useCatalogue(text("<dict/><dict/><dict/><dict/><dict/><string>not a dictionary</string>"));
    EXPECT_TRUE(IconSizeCatalogue::load(fixture.bundle));
}

TEST(IconSizeCatalogue, fewer_than_five_elements_are_malformed) {
    EXPECT_EQ(loadingError(text("<dict/><dict/><dict/><dict/>")), ErrorCode::Malformed);
    EXPECT_EQ(loadingError(QString()), ErrorCode::Malformed);
}

TEST(IconSizeCatalogue, something_else_in_a_dictionarys_or_strings_place_is_malformed) {
    EXPECT_EQ(loadingError(text("<dict/><dict/><array/><dict/><dict/>")), ErrorCode::Malformed);
    EXPECT_EQ(loadingError(onlyIphone(text("<key>k</key><string>s</string>"))), ErrorCode::Malformed);
    EXPECT_EQ(
        loadingError(onlyIphone(text("<key>k</key><dict><key>Dimensions</key><integer>20</integer></dict>"))),
        ErrorCode::Malformed);
    EXPECT_EQ(loadingError(onlyIphone(text("<key>k</key><dict><key>Name</key><integer>20</integer></dict>"))),
              ErrorCode::Malformed);
}

TEST(IconSizeCatalogue, without_an_array_there_is_no_catalogue) {
    GeneratorFixture fixture;
    fixture.bundle.catalogue = fixture.path(text("missing.plist"));
    EXPECT_EQ(IconSizeCatalogue::load(fixture.bundle).error().code, ErrorCode::NotFound);
    EXPECT_EQ(IconSizeCatalogue::load(fixture.bundle).error().sentence, text("No such file or directory"));
    fixture.bundle.catalogue = fixture.path(text("dictionary.plist"));
    QFile file(fixture.bundle.catalogue);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<plist><dict/></plist>");
    file.close();
    EXPECT_EQ(IconSizeCatalogue::load(fixture.bundle).error().code, ErrorCode::NotReadable);
    EXPECT_EQ(IconSizeCatalogue::load(fixture.bundle).error().sentence,
              text("not a size catalogue: the property list's root is not an array"));
}

TEST(IconSizeCatalogue, why_an_entry_has_no_size_is_told) {
    const QString key = text("Dimensions");
    EXPECT_TRUE(IconSizeCatalogue::sizeFault({}).contains(text("has no \"Dimensions\"")));
    EXPECT_TRUE(IconSizeCatalogue::sizeFault({{key, text("{20}")}}).contains(text("not two numbers")));
    EXPECT_EQ(IconSizeCatalogue::sizeFault({{key, text("{20, 20}")}}), QString());
    EXPECT_EQ(IconSizeCatalogue::sizeFault({{key, text("{0, 0}")}}), QString());
}

TEST(IconSizeCatalogue, a_missing_name_and_missing_dimensions_have_stand_ins) {
    EXPECT_EQ(IconSizeCatalogue::name({}), text("(null)"));
    EXPECT_EQ(IconSizeCatalogue::dimensions({}), QSizeF(0, 0));
}
