/// @example IconSetExample.cpp
/// Writes the icons of Android into a folder: example-icon-set PICTURE DIR

#include "files/PathBytes.h"
#include "generation/IconSetGenerator.h"
#include "imaging/io/ImageSource.h"
#include "platform/services/Bundle.h"

#include <QTextStream>

namespace {

/// What a window's controls would say.
class Settings final : public GenerationInput {
  public:
    Settings(Image picture, QString out) : m_picture(std::move(picture)), m_out(std::move(out)) {}

    Image sourceImage() const override { return m_picture; }
    int platformIndex() const override { return Platforms::indexOf(Platform::Android); }
    QString outputPathString() const override { return m_out; }
    bool replacesPercentEscapes() const override { return false; }
    IconStyle iconStyle() const override {
        IconStyle style;
        style.roundCorner = true;
        return style;
    }

  private:
    Image m_picture;
    QString m_out;
};

class PixelScreen final : public Screen {
  public:
    int scale() const override { return 1; }
};

/// No file browser is opened.
class NoDesktop final : public Workspace {
  public:
    bool openURL(const QUrl& /*url*/) override { return true; }
};

class Report final : public GenerationObserver {
  public:
    void fileWritten(const File& file) override {
        m_lines << file.path << ' ' << file.pixelSize.width() << '\n';
    }
    void failed(const QString& path, const Error& error) override {
        m_hasFailed = true;
        QTextStream(stderr) << path << ": " << error.sentence << '\n';
    }
    bool hasFailed() const { return m_hasFailed; }

  private:
    QTextStream m_lines{stdout};
    bool m_hasFailed = false;
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        QTextStream(stderr) << "usage: example-icon-set PICTURE DIR\n";
        return 2;
    }
    const Result<LoadedPicture> picture = ImageSource::loadFile(argv[1]);
    if (!picture) {
        QTextStream(stderr) << argv[1] << ": " << picture.error().sentence << '\n';
        return 1;
    }
    const Settings settings(picture->image, PathBytes::decoded(argv[2]));
    const PixelScreen screen;
    NoDesktop desktop;
    Report report;
    const IconSetGenerator generator(settings, {screen, desktop, &report});
    generator.generateIconsWithImage(settings.sourceImage(), IconSizeCatalogue::load(Bundle()));
    return report.hasFailed() ? 1 : 0;
}
