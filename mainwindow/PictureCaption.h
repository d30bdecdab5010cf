#pragma once

#include "imaging/io/ImageSource.h"

#include <QLabel>

#include <optional>

class BorderImageView;
class Bundle;
class QComboBox;
class Screen;

/// Says which picture the well shows: its name, its size, and what becomes of it in the icons of the chosen
/// platform. Where a picture could not be read, it says why.
class PictureCaption final : public QLabel {
    Q_OBJECT

  public:
    explicit PictureCaption(QWidget* parent = nullptr);

    /// Follows the pictures of `well` and the choice in `platforms`. The references are kept.
    void follow(const BorderImageView& well, QComboBox& platforms, const Bundle& bundle,
                const Screen& screen);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
    int heightForWidth(int /*width*/) const override { return sizeHint().height(); }

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    /// What is kept of the picture.
    struct Shown {
        QSizeF size;
        bool isDrawing = false;
        bool isTransparent = false;
        QStringList warnings;
    };

    void wait(const QString& path);
    void take(const QString& path, const LoadedPicture& picture);
    void refuse(const QString& path, const QString& sentence);
    void describe();
    QStringList warnings(const Shown& shown) const;
    static QString notSquare();
    static QString tooSmall(int largestIcon);
    static QString transparent();
    QString elidedName(const QString& before, const QString& behind) const;

    const BorderImageView* m_well = nullptr;
    const QComboBox* m_platforms = nullptr;
    const Bundle* m_bundle = nullptr;
    const Screen* m_screen = nullptr;
    QString m_name;
    QString m_refusal;
    std::optional<Shown> m_shown;
};
