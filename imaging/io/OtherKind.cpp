#include "imaging/io/OtherKind.h"

#include <QByteArrayView>

#include <algorithm>
#include <array>
#include <cctype>

namespace {

// What to do instead.
constexpr char asVector[] = "save it as SVG or PNG";
constexpr char asBitmap[] = "save it as PNG";
constexpr char asFrame[] = "save one frame as PNG";
constexpr char unpacked[] = "unpack it and take the picture in it";

/// A kind of file that begins with `start` at the byte `at`.
struct Kind {
    QByteArrayView start;
    const char* name;
    const char* advice;
    qsizetype at = 0;
};

/// Kinds whose name follows the word "ftyp" (ISO/IEC 14496-12) come first: each of these files is also taken
/// for a video.
constexpr std::array kinds{
    Kind{"ftypavif", "an AVIF picture", asBitmap, 4},
    Kind{"ftypavis", "an AVIF picture", asBitmap, 4},
    Kind{"ftyphei", "a HEIC picture", asBitmap, 4},
    Kind{"ftyphev", "a HEIC picture", asBitmap, 4},
    Kind{"ftypmif1", "a HEIC picture", asBitmap, 4},
    Kind{"ftypmsf1", "a HEIC picture", asBitmap, 4},
    Kind{"ftypcrx", "a camera's raw picture", asBitmap, 4},
    Kind{"ftypM4A", "a sound", nullptr, 4},
    Kind{"ftyp", "a video", asFrame, 4},
    Kind{"moov", "a video", asFrame, 4},
    Kind{"\x1a\x45\xdf\xa3", "a video", asFrame},
    Kind{"AVI ", "a video", asFrame, 8},
    Kind{QByteArrayView("\0\0\1\xba", 4), "a video", asFrame},
    Kind{QByteArrayView("\0\0\0\x0cJXL \r\n\x87\n", 12), "a JPEG XL picture", asBitmap},
    Kind{"\xff\x0a", "a JPEG XL picture", asBitmap},
    Kind{QByteArrayView("\0\0\0\x0cjP  \r\n\x87\n", 12), "a JPEG 2000 picture", asBitmap},
    Kind{"\xff\x4f\xff\x51", "a JPEG 2000 picture", asBitmap},
    Kind{"%PDF-", "a PDF document", asVector},
    Kind{"%!PS", "a PostScript document", asVector},
    Kind{"\xc5\xd0\xd3\xc6", "an EPS document", asVector},
    Kind{"8BPS", "a PSD document", asBitmap},
    Kind{"gimp xcf", "an XCF document", asBitmap},
    Kind{QByteArrayView("\0\0\2\0", 4), "a Windows cursor", asBitmap},
    Kind{"qoif", "a QOI picture", asBitmap},
    Kind{"DDS ", "a DDS picture", asBitmap},
    Kind{"\x76\x2f\x31\x01", "an OpenEXR picture", asBitmap},
    Kind{"#?RADIANCE", "an HDR picture", asBitmap},
    Kind{"PK\3\4", "a ZIP archive", unpacked},
    Kind{"7z\xbc\xaf\x27\x1c", "a 7z archive", unpacked},
    Kind{"Rar!", "a RAR archive", unpacked},
    Kind{"\xfd"
         "7zXZ",
         "an xz archive", unpacked},
    Kind{"BZh", "a bzip2 archive", unpacked},
    Kind{"\x28\xb5\x2f\xfd", "a zstd archive", unpacked},
    Kind{"ustar", "a tar archive", unpacked, 257},
    Kind{"\x7f"
         "ELF",
         "a program", nullptr},
    Kind{"MZ", "a program", nullptr},
    Kind{"OTTO", "a font", nullptr},
    Kind{QByteArrayView("\0\1\0\0\0", 5), "a font", nullptr},
    Kind{"wOF", "a font", nullptr},
    Kind{"WAVE", "a sound", nullptr, 8},
    Kind{"ID3", "a sound", nullptr},
    Kind{"OggS", "a sound or video", nullptr},
    Kind{"fLaC", "a sound", nullptr},
};

bool isOf(const Kind& kind, QByteArrayView bytes) {
    return bytes.size() >= kind.at && bytes.sliced(kind.at).startsWith(kind.start);
}

/// Whether a marked-up document begins as a page of the web.
bool isHtml(QByteArrayView bytes) {
    const QByteArray start =
        bytes.first(std::min<qsizetype>(bytes.size(), 1024)).toByteArray().trimmed().toLower();
    return start.startsWith("<!doctype html") || start.startsWith("<html");
}

/// Whether the beginning is readable: UTF-8 or Latin letters without control characters.
bool isText(QByteArrayView bytes) {
    constexpr qsizetype beginning = 4096;
    return std::ranges::all_of(bytes.first(std::min(bytes.size(), beginning)), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte >= 0x20 ? byte != 0x7F : std::isspace(byte) != 0;
    });
}

} // namespace

QString refusalOfOtherKind(const QByteArray& bytes) {
    if (isHtml(bytes))
        return QStringLiteral("not a picture but an HTML page; save the picture itself");
    const auto* kind = std::ranges::find_if(kinds, [&](const Kind& other) { return isOf(other, bytes); });
    if (kind == kinds.end())
        return isText(bytes) ? QStringLiteral("not a picture but text") : QString();
    const QLatin1String name(kind->name);
    const QString start = (name.endsWith(QLatin1String("picture")) ? QStringLiteral("%1 is not read here")
                                                                   : QStringLiteral("not a picture but %1"))
                              .arg(name);
    return kind->advice == nullptr ? start : start + QLatin1String("; ") + QLatin1String(kind->advice);
}
