#pragma once

#include "layouts/LayoutSet.h"
#include "layouts/LayoutWarnings.h"
#include "project/proof/ProofSheet.h"

#include <QImage>
#include <QWidget>

#include <optional>
#include <vector>

class QPainter;

/// The icons of layouts as they will be written: of those that look the same one, with the sizes of all, on a
/// light and a dark half, and in the shapes that systems cut. An icon is drawn when it comes into sight.
class ProofPreview final : public QWidget {
    Q_OBJECT

  public:
    explicit ProofPreview(QWidget* parent = nullptr);

    /// Shows the files of `set` that are written with these pictures.
    void setProof(const LayoutSet& set, const LayoutPictures& pictures, const LayoutLook& look);
    /// Shows no icons, but these words.
    void setWords(const QString& words);

    /// How many icons are shown, cuts of icons among them.
    int count() const { return static_cast<int>(m_tiles.size()); }

    /// Three icons side by side.
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    /// Files that look the same, but for their size.
    struct Look {
        LayoutFile file; ///< the one with the largest picture
        ProofIcon shapes;
        int smallest = 0; ///< the longer side of the smallest, in pixels
        int largest = 0;
        QImage raster = {}; ///< null until it is in sight
    };
    struct Tile {
        std::size_t look;
        std::optional<ProofCut> cut;
        QString caption;
        QRect place; ///< of its ground, from left to right
    };
    struct Heading {
        QString text;
        std::size_t firstTile;
        QRect place;
    };

    void addLayout(const Layout& layout);
    static bool isSameLook(const Look& look, const LayoutFile& file, const ProofIcon& shapes);
    void arrange();
    void describe();
    int side() const;
    int captionHeight() const;
    const QImage& raster(Look& look);
    void drawTile(QPainter& painter, const Tile& tile);
    void drawCaption(QPainter& painter, const Tile& tile, const QRect& ground) const;
    static QString caption(const Look& look, const std::optional<ProofCut>& cut);
    QRect mirrored(const QRect& place) const;

    LayoutPictures m_pictures;
    LayoutLook m_look;
    std::vector<Look> m_looks;
    std::vector<Tile> m_tiles;
    std::vector<Heading> m_headings;
    QString m_words;
};
