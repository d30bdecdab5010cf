/// @example IconFamilyExample.cpp
/// Makes an icon family of a picture, writes it, and reads it back: example-icon-family PICTURE FILE

#include "files/PathBytes.h"
#include "iconfamily/IconFamily.h"
#include "imaging/io/ImageSource.h"

#include <QTextStream>

int main(int argc, char** argv) {
    QTextStream errors(stderr);
    if (argc != 3) {
        errors << "usage: example-icon-family PICTURE FILE\n";
        return 2;
    }
    const Result<LoadedPicture> picture = ImageSource::loadFile(argv[1]);
    if (!picture) {
        errors << argv[1] << ": " << picture.error().sentence << '\n';
        return 1;
    }
    const QString path = PathBytes::decoded(argv[2]);
    const std::unique_ptr<IconFamily> made = IconFamily::iconFamilyWithThumbnailsOfImage(picture->image);
    if (made == nullptr || !made->writeToFile(path)) {
        errors << argv[2] << " could not be written\n";
        return 1;
    }
    const std::unique_ptr<IconFamily> read = IconFamily::iconFamilyWithContentsOfFile(path);
    if (read == nullptr) {
        errors << argv[2] << " could not be read\n";
        return 1;
    }
    QTextStream lines(stdout);
    for (const FourCharCode type : {FourCharCode("ic08"), FourCharCode("ic07"), FourCharCode("ic04")}) {
        const auto bitmap = read->bitmapImageRepWithAlphaForIconFamilyElement(type);
        if (bitmap != nullptr)
            lines << type.text() << ": " << bitmap->pixelSize().width() << " pixels\n";
    }
    return 0;
}
