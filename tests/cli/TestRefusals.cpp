#include "base/SystemError.h"
#include "tests/cli/CliTest.h"
#include "tests/support/Slowness.h"

#include <QFileInfo>

#include <sys/stat.h>

#include <cerrno>

namespace {

/// An impossible request is refused at once, in one line, and leaves nothing behind.
class Refusals : public CliTest {
  protected:
    void expectRefused(const QString& picture, const QString& sentence, const QStringList& more = {}) const {
        const ProcessResult result = generate(picture, more);
        expectOneError(result, sentence);
        EXPECT_EQ(result.output.toStdString(), "");
        EXPECT_FALSE(QFileInfo::exists(out()));
        EXPECT_LT(result.seconds, 2 * slowness);
    }
    void expectCatalogueRefused(const QString& catalogue, const QString& sentence) const {
        expectRefused(sample(u"svg"_s), catalogue + u": not a size catalogue: "_s,
                      {u"--catalogue"_s, catalogue});
        expectRefused(sample(u"svg"_s), sentence, {u"--catalogue"_s, catalogue});
    }
    void expectOutRefused(const QString& folder, const QString& sentence) const {
        const ProcessResult result = runCli({u"generate"_s, sample(u"svg"_s), u"--out"_s, folder});
        expectOneError(result, sentence);
        EXPECT_EQ(result.output.toStdString(), "");
        EXPECT_FALSE(QFileInfo(folder).isDir());
        EXPECT_LT(result.seconds, 2 * slowness);
    }
};

QString cause(int error) {
    return systemSentence(error);
}

} // namespace

TEST_F(Refusals, a_picture_that_is_missing) {
    expectRefused(path(u"none.png"_s), u"none.png: "_s + cause(ENOENT));
}

TEST_F(Refusals, a_picture_that_is_a_folder) {
    expectRefused(path(QString()), cause(EISDIR));
}

TEST_F(Refusals, a_picture_that_is_a_FIFO) {
    const QString fifo = path(u"fifo.png"_s);
    ASSERT_EQ(mkfifo(fifo.toUtf8().constData(), 0600), 0);
    expectRefused(fifo, u"fifo.png: "_s);
}

TEST_F(Refusals, a_picture_that_is_empty) {
    expectRefused(file(u"empty.png"_s, {}), u"empty.png: "_s);
}

TEST_F(Refusals, a_picture_that_is_text) {
    expectRefused(file(u"text.png"_s, "Some text, whatever its name says.\n"), u"text.png: not a picture"_s);
}

TEST_F(Refusals, a_PNG_that_breaks_off) {
    const QByteArray whole = content(sample(u"png"_s));
    expectRefused(file(u"half.png"_s, whole.first(whole.size() / 2)), u"half.png: "_s);
}

TEST_F(Refusals, a_JPEG_that_breaks_off) {
    const QByteArray whole =
        content(picture(u"whole.jpg"_s, QImage(sample(u"png"_s)).convertToFormat(QImage::Format_RGB888)));
    expectRefused(file(u"half.jpg"_s, whole.first(whole.size() / 2)), u"half.jpg: "_s);
}

TEST_F(Refusals, a_PNG_that_says_to_be_enormous) {
    const QString bomb = path(u"bomb.png"_s);
    printedByPython(
        u"import struct, sys, zlib\n"
        "def chunk(name, data):\n"
        "    return struct.pack('>I', len(data)) + name + data + struct.pack('>I', zlib.crc32(name + data))\n"
        "with open(sys.argv[1], 'wb') as file:\n"
        "    file.write(b'\\x89PNG\\r\\n\\x1a\\n' + chunk(b'IHDR', struct.pack('>IIBBBBB', 65535, 65535, 8, "
        "6, 0, 0, 0)) +\n"
        "               chunk(b'IDAT', zlib.compress(bytes(1000))) + chunk(b'IEND', b''))\n"_s,
        {bomb});
    expectRefused(bomb, u"65535"_s);
}

TEST_F(Refusals, an_SVG_with_an_external_entity) {
    file(u"secret.txt"_s, "nobody's business");
    const QString drawing = file(
        u"curious.svg"_s, "<?xml version=\"1.0\"?>\n<!DOCTYPE svg [<!ENTITY secret SYSTEM \"secret.txt\">]>\n"
                          "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"100\" height=\"100\">"
                          "<text y=\"50\">&secret;</text></svg>");
    expectRefused(drawing, u"external entity"_s);
}

TEST_F(Refusals, a_drawing_without_memory_for_its_library) {
    // From so little that the program does not start to enough for all.
    for (int kilobytes = 65536; kilobytes < 262144; kilobytes += 1024) {
        const ProcessResult result = runProcess(
            u"/bin/sh"_s, {u"-c"_s, QStringLiteral("ulimit -v %1; exec \"$0\" \"$@\"").arg(kilobytes),
                           QStringLiteral(TOBRIMAX_CLI), u"export"_s, sample(u"svg"_s), u"--format"_s,
                           u"png"_s, u"--size"_s, u"16x16"_s, u"--out"_s, path(u"drawing.png"_s)});
        EXPECT_FALSE(result.errors.contains("missing")) << kilobytes << ": " << result.errors.toStdString();
        if (result.exitStatus == 0)
            break;
    }
}

