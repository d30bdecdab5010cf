#pragma once

#include "generation/GenerationInput.h"
#include "generation/IconRenderer.h"
#include "platform/services/Screen.h"
#include "project/proof/ProofShapes.h"

#include <QWidget>

#include <array>
#include <optional>

/// Shows the icons of 16, 32, 64 and 128 pixels that a generation would write now. The engine itself renders
/// them. Each pixel of an icon is a pixel of the display. Icons lie on a ground that is light on one half and
/// dark on the other. A quiet outline shows the shape to which the chosen platform's systems cut icons.
class PreviewStrip final : public QWidget {
    Q_OBJECT

  public:
    static constexpr std::array sizes{16, 32, 64, 128};

    explicit PreviewStrip(QWidget* parent = nullptr);

    /// Shows the picture of `input`, with its style, from now on. `input` must outlive the strip.
    void setInput(const GenerationInput& input);

    /// Renders the four icons again, once for all changes before the strip is shown anew. Connect it to every
    /// change of `input`.
    void renderLater();
    /// Renders the four icons now.
    void render();

    /// The icon of the size `sizes[index]`, as it is shown next. Null without a picture.
    const QImage& icon(std::size_t index);

    /// Where the icon of the size `sizes[index]` is shown, in display pixels from the strip's upper left
    /// corner.
    QRect iconRect(std::size_t index) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void drawIcon(QPainter& painter, std::size_t index) const;
    void drawCaption(QPainter& painter, std::size_t index) const;
    std::optional<ProofCut> cut() const;

    /// A screen of scale 1, because the sizes are pixels.
    class PixelScreen final : public Screen {
      public:
        int scale() const override { return 1; }
    };

    const GenerationInput* m_input = nullptr;
    PixelScreen m_screen;
    std::unique_ptr<IconRenderer> m_renderer;
    std::array<QImage, sizes.size()> m_icons;
    bool m_areOld = false; ///< the icons
};
