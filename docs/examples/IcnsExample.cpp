/// @example IcnsExample.cpp
/// Writes an icns file with one small picture: example-icns FILE

#include "files/AtomicFile.h"
#include "files/PathBytes.h"
#include "imaging/icns/IcnsWriter.h"

#include <QTextStream>

int main(int argc, char** argv) {
    QTextStream errors(stderr);
    if (argc != 2) {
        errors << "usage: example-icns FILE\n";
        return 2;
    }
    // An orange square without its last row, which is transparent.
    constexpr int side = 16;
    QImage picture(side, side, QImage::Format_RGBA8888_Premultiplied);
    picture.fill(QColor(255, 128, 0));
    for (int x = 0; x < side; ++x)
        picture.setPixelColor(x, side - 1, Qt::transparent);

    IcnsWriter writer;
    if (const auto added = writer.addImage(picture); !added) {
        errors << added.error().sentence << '\n';
        return 1;
    }
    if (const auto written = AtomicFile::write(PathBytes::decoded(argv[1]), writer.data()); !written) {
        errors << written.error().sentence << '\n';
        return 1;
    }
    return 0;
}
