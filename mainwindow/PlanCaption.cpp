#include "mainwindow/PlanCaption.h"

#include "generation/GenerationPlan.h"
#include "platform/services/Screen.h"
#include "platform/widgets/ChangeFollower.h"

#include <QComboBox>

#include <algorithm>

namespace {

/// The PNG files of a platform and the sides of the smallest and the largest.
struct Files {
    int count = 0;
    int smallest = 0;
    int largest = 0;
    bool hasContainer = false;
};

Files counted(const std::vector<PlannedFile>& files) {
    Files counted;
    for (const PlannedFile& file : files) {
        if (file.isContainer) {
            counted.hasContainer = true;
            continue;
        }
        const int side = std::max(file.pixelSize.width(), file.pixelSize.height());
        counted.smallest = counted.count == 0 ? side : std::min(counted.smallest, side);
        counted.largest = std::max(counted.largest, side);
        ++counted.count;
    }
    return counted;
}

} // namespace

PlanCaption::PlanCaption(QWidget* parent) : QLabel(parent) {
    setWordWrap(true);
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignLeft | Qt::AlignBottom);
}

void PlanCaption::follow(QComboBox& platforms, const Bundle& bundle, const Screen& screen) {
    m_bundle = &bundle;
    m_screen = &screen;
    m_platforms = &platforms;
    connect(&platforms, &QComboBox::currentIndexChanged, this, &PlanCaption::describe);
    describe(platforms.currentIndex());
    new ChangeFollower(*this, QEvent::FontChange, *this, [this] { makeRoom(); });
}

/// Room for the longest text of a platform. It is the same for all, so that the window keeps its size.
void PlanCaption::makeRoom() {
    constexpr int leastLines = 4;
    m_height = leastLines * fontMetrics().lineSpacing();
    const QRect across(0, 0, m_platforms->minimumWidth(), 0);
    for (int index = 0; index < m_platforms->count(); ++index)
        m_height =
            std::max(m_height, fontMetrics().boundingRect(across, Qt::TextWordWrap, words(index)).height());
    updateGeometry();
}

QSize PlanCaption::sizeHint() const {
    return {0, m_height};
}

QString PlanCaption::words(int platformIndex) const {
    QStringList lines;
    for (const Platform platform : Platforms::ofIndex(platformIndex)) {
        if (const QString text = line(platform); !lines.contains(text))
            lines << text;
    }
    return lines.join(u'\n');
}

void PlanCaption::describe(int platformIndex) {
    setText(words(platformIndex));
}

QString PlanCaption::line(Platform platform) const {
    const Result<IconSizeCatalogue> catalogue = IconSizeCatalogue::load(*m_bundle);
    if (!catalogue)
        return catalogue.error().sentence;
    const Platform only[] = {platform};
    const Files files = counted(GenerationPlan(*catalogue, only, m_screen->scale()).remainingFiles());
    const QString idiom = Platforms::idiom(platform);
    // A line breaks before a path, not within it.
    constexpr QChar wordJoiner(0x2060);
    const QString folder = Platforms::folder(idiom).replace(u'/', QString(u'/') + wordJoiner);
    QString text = files.count == 1 ? tr("1 PNG file, %1 px, in %2").arg(files.largest).arg(folder)
                                    : tr("%1 PNG files, %2 to %3 px, in %4")
                                          .arg(files.count)
                                          .arg(files.smallest)
                                          .arg(files.largest)
                                          .arg(folder);
    if (files.hasContainer)
        text += tr(", and %1/%2Application.icns").arg(idiom, wordJoiner);
    return text;
}
