#include "iconfamily/IconFamily.h"
#include "imaging/icns/IconFamilyBlock.h"
#include "tests/support/IcnsBytes.h"
#include "tests/support/Process.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/Refusals.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

using IcnsBytes::element;
using IcnsBytes::icns;
using IcnsBytes::number;

namespace {

std::unique_ptr<BitmapImageRep> bitmap(int size, int seed = 0) {
    BitmapLayout layout;
    layout.pixelsWide = size;
    layout.pixelsHigh = size;
    layout.isPremultiplied = false;
    QByteArray bytes(4 * size * size, Qt::Uninitialized);
    for (qsizetype i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>((i * 37 + i / 64 + seed) % 256);
    return BitmapImageRep::initWithBitmapData(layout, bytes).valueOr(nullptr);
}

std::unique_ptr<BitmapImageRep> mask(int size, int value) {
    BitmapLayout layout;
    layout.pixelsWide = size;
    layout.pixelsHigh = size;
    layout.samplesPerPixel = 1;
    layout.hasAlpha = false;
    return BitmapImageRep::initWithBitmapData(layout, QByteArray(size * size, static_cast<char>(value)))
        .valueOr(nullptr);
}

TEST(IconFamily, an_empty_one_has_no_bytes_and_the_first_element_makes_the_header) {
    const auto family = IconFamily::iconFamily();
    EXPECT_EQ(family->data(), QByteArray());
    EXPECT_TRUE(family->setIconFamilyElement("ic07", bitmap(128).get()));
    EXPECT_EQ(family->data().size(), 8 + 8 + 65536);
    EXPECT_TRUE(family->data().startsWith("icns" + number(8 + 8 + 65536) + "ic07" + number(8 + 65536)));
}

TEST(IconFamily, every_type_takes_its_size_and_no_other) {
    struct Type {
        const char* code;
        int size;
        int bytes;
    };
    const std::vector<Type> types{
        {"ic04", 16, 1024},    {"ic05", 32, 4096},     {"ic06", 48, 9216},     {"ic07", 128, 65536},
        {"ic08", 256, 262144}, {"ic09", 512, 1048576}, {"ic10", 512, 1048576}, {"ic11", 32, 4096},
        {"ic12", 64, 16384},   {"ic13", 256, 262144},  {"ic14", 512, 1048576}, {"is32", 16, 1024},
        {"il32", 32, 4096},    {"ih32", 48, 9216},     {"it32", 128, 65536},   {"s8mk", 16, 256},
        {"l8mk", 32, 1024},    {"h8mk", 48, 2304},     {"t8mk", 128, 16384},   {"ics8", 16, 256},
        {"icl8", 32, 1024},    {"ich8", 48, 2304},     {"ics#", 16, 64},       {"ICN#", 32, 256},
        {"ich#", 48, 576}};
    for (const Type& type : types) {
        const RecordingLog log;
        const FourCharCode code{*reinterpret_cast<const char(*)[5]>(type.code)};
        const auto family = IconFamily::init();
        EXPECT_FALSE(family->setIconFamilyElement(code, bitmap(type.size == 16 ? 32 : 16).get()))
            << type.code;
        EXPECT_EQ(log.lines(), QStringList(QStringLiteral(
                                   "Null data returned to setIconFamilyElement:fromBitmapImageRep:")));
        EXPECT_EQ(family->data(), QByteArray());
        EXPECT_TRUE(family->setIconFamilyElement(code, bitmap(type.size).get())) << type.code;
        EXPECT_EQ(family->data().size(), 16 + type.bytes) << type.code;
        EXPECT_EQ(log.lines().size(), 1);
    }
}

TEST(IconFamily, ic10_takes_512_and_not_1024) {
    const RecordingLog log;
    const auto family = IconFamily::init();
    EXPECT_FALSE(family->setIconFamilyElement("ic10", bitmap(1024).get()));
    EXPECT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(family->setIconFamilyElement("ic10", bitmap(512).get()));
    // 'ic10' is read with 1024 pixels, so the stored 512 are too short.
    EXPECT_EQ(family->bitmapImageRepWithAlphaForIconFamilyElement("ic10"), nullptr);
}

TEST(IconFamily, an_unknown_type_and_no_bitmap_are_silent) {
    const RecordingLog log;
    const auto family = IconFamily::init();
    EXPECT_FALSE(family->setIconFamilyElement("ics4", bitmap(16).get()));
    EXPECT_FALSE(family->setIconFamilyElement("ABCD", bitmap(16).get()));
    EXPECT_FALSE(family->setIconFamilyElement("ic04", nullptr));
    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_EQ(family->data(), QByteArray());
}

TEST(IconFamily, an_icn_element_is_its_bits_twice) {
    const auto family = IconFamily::init();
    ASSERT_TRUE(family->setIconFamilyElement("ICN#", bitmap(32).get()));
    const QByteArray stored = family->data().mid(16);
    ASSERT_EQ(stored.size(), 256);
    EXPECT_EQ(stored.first(128), stored.last(128));
}

TEST(IconFamily, new_elements_come_last_and_known_ones_are_replaced_where_they_are) {
    const QByteArray foreign =
        element("name", "unknown") + element("l8mk", QByteArray(1024, 'a')) + element("info", "x");
    const auto family = IconFamily::initWithData(icns(foreign) + "what follows");
    ASSERT_TRUE(family->setIconFamilyElement("l8mk", mask(32, 'b').get()));
    ASSERT_TRUE(family->setIconFamilyElement("s8mk", mask(16, 'c').get()));
    EXPECT_EQ(family->data(), icns(element("name", "unknown") + element("l8mk", QByteArray(1024, 'b')) +
                                   element("info", "x") + element("s8mk", QByteArray(256, 'c'))));
}

TEST(IconFamily, of_two_elements_of_one_type_the_first_counts) {
    const QByteArray first = element("s8mk", QByteArray(256, 'a'));
    const QByteArray second = element("s8mk", QByteArray(256, 'b'));
    const auto family = IconFamily::initWithData(icns(first + second));
    ASSERT_TRUE(family->setIconFamilyElement("s8mk", mask(16, 'c').get()));
    EXPECT_EQ(family->data(), icns(element("s8mk", QByteArray(256, 'c')) + second));
}

TEST(IconFamily, any_bytes_are_accepted_and_kept_until_an_element_is_stored_in_vain) {
    for (const QByteArray& bytes :
         {QByteArray("not icns at all"), QByteArray("icns"), QByteArray("icns\0\0\0\7", 8),
          QByteArray("icns\0\0\1\0", 8), "icns" + number(12) + "abcd", icns(element("s8mk", "x")).chopped(1),
          QByteArray("\0", 1)}) {
        const RecordingLog log;
        const auto family = IconFamily::initWithData(bytes);
        ASSERT_NE(family, nullptr);
        EXPECT_FALSE(family->setIconFamilyElement("ic04", bitmap(16).get()));
        EXPECT_EQ(log.lines(), QStringList(QStringLiteral("SetIconFamilyData() returned error -50")));
        EXPECT_EQ(family->data(), bytes);
        EXPECT_EQ(family->bitmapImageRepWithAlphaForIconFamilyElement("ic04"), nullptr);
    }
}

TEST(IconFamily, stored_samples_come_back_as_they_are_and_are_said_to_be_premultiplied) {
    const auto source = bitmap(32);
    const auto family = IconFamily::init();
    ASSERT_TRUE(family->setIconFamilyElement("ic05", source.get()));
    const auto decoded = family->bitmapImageRepWithAlphaForIconFamilyElement("ic05");
    ASSERT_NE(decoded, nullptr);
    EXPECT_EQ(decoded->pixelSize(), QSize(32, 32));
    EXPECT_EQ(decoded->bitsPerPixel(), 32);
    EXPECT_EQ(decoded->bytesPerRow(), 128);
    EXPECT_TRUE(decoded->layout().isAlphaFirst);
    EXPECT_TRUE(decoded->layout().isPremultiplied);
    EXPECT_TRUE(decoded->layout().hasAlpha);
    EXPECT_FALSE(decoded->isPlanar());
    EXPECT_EQ(decoded->bitmapData(), QByteArrayView(family->data()).sliced(16));
    // The source's pixels are straight R, G, B, A.
    const QByteArrayView in = source->bitmapData();
    const QByteArrayView out = decoded->bitmapData();
    for (qsizetype i = 0; i < in.size(); i += 4) {
        ASSERT_EQ(out[i], in[i + 3]);
        ASSERT_EQ(out[i + 1], in[i]);
        ASSERT_EQ(out[i + 2], in[i + 1]);
        ASSERT_EQ(out[i + 3], in[i + 2]);
    }
}

TEST(IconFamily, only_the_types_of_colours_are_read) {
    const auto family = IconFamily::init();
    for (const FourCharCode type : {FourCharCode("s8mk"), FourCharCode("ics8"), FourCharCode("ics#")}) {
        ASSERT_TRUE(family->setIconFamilyElement(type, bitmap(16).get()));
        EXPECT_EQ(family->bitmapImageRepWithAlphaForIconFamilyElement(type), nullptr);
    }
    EXPECT_EQ(family->bitmapImageRepWithAlphaForIconFamilyElement("ic04"), nullptr) << "not there";
}

TEST(IconFamily, an_older_types_alpha_is_its_mask_over_what_is_stored) {
    const QByteArray colors("\x0f\x01\x02\x03", 4);
    QByteArray data;
    for (int i = 0; i < 32 * 32; ++i)
        data += colors;
    const auto alpha = [](const IconFamily& family) {
        return static_cast<uchar>(
            family.bitmapImageRepWithAlphaForIconFamilyElement("il32")->bitmapData()[0]);
    };
    const auto opaque = IconFamily::initWithData(icns(element("il32", data)));
    EXPECT_EQ(alpha(*opaque), 255);
    const auto masked =
        IconFamily::initWithData(icns(element("l8mk", QByteArray(1024, '\x81')) + element("il32", data)));
    EXPECT_EQ(alpha(*masked), 0x8f);
    const auto shortMask =
        IconFamily::initWithData(icns(element("l8mk", QByteArray(1023, '\x81')) + element("il32", data)));
    EXPECT_EQ(alpha(*shortMask), 255);
    const auto longMask =
        IconFamily::initWithData(icns(element("l8mk", QByteArray(2000, '\x40')) + element("il32", data)));
    EXPECT_EQ(alpha(*longMask), 0x4f);
}

TEST(IconFamily, an_element_that_is_too_short_is_null_and_of_one_too_long_the_beginning_counts) {
    const QByteArray exact(1024, 'x');
    const auto decoded = [](const QByteArray& data) {
        return IconFamily::initWithData(icns(element("ic04", data)))
            ->bitmapImageRepWithAlphaForIconFamilyElement("ic04");
    };
    EXPECT_EQ(decoded(exact.first(1023)), nullptr);
    EXPECT_EQ(decoded({}), nullptr);
    ASSERT_NE(decoded(exact), nullptr);
    ASSERT_NE(decoded(exact + "more"), nullptr);
    EXPECT_EQ(decoded(exact + "more")->bitmapData().toByteArray(), exact);
}

TEST(IconFamily, packed_colours_of_other_writers_are_unpacked) {
    // A run of 130 bytes and a run of 126 bytes make one channel of 16 × 16.
    const auto channel = [](char value) {
        return QByteArray("\xff", 1) + value + QByteArray("\xfb", 1) + value;
    };
    const QByteArray packed = channel(10) + channel(20) + channel(30);
    const auto family =
        IconFamily::initWithData(icns(element("is32", packed) + element("s8mk", QByteArray(256, '\x80'))));
    const auto decoded = family->bitmapImageRepWithAlphaForIconFamilyElement("is32");
    ASSERT_NE(decoded, nullptr);
    EXPECT_EQ(decoded->bitmapData().last(4).toByteArray(), QByteArray("\x80\x0a\x14\x1e", 4));
    Refusals::eachBeginning(packed, [](const QByteArray& bytes) {
        EXPECT_EQ(IconFamily::initWithData(icns(element("is32", bytes)))
                      ->bitmapImageRepWithAlphaForIconFamilyElement("is32"),
                  nullptr);
    });
    EXPECT_EQ(IconFamily::initWithData(icns(element("it32", "abc")))
                  ->bitmapImageRepWithAlphaForIconFamilyElement("it32"),
              nullptr);
}

TEST(IconFamily, each_type_is_read_in_its_size_and_with_its_mask) {
    struct Type {
        const char* code;
        int size;
        const char* mask;
    };
    const Type types[] = {{"ic04", 16, nullptr},   {"ic05", 32, nullptr},  {"ic06", 48, nullptr},
                          {"ic07", 128, nullptr},  {"ic08", 256, nullptr}, {"ic09", 512, nullptr},
                          {"ic10", 1024, nullptr}, {"ic11", 32, nullptr},  {"ic12", 64, nullptr},
                          {"ic13", 256, nullptr},  {"ic14", 512, nullptr}, {"is32", 16, "s8mk"},
                          {"il32", 32, "l8mk"},    {"ih32", 48, "h8mk"},   {"it32", 128, "t8mk"}};
    for (const Type& type : types) {
        QByteArray samples(4 * type.size * type.size, Qt::Uninitialized);
        for (qsizetype i = 0; i < samples.size(); ++i)
            samples[i] = static_cast<char>(i % 4 == 0 ? 0 : i % 251);
        QByteArray elements = element(type.code, samples);
        QByteArray expected = samples;
        if (type.mask != nullptr) {
            // Masks of other types are ignored.
            for (const char* mask : {"s8mk", "l8mk", "h8mk", "t8mk"})
                elements +=
                    element(mask, QByteArray(128 * 128, std::string(mask) == type.mask ? '\x42' : '\x18'));
            for (qsizetype i = 0; i < expected.size(); i += 4)
                expected[i] = '\x42';
        }
        const auto decoded = IconFamily::initWithData(icns(elements))
                                 ->bitmapImageRepWithAlphaForIconFamilyElement(
                                     FourCharCode(qFromBigEndian<quint32>(type.code)));
        ASSERT_NE(decoded, nullptr) << type.code;
        EXPECT_EQ(decoded->pixelSize(), QSize(type.size, type.size)) << type.code;
        EXPECT_TRUE(decoded->bitmapData() == expected) << type.code;
    }
}

TEST(IconFamily, a_1024_type_that_was_stored_with_512_is_shown_and_not_decoded) {
    const auto family = IconFamily::iconFamily();
    ASSERT_TRUE(family->setIconFamilyElement("ic10", bitmap(512).get()));
    EXPECT_EQ(family->bitmapImageRepWithAlphaForIconFamilyElement("ic10"), nullptr);
    const Image shown = family->imageWithAllReps();
    ASSERT_EQ(shown.representations().size(), 1U);
    EXPECT_EQ(shown.size(), QSizeF(512, 512));
}

TEST(IconFamily, translucent_samples_are_shown_as_straight_and_decoded_as_they_are) {
    const QByteArray samples = QByteArray("\x80\xc8\x64\x32", 4).repeated(256);
    const auto family = IconFamily::initWithData(icns(element("ic04", samples)));
    const Image image = family->imageWithAllReps();
    const auto* shown = dynamic_cast<const BitmapImageRep*>(image.representations().front().get());
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->bitmapData().first(4).toByteArray(), QByteArray("\x64\x32\x19\x80", 4));
    const auto decoded = family->bitmapImageRepWithAlphaForIconFamilyElement("ic04");
    EXPECT_EQ(decoded->bitmapData().first(4).toByteArray(), QByteArray("\x80\xc8\x64\x32", 4));
    EXPECT_TRUE(decoded->layout().isPremultiplied);
}

TEST(IconFamily, packed_colours_of_128_pixels_are_unpacked_behind_their_four_bytes) {
    QByteArray packed(4, '\0');
    for (const char value : {'\x0a', '\x14', '\x1e'}) {
        // 126 runs of 130 bytes and one run of 4 make 16384 bytes.
        for (int i = 0; i < 126; ++i)
            packed += QByteArray("\xff", 1) + value;
        packed += QByteArray("\x81", 1) + value;
    }
    const auto decoded = IconFamily::initWithData(icns(element("it32", packed)))
                             ->bitmapImageRepWithAlphaForIconFamilyElement("it32");
    ASSERT_NE(decoded, nullptr);
    EXPECT_EQ(decoded->bitmapData().toByteArray(), QByteArray("\xff\x0a\x14\x1e", 4).repeated(128 * 128));
    packed[3] = '\1';
    EXPECT_EQ(IconFamily::initWithData(icns(element("it32", packed)))
                  ->bitmapImageRepWithAlphaForIconFamilyElement("it32"),
              nullptr);
}

TEST(IconFamily, packed_colours_may_be_longer_than_plain_ones) {
    const QByteArray channel = QByteArray("\0\x0a", 2).repeated(256);
    const QByteArray packed =
        channel + QByteArray("\0\x14", 2).repeated(256) + QByteArray("\0\x1e", 2).repeated(256);
    const auto family = IconFamily::initWithData(icns(element("is32", packed)));
    EXPECT_EQ(
        family->bitmapImageRepWithAlphaForIconFamilyElement("is32")->bitmapData().first(4).toByteArray(),
        QByteArray("\xff\x0a\x14\x1e", 4));
    EXPECT_EQ(family->imageWithAllReps().representations().size(), 1U);
}

TEST(IconFamily, an_element_of_another_length_is_replaced_among_the_others) {
    for (const QByteArray& older : {QByteArray("short"), QByteArray(5000, 'l'), QByteArray()}) {
        const auto family = IconFamily::initWithData(
            icns(element("abcd", "before") + element("ic04", older) + element("efgh", "after")));
        ASSERT_TRUE(family->setIconFamilyElement("ic04", bitmap(16).get()));
        const QByteArray data = family->data();
        const QByteArray stored = data.sliced(8 + 14 + 8, 1024);
        EXPECT_EQ(data, icns(element("abcd", "before") + element("ic04", stored) + element("efgh", "after")));
    }
}

TEST(IconFamily, a_handle_is_taken_unchecked_and_without_a_word) {
    const RecordingLog log;
    EXPECT_EQ(IconFamily::iconFamilyWithIconFamilyHandle("no icns")->data(), "no icns");
    EXPECT_EQ(IconFamily::initWithIconFamilyHandle({})->data(), QByteArray());
    EXPECT_EQ(IconFamily::initWithContentsOfFile(QStringLiteral("/nowhere")), nullptr);
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST(IconFamily, its_bytes_are_its_own) {
    char bytes[] = "bytes of another";
    const auto family = IconFamily::initWithData(QByteArray::fromRawData(bytes, 5));
    const QByteArray before = family->data();
    bytes[0] = 'x';
    EXPECT_EQ(family->data(), "bytes");
    EXPECT_EQ(before, "bytes");
}

TEST(IconFamilyBlock, a_block_never_grows_beyond_what_its_length_can_tell) {
    const QByteArray before = icns(element("abcd", "x"));
    QByteArray block = before;
    // The view claims this length, but its bytes are never read.
    const QByteArrayView huge(before.constData(), qsizetype{0xffffffff});
    const Result<Done> stored = IconFamilyBlock::setIconFamilyData(block, "efgh", huge);
    ASSERT_FALSE(stored);
    EXPECT_EQ(IconFamilyBlock::platformStatus(stored.error()), -108);
    EXPECT_EQ(block, before);
}

class IconFamilyFiles : public testing::Test {
  protected:
    std::unique_ptr<IconFamily> fromFile(const QByteArray& bytes) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        return IconFamily::iconFamilyWithContentsOfFile(path);
    }

    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("a.icns"));
};

