/// @example LayoutExample.cpp
/// Writes the icons of a layout into a project, and tells the lines that the project lacks:
/// example-layout PICTURE LAYOUT DIR

#include "files/PathBytes.h"
#include "imaging/io/ImageSource.h"
#include "layouts/LayoutCatalogue.h"
#include "layouts/LayoutVariables.h"
#include "layouts/LayoutWriter.h"

#include <QTextStream>

namespace {

class Report final : public GenerationObserver {
  public:
    void fileWritten(const File& file) override { QTextStream(stdout) << file.path << '\n'; }
    void failed(const QString& path, const Error& error) override {
        hasFailed = true;
        QTextStream(stderr) << path << ": " << error.sentence << '\n';
    }

    bool hasFailed = false;
};

int fail(const Error& error) {
    QTextStream(stderr) << error.sentence << '\n';
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        QTextStream(stderr) << "usage: example-layout PICTURE LAYOUT DIR\n";
        return 2;
    }
    LayoutInput input;
    input.out = PathBytes::decoded(argv[3]);
    input.name = QStringLiteral("Example");

    Result<Layout> layout = LayoutCatalogue::load(PathBytes::decoded(argv[2]));
    if (layout)
        layout = withVariables(std::move(*layout), input.out, input.name);
    if (!layout)
        return fail(layout.error());
    // The sizes are known, so no more of the picture is kept than they need.
    const Result<LoadedPicture> picture =
        ImageSource::loadFile(argv[1], {LayoutWriter::renders(layout->files)});
    if (!picture)
        return fail(picture.error());
    input.pictures.main = picture->image;

    Report report;
    LayoutWriter::write(*layout, input, report);
    for (const LayoutNote& note : LayoutWriter::notes(*layout, input.out))
        QTextStream(stdout) << note.file << " lacks the line: " << note.line << '\n';
    return report.hasFailed ? 1 : 0;
}
