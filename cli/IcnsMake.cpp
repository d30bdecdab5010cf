#include "cli/IcnsCommands.h"
#include "cli/common/InputFile.h"
#include "cli/common/UnscaledScreen.h"
#include "cli/text/Terminal.h"
#include "generation/IconContainer.h"
#include "generation/PictureWarnings.h"

namespace {

/// Passes the style to the renderer, which uses no other input.
class StyleInput final : public GenerationInput {
  public:
    explicit StyleInput(const IcnsMakeOptions& options) : m_options(options) {}

    Image sourceImage() const override { return {}; }
    int platformIndex() const override { return -1; }
    QString outputPathString() const override { return m_options.out; }
    IconStyle iconStyle() const override { return m_options.style; }

  private:
    const IcnsMakeOptions& m_options;
};

} // namespace

int runIcnsMake(const IcnsMakeOptions& options) {
    std::string failed;
    const Result<LoadedPicture> picture = loadPicture(options.picture, IconContainer::renders(), failed);
    if (!picture)
        return InputFile::fail(failed, picture.error());
    const UnscaledScreen screen;
    for (const Warning& warning :
         pictureWarnings(*picture, {{IconContainer::largestSize(screen.scale())}, options.picture.fit}))
        Terminal::warning(warning.text());
    const StyleInput input(options);
    const IconRenderer renderer(input, screen);
    const Result<IconContainer::Written> written =
        IconContainer::write(picture->image, renderer, options.out, {options.background});
    if (!written) {
        Terminal::error(QStringLiteral("%1: %2").arg(options.out, written.error().sentence));
        return 1;
    }
    return Terminal::print(Terminal::escaped(options.out)) ? 0 : Terminal::outputFailure();
}
