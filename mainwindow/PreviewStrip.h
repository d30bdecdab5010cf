#pragma once

#include "generation/IconRenderer.h"
#include "mainwindow/MainWindowController.h"
#include "platform/Screen.h"

#include <QPointer>
#include <QWidget>

#include <array>

/// Shows the picture as the icons of 16, 32, 64 and 128 pixels that would be written now, rendered by the
/// engine itself.
class PreviewStrip final : public QWidget {
    Q_OBJECT

  public:
    static constexpr std::array sizes{16, 32, 64, 128};

    explicit PreviewStrip(QWidget* parent = nullptr);

    /// From now on follows the controls of `controller`, which must live as long as the strip, and every
    /// picture that arrives.
    void observe(const MainWindowController& controller);

    /// Renders the four icons anew.
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

    QPointer<const MainWindowController> m_controller;
    PixelScreen m_screen;
    std::unique_ptr<IconRenderer> m_renderer;
    std::array<QImage, sizes.size()> m_icons;
};