TEST_F(IconFamilyFiles, a_file_is_read_as_far_as_its_header_tells) {
    const QByteArray bytes = icns(element("abcd", "x"));
    const auto family = fromFile(bytes);
    ASSERT_NE(family, nullptr);
    EXPECT_EQ(family->data(), bytes);
    const auto followed = fromFile(bytes + "what follows");
    ASSERT_NE(followed, nullptr);
    EXPECT_EQ(followed->data(), bytes);
    EXPECT_EQ(fromFile(bytes.chopped(1)), nullptr);
    for (const quint32 length : {0U, 4U, 7U})
        EXPECT_EQ(fromFile("icns" + IcnsBytes::number(length)), nullptr) << length;
    EXPECT_EQ(fromFile("icnt" + bytes.mid(4)), nullptr);
    EXPECT_EQ(fromFile({}), nullptr);
    EXPECT_EQ(IconFamily::iconFamilyWithContentsOfFile(folder.filePath(QStringLiteral("missing"))), nullptr);
    EXPECT_EQ(IconFamily::iconFamilyWithContentsOfFile(folder.path()), nullptr);
    EXPECT_EQ(IconFamily::iconFamilyWithContentsOfFile({}), nullptr);
}

TEST_F(IconFamilyFiles, what_is_stored_is_what_a_parser_of_its_own_expects) {
    struct Type {
        const char (&code)[5];
        int size;
    };
    const Type types[] = {{"ic04", 16},  {"ic05", 32},  {"ic06", 48}, {"ic07", 128}, {"ic08", 256},
                          {"ic09", 512}, {"ic10", 512}, {"ic11", 32}, {"ic12", 64},  {"ic13", 256},
                          {"ic14", 512}, {"is32", 16},  {"il32", 32}, {"ih32", 48},  {"it32", 128},
                          {"s8mk", 16},  {"l8mk", 32},  {"h8mk", 48}, {"t8mk", 128}, {"ics8", 16},
                          {"icl8", 32},  {"ich8", 48},  {"ics#", 16}, {"ICN#", 32},  {"ich#", 48}};
    const auto family = IconFamily::iconFamily();
    for (const Type& type : types)
        ASSERT_TRUE(family->setIconFamilyElement(type.code, bitmap(type.size, type.size).get())) << type.code;
    ASSERT_TRUE(family->writeToFile(path));
    const ProcessResult checked = runProcess(
        QStringLiteral(PYTHON3),
        {QStringLiteral("-B"), QStringLiteral(PROJECT_DIR "/tests/imaging/icns/check_store.py"), path});
    EXPECT_EQ(checked.output, "25 elements\n") << checked.errors.toStdString();
}

