/// @example PictureExample.cpp
/// Reads a picture of any format that is known, and writes it as a PNG file: example-picture PICTURE FILE

#include "files/PathBytes.h"
#include "files/RegularFile.h"
#include "imaging/io/ImageDestination.h"
#include "imaging/io/ImageSource.h"

#include <QTextStream>

namespace {

Result<QSize> convert(const std::string& from, const QString& to) {
    constexpr qint64 mostBytes = 64 << 20;
    const Result<QByteArray> bytes = RegularFile::read(from, mostBytes);
    if (!bytes)
        return bytes.error();
    const Result<DecodedPicture> picture = ImageSource::decode(*bytes);
    if (!picture)
        return picture.error();
    Result<ImageDestination> file = ImageDestination::create(to, QLatin1String(ImageDestination::pngType), 1);
    if (!file)
        return file.error();
    if (const Result<Done> added = file->addImage(picture->raster); !added)
        return added.error();
    if (const Result<Done> written = file->finalize(); !written)
        return written.error();
    return picture->raster.size();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        QTextStream(stderr) << "usage: example-picture PICTURE FILE\n";
        return 2;
    }
    const Result<QSize> size = convert(argv[1], PathBytes::decoded(argv[2]));
    if (!size) {
        QTextStream(stderr) << argv[1] << ": " << size.error().sentence << '\n';
        return 1;
    }
    QTextStream(stdout) << size->width() << " x " << size->height() << " pixels\n";
    return 0;
}
