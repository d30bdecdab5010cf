#include "platform/widgets/Alert.h"
#include "tests/mainwindow/MainWindowFixture.h"
#include "tests/support/Slowness.h"

#include <QDir>

#include <unistd.h>

#include <array>

namespace {

/// The memory and the descriptors that the process holds at a time.
struct Holdings {
    qint64 residentBytes = 0;
    qsizetype descriptors = 0;

    static Holdings now() {
        Holdings holdings;
        QFile file(QStringLiteral("/proc/self/statm"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        holdings.residentBytes = file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
        file.close();
        holdings.descriptors = QDir(QStringLiteral("/proc/self/fd"))
                                   .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
                                   .size();
        return holdings;
    }
};

/// The main window, used again and again.
class Soak : public MainWindowFixture {
  protected:
    Soak() {
        makePictures();
        catalogue = pictures.filePath(QStringLiteral("ImageSizeFile.plist"));
        const QString dictionary =
            QStringLiteral("<dict>") +
            entry(QStringLiteral("a"), QStringLiteral("{16, 16}"), QStringLiteral("a")) +
            entry(QStringLiteral("b"), QStringLiteral("{29, 40}"), QStringLiteral("b")) +
            QStringLiteral("</dict>");
        write(catalogue,
              "<plist version=\"1.0\"><array>" + dictionary.toUtf8().repeated(5) + "</array></plist>");
        write(brokenCatalogue, "<plist version=\"1.0\"><array/></plist>");
        bundle.catalogue = catalogue;
    }

    static void write(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    void makePictures() {
        const QString svg = pictures.filePath(QStringLiteral("drawing.svg"));
        write(svg, "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='40'><circle cx='20' cy='20' "
                   "r='15'/></svg>");
        const QString broken = pictures.filePath(QStringLiteral("broken.png"));
        QFile whole(pictureFile(80, 80));
        EXPECT_TRUE(whole.open(QIODevice::ReadOnly));
        write(broken, whole.readAll().chopped(99));
        const QString fixtures = QStringLiteral(TEST_DATA_DIR "/pictures/");
        dropped = {pictureFile(64, 64),
                   svg,
                   fixtures + QStringLiteral("cmyk-adobe-icc.jpg"),
                   broken,
                   fixtures + QStringLiteral("palette-8.tif"),
                   pictureFile(300, 200),
                   textFile(),
                   fixtures + QStringLiteral("animated.webp"),
                   fixtures + QStringLiteral("packed.icns"),
                   pictures.filePath(QStringLiteral("nowhere.png"))};
    }

    /// Chooses the output folder in the dialog; the generation follows.
    void generateByDialog() {
        Events::click(controller->generateBtn);
        if (auto* chooser = sheet<QFileDialog>())
            choose(chooser, folder());
        else if (auto* alert = sheet<Alert>())
            Events::key(alert, Qt::Key_Return);
        Events::settle();
    }

    void changeStyle(int turn) {
        if (turn % 3 == 0)
            controller->roundedCheckButton->click();
        if (turn % 4 == 0)
            controller->borderCheckButton->click();
        controller->sliderCornerRadius->setFloatValue(static_cast<float>(turn % 50) / 100);
        controller->sliderCornerRadiusAction(controller->sliderCornerRadius);
        controller->sliderBorderWidth->setFloatValue(static_cast<float>(turn % 20) / 100);
        controller->sliderBorderWidthAction(controller->sliderBorderWidth);
        controller->colorPicker->setColor({(turn % 256) / 255.0, 0.5, 0.25, (turn % 100) / 99.0});
        controller->colorPickerAction(controller->colorPicker);
    }

    /// One generation. In some turns the folder can't be made, no file can be written, or the catalogue has
    /// no sizes.
    void generate(int turn) {
        drop(dropped[static_cast<std::size_t>(turn) % dropped.size()]);
        changeStyle(turn);
        controller->platformSelection->setCurrentIndex(turn % 100 == 50 ? 4 : turn % 4);
        bundle.catalogue = turn % 11 == 0 ? brokenCatalogue : catalogue;
        const bool isBlocked = turn % 7 == 0;
        if (isBlocked) {
            QDir(folder()).removeRecursively();
            write(folder(), "in the way");
        }
        if (turn % 50 == 0 && !isBlocked)
            generateByDialog();
        else
            controller->generateIconsWithImage(controller->sourceImage());
        Events::settle();
        if (isBlocked) {
            EXPECT_TRUE(QFile::remove(folder()));
            EXPECT_TRUE(QDir().mkpath(folder()));
        }
        opened += workspace.opened.size();
        workspace.opened.clear();
    }

    QString folder() const { return out.filePath(QStringLiteral("icons")); }

    QString catalogue;
    QString brokenCatalogue = pictures.filePath(QStringLiteral("Broken.plist"));
    std::vector<QString> dropped;
    qsizetype opened = 0;
};

} // namespace

TEST_F(Soak, two_thousand_generations_leave_memory_and_descriptors_as_they_were) {
    constexpr int warm = 200;
    constexpr int all = 2000;
    // The log is dropped: lines that are kept would take memory.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    ASSERT_TRUE(QDir().mkpath(folder()));
    generateByDialog();
    drop(dropped.front());
    generateByDialog();
    ASSERT_EQ(controller->outputPathString(), folder());
    Holdings before;
    for (int turn = 1; turn <= all; ++turn) {
        generate(turn);
        if (turn == warm)
            before = Holdings::now();
    }
    const Holdings after = Holdings::now();
    RecordProperty("residentBefore", std::to_string(before.residentBytes));
    RecordProperty("residentAfter", std::to_string(after.residentBytes));
    EXPECT_EQ(after.descriptors, before.descriptors);
    // A sanitizer keeps freed memory for a while. It finds leaks by itself.
    if constexpr (slowness == 1) {
        EXPECT_LE(after.residentBytes, before.residentBytes + before.residentBytes / 20);
    }
    // The generations did write files and open folders.
    EXPECT_GT(opened, all * 3 / 4);
    EXPECT_TRUE(
        GeneratorFixture::filesBelow(folder()).contains(QStringLiteral("iphone/AppIcon.appiconset/a.png")));
    for (const QString& name : GeneratorFixture::filesBelow(folder()))
        EXPECT_FALSE(name.contains(QStringLiteral(".tobrimax-"))) << name.toStdString();
}
