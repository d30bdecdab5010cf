#pragma once

#include "generation/GenerationInput.h"
#include "generation/IconRenderer.h"
#include "platform/services/Screen.h"

#include <QWidget>

#include <array>

/// Shows the picture as the icons of 16, 32, 64 and 128 pixels that would be written now, rendered by the
/// engine itself.
class PreviewStrip final : public QWidget {
    Q_OBJECT

  public:
    static constexpr std::array sizes{16, 32, 64, 128};

    explicit PreviewStrip(QWidget* parent = nullptr);

    /// Shows the picture of `input`, with its style, from now on; `input` must outlive the strip.
    void setInput(const GenerationInput& input);

    /// Renders the four icons anew. Connect it to whatever changes what `input` answers.
    void render();

    /// The icon of that index in `sizes` as it is shown; null without a picture.
    const QImage& icon(std::size_t index) const { return m_icons.at(index); }

    /// Where it is shown.
    QRect iconRect(std::size_t index) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    /// Of scale 1: the sizes are pixels.
    class PixelScreen final : public Screen {
      public:
        int scale() const override { return 1; }
    };

    const GenerationInput* m_input = nullptr;
    PixelScreen m_screen;
    std::unique_ptr<IconRenderer> m_renderer;
    std::array<QImage, sizes.size()> m_icons;
};
