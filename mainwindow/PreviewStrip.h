#pragma once

#include "generation/GenerationInput.h"
#include "generation/IconRenderer.h"
#include "platform/services/Screen.h"

#include <QWidget>

#include <array>

/// Shows the icons of 16, 32, 64 and 128 pixels that a generation would write now. The engine itself renders
/// them.
class PreviewStrip final : public QWidget {
    Q_OBJECT

  public:
    static constexpr std::array sizes{16, 32, 64, 128};

    explicit PreviewStrip(QWidget* parent = nullptr);

    /// Shows the picture of `input`, with its style, from now on. `input` must outlive the strip.
    void setInput(const GenerationInput& input);

    /// Renders the four icons again. Connect it to every change of `input`.
    void render();

    /// The icon of the size `sizes[index]`, as it is shown. Null without a picture.
    const QImage& icon(std::size_t index) const { return m_icons.at(index); }

    /// Where the icon of the size `sizes[index]` is shown.
    QRect iconRect(std::size_t index) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    /// A screen of scale 1, because the sizes are pixels.
    class PixelScreen final : public Screen {
      public:
        int scale() const override { return 1; }
    };

    const GenerationInput* m_input = nullptr;
    PixelScreen m_screen;
    std::unique_ptr<IconRenderer> m_renderer;
    std::array<QImage, sizes.size()> m_icons;
};