/// Loads every hostile file as the bytes of a family.
TEST(IconFamilyHostile, any_bytes_are_kept_and_whatever_can_be_read_of_them_is_whole) {
    const QTemporaryDir folder;
    const ProcessResult made = runProcess(
        QStringLiteral(PYTHON3),
        {QStringLiteral("-B"), QStringLiteral(PROJECT_DIR "/tests/imaging/icns/hostile.py"), folder.path()});
    ASSERT_EQ(made.exitStatus, 0) << made.errors.toStdString();
    QFile list(folder.filePath(QStringLiteral("expected.json")));
    ASSERT_TRUE(list.open(QIODevice::ReadOnly));
    const QJsonObject cases = QJsonDocument::fromJson(list.readAll()).object();
    EXPECT_GE(cases.size(), 300);
    const char* const readable[] = {"ic04", "ic05", "ic06", "ic07", "ic08", "ic09", "ic10", "ic11",
                                    "ic12", "ic13", "ic14", "is32", "il32", "ih32", "it32"};
    for (auto it = cases.begin(); it != cases.end(); ++it) {
        const std::string name = it.key().toStdString();
        const QString file = folder.filePath(it.key() + QStringLiteral(".icns"));
        QFile opened(file);
        ASSERT_TRUE(opened.open(QIODevice::ReadOnly));
        const QByteArray bytes = opened.readAll();
        const QJsonObject expected = it.value().toObject();
        EXPECT_EQ(IconFamily::initWithContentsOfFile(file) != nullptr,
                  expected.value(QStringLiteral("isWhole")).toBool())
            << name;
        const auto family = IconFamily::initWithData(bytes);
        EXPECT_EQ(family->data(), bytes) << name;
        EXPECT_EQ(IconFamily::initWithPasteboardPropertyList(bytes, {})->data(), bytes) << name;
        for (const char* type : readable) {
            const auto decoded = family->bitmapImageRepWithAlphaForIconFamilyElement(
                FourCharCode(qFromBigEndian<quint32>(type)));
            EXPECT_TRUE(!decoded || decoded->bitmapData().size() ==
                                        qsizetype{4} * decoded->pixelsWide() * decoded->pixelsHigh());
        }
        const auto shown = family->imageWithAllReps().representations().size();
        EXPECT_EQ(static_cast<int>(shown), expected.value(QStringLiteral("pictures")).toInt()) << name;
    }
}

