#include "imaging/io/ImageSource.h"
#include "tests/support/Fixtures.h"
#include "tests/support/Pictures.h"
#include "tests/support/Slowness.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

namespace {

ErrorCode errorOf(const QByteArray& bytes) {
    const Result<LoadedPicture> picture = ImageSource::load(bytes);
    EXPECT_FALSE(picture) << "for " << bytes.left(40).constData();
    return picture ? ErrorCode::EmptySize : picture.error().code;
}

/// A folder with files for one test.
class Folder {
  public:
    std::string path(const char* name) const { return m_folder.filePath(QLatin1String(name)).toStdString(); }
    std::string write(const char* name, const QByteArray& bytes) const {
        QFile file(m_folder.filePath(QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        return path(name);
    }

  private:
    QTemporaryDir m_folder;
};

void expectUnreadable(const std::string& path, ErrorCode code) {
    QElapsedTimer timer;
    timer.start();
    const Result<LoadedPicture> picture = ImageSource::loadFile(path);
    ASSERT_FALSE(picture) << path;
    EXPECT_EQ(picture.error().code, code) << picture.error().sentence.toStdString();
    EXPECT_FALSE(picture.error().sentence.isEmpty());
    EXPECT_LT(timer.elapsed(), 1000 * slowness) << path;
}

/// Sets the limit of Qt's readers in the environment, as long as this object exists.
class EnvironmentLimit {
  public:
    explicit EnvironmentLimit(const char* megabytes) { qputenv(name, megabytes); }
    ~EnvironmentLimit() { qunsetenv(name); }
    EnvironmentLimit(const EnvironmentLimit&) = delete;
    EnvironmentLimit& operator=(const EnvironmentLimit&) = delete;

  private:
    static constexpr const char* name = "QT_IMAGEIO_MAXALLOC";
};

} // namespace

TEST(ImageSource, the_content_decides_never_the_name) {
    const Folder folder;
    const char* const fixtures[] = {"rgb-8.png", "rgb.jpg",    "rgb.tif",       "rgb-big-endian.tif",
                                    "plain.gif", "rgb-24.bmp", "lossless.webp", "packed.icns"};
    for (const char* name : fixtures) {
        for (const char* wrongName : {"picture.svg", "picture.jpg", "picture.png", "picture"}) {
            const Result<LoadedPicture> picture =
                ImageSource::loadFile(folder.write(wrongName, fixture(name)));
            ASSERT_TRUE(picture) << name << " as " << wrongName;
            EXPECT_FALSE(picture->isDrawing);
            EXPECT_FALSE(picture->image.largestRaster().valueOr({}).isNull());
        }
    }
    const QByteArray svg = "<svg xmlns='http://www.w3.org/2000/svg' width='3' height='2'/>";
    const Result<LoadedPicture> drawing = ImageSource::loadFile(folder.write("drawing.png", svg));
    ASSERT_TRUE(drawing);
    EXPECT_TRUE(drawing->isDrawing);
    EXPECT_EQ(drawing->image.size(), QSizeF(3, 2));
}

TEST(ImageSource, a_text_file_with_a_pictures_name_is_of_no_known_format) {
    const Folder folder;
    expectUnreadable(folder.write("text.png", "This is no picture at all.\n"), ErrorCode::UnknownFormat);
    expectUnreadable(folder.write("text.svg", "svg, says the text\n"), ErrorCode::UnknownFormat);
}

TEST(ImageSource, other_formats_are_not_known) {
    EXPECT_EQ(errorOf("%PDF-1.4\n"), ErrorCode::UnknownFormat);
    EXPECT_EQ(errorOf("RIFF\x10\0\0\0WAVEfmt "), ErrorCode::UnknownFormat);
    EXPECT_EQ(errorOf("P6 1 1 255 abc"), ErrorCode::UnknownFormat);
    EXPECT_EQ(errorOf("<?xml version='1.0'?><html><body>text</body></html>"), ErrorCode::UnknownFormat);
    EXPECT_EQ(errorOf(QByteArray(1000, '\0')), ErrorCode::UnknownFormat);
}

TEST(ImageSource, no_bytes_are_of_no_known_format) {
    EXPECT_EQ(errorOf({}), ErrorCode::UnknownFormat);
    const Result<DecodedPicture> decoded = ImageSource::decode({});
    ASSERT_FALSE(decoded);
    EXPECT_EQ(decoded.error().code, ErrorCode::UnknownFormat);
    const Folder folder;
    expectUnreadable(folder.write("empty.png", {}), ErrorCode::UnknownFormat);
}

TEST(ImageSource, the_first_bytes_of_a_format_alone_are_an_error) {
    for (const QByteArray& start :
         {QByteArray("\x89PNG\r\n\x1a\n"), QByteArray("\xff\xd8\xff"), QByteArray("GIF89a"), QByteArray("BM"),
          QByteArray("icns"), QByteArray("RIFF\0\0\0\0WEBP", 12), QByteArray("\x1f\x8b"), QByteArray("<svg")})
        EXPECT_EQ(errorOf(start), ErrorCode::Damaged) << start.toHex().constData();
}

TEST(ImageSource, a_missing_file_is_not_found) {
    const Folder folder;
    expectUnreadable(folder.path("nothing.png"), ErrorCode::NotFound);
    expectUnreadable(folder.path("no-folder/nothing.png"), ErrorCode::NotFound);
    expectUnreadable({}, ErrorCode::NotFound);
}

TEST(ImageSource, a_link_to_nothing_is_not_found_and_one_to_itself_is_not_readable) {
    const Folder folder;
    ASSERT_EQ(symlink("nothing.png", folder.path("dangling.png").c_str()), 0);
    expectUnreadable(folder.path("dangling.png"), ErrorCode::NotFound);
    ASSERT_EQ(symlink("loop.png", folder.path("loop.png").c_str()), 0);
    expectUnreadable(folder.path("loop.png"), ErrorCode::NotReadable);
}

TEST(ImageSource, a_link_to_a_picture_is_followed) {
    const Folder folder;
    folder.write("picture.png", fixture("rgb-8.png"));
    ASSERT_EQ(symlink("picture.png", folder.path("link").c_str()), 0);
    EXPECT_TRUE(ImageSource::loadFile(folder.path("link")));
}

TEST(ImageSource, only_regular_files_are_read) {
    const Folder folder;
    expectUnreadable(folder.path(""), ErrorCode::NotReadable);
    expectUnreadable("/dev/null", ErrorCode::NotReadable);
    expectUnreadable("/dev/zero", ErrorCode::NotReadable);
}

TEST(ImageSource, a_fifo_without_a_writer_is_refused_at_once) {
    const Folder folder;
    ASSERT_EQ(mkfifo(folder.path("fifo.png").c_str(), 0600), 0);
    expectUnreadable(folder.path("fifo.png"), ErrorCode::NotReadable);
}

TEST(ImageSource, a_socket_is_refused_at_once) {
    const Folder folder;
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_GE(descriptor, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, folder.path("socket.png").c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    expectUnreadable(folder.path("socket.png"), ErrorCode::NotReadable);
    close(descriptor);
}

TEST(ImageSource, a_name_of_any_bytes_is_read) {
    const Folder folder;
    const std::string path = folder.write("plain.png", fixture("rgb-8.png"));
    const std::string odd = path + "\xff\xfe \n%00";
    ASSERT_EQ(rename(path.c_str(), odd.c_str()), 0);
    EXPECT_TRUE(ImageSource::loadFile(odd));
    EXPECT_EQ(unlink(odd.c_str()), 0);
}

TEST(ImageSource, the_environment_does_not_raise_the_limit) {
    const EnvironmentLimit limit("0"); // no limit, for Qt
    QByteArray bmp = fixture("rgb-24.bmp");
    qToLittleEndian<qint32>(20000, bmp.data() + 18);
    qToLittleEndian<qint32>(20000, bmp.data() + 22);
    EXPECT_EQ(errorOf(bmp), ErrorCode::TooLarge);
    QByteArray webp = fixture("animated.webp");
    ASSERT_EQ(webp.mid(12, 4), QByteArray("VP8X"));
    webp.replace(24, 6, QByteArray("\x1f\x4e\0\x1f\x4e\0", 6)); // 20000 × 20000
    EXPECT_EQ(errorOf(webp), ErrorCode::TooLarge);
}

TEST(ImageSource, the_limit_is_16384_by_16384_or_as_many_pixels_in_all) {
    EXPECT_TRUE(PictureReader::checkSize(16384, 16384));
    EXPECT_TRUE(PictureReader::checkSize(1000000, 268));
    for (const auto& [w, h] : {std::pair<qint64, qint64>{16384, 16385},
                               {268435457, 1},
                               {0xffffffff, 0xffffffff},
                               {0x7fffffffffffffff, 0x7fffffffffffffff}}) {
        const Result<Done> checked = PictureReader::checkSize(w, h);
        ASSERT_FALSE(checked) << w << " × " << h;
        EXPECT_EQ(checked.error().code, ErrorCode::TooLarge);
    }
    for (const auto& [w, h] : {std::pair<qint64, qint64>{0, 1}, {1, 0}, {-1, -1}}) {
        const Result<Done> checked = PictureReader::checkSize(w, h);
        ASSERT_FALSE(checked) << w << " × " << h;
        EXPECT_EQ(checked.error().code, ErrorCode::Damaged);
    }
}

TEST(ImageSource, what_once_broke_it_is_read_or_refused) {
    const QDir folder(QStringLiteral(PROJECT_DIR "/tests/fuzz/corpus/fuzz_picture"));
    const QStringList names = folder.entryList(QDir::Files);
    EXPECT_FALSE(names.isEmpty());
    for (const QString& name : names) {
        const Result<LoadedPicture> picture = ImageSource::loadFile(folder.filePath(name).toStdString());
        EXPECT_TRUE(picture ? !picture->image.isNull() : !picture.error().sentence.isEmpty())
            << name.toStdString();
    }
}

TEST(ImageSource, a_side_beyond_the_limit_is_refused_for_its_size) {
    for (const auto& [width, height] : {std::pair{1000001, 1}, {1, 1000001}, {16385, 16384}}) {
        const Result<Done> checked = PictureReader::checkSize(width, height);
        ASSERT_FALSE(checked);
        EXPECT_EQ(checked.error().code, ErrorCode::TooLarge);
    }
    EXPECT_TRUE(PictureReader::checkSize(1000000, 268));
    EXPECT_TRUE(PictureReader::checkSize(16384, 16384));
}
