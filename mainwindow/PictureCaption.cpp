#include "mainwindow/PictureCaption.h"

#include "files/PathBytes.h"
#include "generation/GenerationPlan.h"
#include "imaging/drawing/GraphicsContext.h"
#include "mainwindow/BorderImageView.h"
#include "mainwindow/SentenceWords.h"
#include "platform/services/Screen.h"

#include <QComboBox>
#include <QEvent>

#include <algorithm>
#include <span>

namespace {

/// Whether some pixel of a small drawing is not opaque.
bool isTransparent(const Image& picture) {
    constexpr QSizeF small(64, 64);
    const Result<QImage> drawn = drawnRaster(picture, small);
    for (int y = 0; drawn && y < drawn->height(); ++y) {
        for (int x = 0; x < drawn->width(); ++x) {
            if (drawn->pixelColor(x, y).alpha() < 255)
                return true;
        }
    }
    return false;
}

bool isInAppStore(Platform platform) {
    return platform == Platform::Iphone || platform == Platform::Ipad || platform == Platform::Watch;
}

} // namespace

PictureCaption::PictureCaption(QWidget* parent) : QLabel(parent) {
    setWordWrap(true);
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

void PictureCaption::follow(const BorderImageView& well, QComboBox& platforms, const Bundle& bundle,
                            const Screen& screen) {
    m_well = &well;
    m_platforms = &platforms;
    m_bundle = &bundle;
    m_screen = &screen;
    connect(&platforms, &QComboBox::currentIndexChanged, this, &PictureCaption::describe);
    connect(&well, &BorderImageView::readingTakesLong, this, &PictureCaption::wait);
    connect(&well, &BorderImageView::pictureArrived, this, &PictureCaption::take);
    connect(&well, &BorderImageView::pictureRefused, this, &PictureCaption::refuse);
    describe();
}

/// Room for all warnings about a picture's size and pixels. It is the same for all pictures, so that the
/// window keeps its size.
QSize PictureCaption::sizeHint() const {
    constexpr int leastLines = 4;
    constexpr int large = 1024;
    const QString longest =
        QStringList({QStringLiteral("M"), notSquare(), tooSmall(large), transparent()}).join(u'\n');
    const int across = m_well != nullptr ? m_well->parentWidget()->minimumSizeHint().width() : width();
    return {0,
            std::max(leastLines * fontMetrics().lineSpacing(),
                     fontMetrics().boundingRect(QRect(0, 0, across, 0), Qt::TextWordWrap, longest).height())};
}

QString PictureCaption::notSquare() {
    return tr("Not square: will be stretched.");
}

QString PictureCaption::tooSmall(int largestIcon) {
    return tr("Smaller than %1 px: will be enlarged.").arg(largestIcon);
}

QString PictureCaption::transparent() {
    return tr("Transparent: the App Store refuses such icons.");
}

void PictureCaption::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    describe();
}

void PictureCaption::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        describe();
}

/// Is shown at once: the reading goes on before any event is delivered.
void PictureCaption::wait(const QString& path) {
    m_name = PathBytes::withReplacements(path.section(u'/', -1));
    //: %1 is the name of a picture.
    const QStringList words = tr("Reading %1…").split(QStringLiteral("%1"));
    setText(elidedName(words.first(), words.last()));
    setToolTip({});
    repaint();
}

void PictureCaption::take(const QString& path, const LoadedPicture& picture) {
    m_name = PathBytes::withReplacements(path.section(u'/', -1));
    m_refusal.clear();
    m_shown = Shown{picture.image.size(), picture.isDrawing, isTransparent(picture.image), picture.warnings};
    describe();
}

void PictureCaption::refuse(const QString& path, const QString& sentence) {
    m_name = PathBytes::withReplacements(path.section(u'/', -1));
    m_refusal = inUsersLanguage(sentence);
    m_shown.reset();
    describe();
}

QString PictureCaption::elidedName(const QString& before, const QString& behind) const {
    const QString name = m_name.isEmpty() ? tr("Pasted picture") : m_name;
    const int rest = width() - fontMetrics().horizontalAdvance(before + behind);
    return before + fontMetrics().elidedText(name, Qt::ElideMiddle, rest) + behind;
}

QStringList PictureCaption::warnings(const Shown& shown) const {
    const std::span<const Platform> platforms = Platforms::ofIndex(m_platforms->currentIndex());
    int largest = 0;
    if (const Result<IconSizeCatalogue> catalogue = IconSizeCatalogue::load(*m_bundle)) {
        for (const PlannedFile& file :
             GenerationPlan(*catalogue, platforms, m_screen->scale()).remainingFiles())
            largest = std::max({largest, file.pixelSize.width(), file.pixelSize.height()});
    }
    QStringList found;
    if (shown.size.width() != shown.size.height())
        found << notSquare();
    if (!shown.isDrawing && std::min(shown.size.width(), shown.size.height()) < largest)
        found << tooSmall(largest);
    if (shown.isTransparent && std::ranges::any_of(platforms, isInAppStore))
        found << transparent();
    for (const QString& warning : shown.warnings)
        found << asSentence(inUsersLanguage(warning));
    return found;
}

void PictureCaption::describe() {
    if (!m_refusal.isEmpty()) {
        const QString text = elidedName({}, {}) + u'\n' + asSentence(m_refusal);
        setText(text);
        setToolTip(m_refusal);
    } else if (m_shown) {
        const QLocale ours = locale();
        const auto number = [&](double value) {
            return ours.toString(value, 'f', QLocale::FloatingPointShortest).remove(ours.groupSeparator());
        };
        const QString size =
            tr(", %1 × %2").arg(number(m_shown->size.width()), number(m_shown->size.height()));
        const QStringList found = warnings(*m_shown);
        setText((QStringList(elidedName({}, size)) + found).join(u'\n'));
        // The name may be cut short, and the warnings may need more lines than there are.
        setToolTip((QStringList(m_name) + found).join(u'\n'));
    }
}