TEST_F(IconFamilyFiles, is_written_in_place) {
    fromFile("an older and longer file");
    QFile::link(path, folder.filePath(QStringLiteral("link")));
    struct stat before = {};
    ASSERT_EQ(stat(path.toLocal8Bit().constData(), &before), 0);
    const auto family = IconFamily::initWithData("bytes");
    EXPECT_TRUE(family->writeToFile(folder.filePath(QStringLiteral("link"))));
    struct stat after = {};
    ASSERT_EQ(stat(path.toLocal8Bit().constData(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_size, 5);
    EXPECT_FALSE(family->writeToFile(folder.filePath(QStringLiteral("no/such/folder"))));
}

TEST_F(IconFamilyFiles, is_written_to_a_name_that_begins_with_a_colon) {
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder.path()));
    EXPECT_TRUE(IconFamily::initWithData("bytes")->writeToFile(QStringLiteral(":w")));
    ASSERT_TRUE(QDir::setCurrent(before));
    EXPECT_EQ(QFileInfo(folder.filePath(QStringLiteral("./:w"))).size(), 5);
}

TEST_F(IconFamilyFiles, a_full_disk_is_a_failure) {
    if (!QFileInfo::exists(QStringLiteral("/dev/full")))
        GTEST_SKIP() << "this system has no /dev/full";
    // With a few bytes the flush fails; with many bytes the write fails.
    const auto family = IconFamily::initWithData("bytes");
    EXPECT_FALSE(family->writeToFile(QStringLiteral("/dev/full")));
    EXPECT_FALSE(
        IconFamily::initWithData(QByteArray(1 << 20, 'b'))->writeToFile(QStringLiteral("/dev/full")));
}

} // namespace