TEST_F(Refusals, a_catalogue_that_is_missing) {
    const QString catalogue = path(u"none.plist"_s);
    expectRefused(sample(u"svg"_s), catalogue + u": "_s + cause(ENOENT), {u"--catalogue"_s, catalogue});
}

TEST_F(Refusals, a_catalogue_that_is_no_property_list) {
    expectCatalogueRefused(file(u"text.plist"_s, "Some text.\n"), u"not a property list"_s);
}

TEST_F(Refusals, a_catalogue_that_is_a_dictionary) {
    expectCatalogueRefused(propertyList(u"root.plist"_s, u"{'iphone': {}}"_s), u"not an array"_s);
}

TEST_F(Refusals, a_catalogue_with_four_elements) {
    expectCatalogueRefused(propertyList(u"four.plist"_s, u"[{}, {}, {}, {}]"_s), u"4 elements"_s);
}

TEST_F(Refusals, a_catalogue_with_a_number_for_dimensions) {
    const QString catalogue =
        propertyList(u"number.plist"_s, u"[{}, {}, {'first': {'Name': 'a', 'Dimensions': 40}}, {}, {}]"_s);
    expectCatalogueRefused(catalogue,
                           u"the entry \"first\" of watch has a \"Dimensions\" that is not a string"_s);
}

TEST_F(Refusals, a_catalogue_with_a_number_for_a_name) {
    const QString catalogue = propertyList(
        u"number.plist"_s, u"[{'first': {'Name': 7, 'Dimensions': '{40, 40}'}}, {}, {}, {}, {}]"_s);
    expectCatalogueRefused(catalogue, u"the entry \"first\" of iphone has a \"Name\" that is not a string"_s);
}

TEST_F(Refusals, a_catalogue_with_an_entry_that_is_a_string) {
    const QString catalogue = propertyList(u"string.plist"_s, u"[{}, {}, {}, {}, {'first': '{40, 40}'}]"_s);
    expectCatalogueRefused(catalogue, u"the entry \"first\" of android is not a dictionary"_s);
}

TEST_F(Refusals, a_catalogue_with_an_element_that_is_an_array) {
    const QString catalogue = propertyList(u"array.plist"_s, u"[{}, [], {}, {}, {}]"_s);
    expectCatalogueRefused(catalogue, u"element 1 (ipad) is not a dictionary"_s);
}

TEST_F(Refusals, a_catalogue_whose_fault_lies_in_a_platform_that_is_not_made) {
    const QString catalogue =
        propertyList(u"string.plist"_s, u"[{'a': entry('a', '{9, 9}')}, {}, {}, {}, {'b': ''}]"_s);
    expectRefused(sample(u"svg"_s), u"of android"_s,
                  {u"--catalogue"_s, catalogue, u"--platform"_s, u"iphone"_s});
}

TEST_F(Refusals, an_output_folder_that_is_a_file) {
    const QString inTheWay = file(u"file"_s, "in the way");
    expectOutRefused(inTheWay, u"file: "_s + cause(ENOTDIR));
    EXPECT_EQ(content(inTheWay), QByteArray("in the way"));
}

TEST_F(Refusals, an_output_folder_below_a_file) {
    const QString inTheWay = file(u"file"_s, "in the way");
    expectOutRefused(inTheWay + u"/deep/down"_s, u"file/deep/down: "_s + cause(ENOTDIR));
    EXPECT_EQ(content(inTheWay), QByteArray("in the way"));
}

TEST_F(Refusals, an_output_folder_that_is_a_link_to_itself) {
    const QString link = path(u"link"_s);
    ASSERT_TRUE(QFile::link(u"link"_s, link));
    expectOutRefused(link, u"link: "_s + cause(ELOOP));
    expectOutRefused(link + u"/icons"_s, u"link/icons: "_s + cause(ELOOP));
}

TEST_F(Refusals, an_output_folder_where_none_can_be_made) {
    if (!QFileInfo(u"/proc"_s).isDir())
        GTEST_SKIP() << "this system has no /proc";
    expectOutRefused(u"/proc/nothing"_s, u"/proc/nothing"_s);
}

TEST_F(Refusals, an_output_folder_below_a_link_that_leads_nowhere) {
    const QString link = path(u"link"_s);
    ASSERT_TRUE(QFile::link(path(u"nowhere"_s), link));
    expectOutRefused(link + u"/icons"_s, u"link/icons: "_s);
    EXPECT_FALSE(QFileInfo::exists(path(u"nowhere"_s)));
}

TEST_F(Refusals, a_lower_limit_of_the_environment_is_kept_and_named) {
    constexpr const char* limit = "QT_IMAGEIO_MAXALLOC";
    const QString large = pillowPicture(u"large.bmp"_s, u"Image.new('RGB', (600, 600)).save(path)"_s);
    const QString small = pillowPicture(u"small.bmp"_s, u"Image.new('RGB', (500, 500)).save(path)"_s);
    qputenv(limit, "1");
    expectRefused(large, u"the picture has 600 × 600 pixels, for which the 1 MiB of the environment variable "
                         "QT_IMAGEIO_MAXALLOC are too few"_s);
    EXPECT_EQ(generate(small).exitStatus, 0);
    qunsetenv(limit);
    EXPECT_EQ(generate(large).exitStatus, 0);
}
