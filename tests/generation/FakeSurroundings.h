#pragma once

#include "generation/IconSetGenerator.h"
#include "platform/services/Bundle.h"
#include "tests/support/Pictures.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <functional>
#include <vector>

/// Inputs that a test sets, also during a generation.
class FakeInput final : public GenerationInput {
  public:
    Image picture;
    int index = 0;
    QString out;
    IconStyle style;
    bool isUnescaped = true;

    Image sourceImage() const override { return picture; }
    int platformIndex() const override { return index; }
    QString outputPathString() const override { return out; }
    bool replacesPercentEscapes() const override { return isUnescaped; }
    IconStyle iconStyle() const override { return style; }
};

class FakeScreen final : public Screen {
  public:
    int factor = 1;
    int scale() const override { return factor; }
};

/// Records the opened URLs and calls `onOpen` for each.
class FakeWorkspace final : public Workspace {
  public:
    QStringList opened;
    std::function<void()> onOpen = [] {};

    bool openURL(const QUrl& url) override {
        opened << url.toLocalFile();
        onOpen();
        return true;
    }
};

/// A bundle with a catalogue that the test chooses.
class FakeBundle final : public Bundle {
  public:
    QString catalogue; ///< empty for the built-in catalogue
    QHash<QString, QString> documents;

    QString pathForResource(const QString& name) const override {
        return catalogue.isEmpty() ? Bundle::pathForResource(name) : catalogue;
    }
    QString pathForDocument(const QString& name) const override { return documents.value(name); }
};

class RecordingObserver final : public GenerationObserver {
  public:
    std::vector<File> files;
    QStringList failures; ///< "path: sentence"
    QStringList paths;    ///< of written and failed files, in the order of their reports

    void fileWritten(const File& file) override {
        files.push_back(file);
        paths << file.path;
    }
    void failed(const QString& path, const Error& error) override {
        failures << path + QStringLiteral(": ") + error.sentence;
        paths << path;
    }
};

/// Writes a catalogue. `array` is the text between <array> and </array>: five platform dictionaries.
inline void writeCatalogue(const QString& path, const QString& array) {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write((QStringLiteral("<?xml version=\"1.0\"?><plist version=\"1.0\"><array>") + array +
                    QStringLiteral("</array></plist>"))
                       .toUtf8());
}

/// A generator with its surroundings. It writes into its own temporary folder.
class GeneratorFixture {
  public:
    GeneratorFixture() {
        input.picture = Pictures::loadedImage(Pictures::noise(64, 64, 1));
        input.out = folder.path();
    }

    QTemporaryDir folder;
    FakeInput input;
    FakeScreen screen;
    FakeWorkspace workspace;
    FakeBundle bundle;
    RecordingObserver observer;
    IconSetGenerator generator{input, {screen, workspace, &observer}};

    void generate(int index) {
        input.index = index;
        generator.generateIconsWithImage(input.picture, IconSizeCatalogue::load(bundle));
    }

    /// Makes every later generation read a catalogue with these five platform dictionaries.
    void useCatalogue(const QString& array) {
        bundle.catalogue = resources.filePath(QStringLiteral("ImageSizeFile.plist"));
        writeCatalogue(bundle.catalogue, array);
    }

    /// The paths of all files below the output folder, relative to it, sorted.
    QStringList files() const { return filesBelow(folder.path()); }

    static QStringList filesBelow(const QString& path, const QString& prefix = {}) {
        QStringList all;
        for (const QFileInfo& info : QDir(path).entryInfoList(
                 QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name)) {
            if (info.isDir() && !info.isSymLink())
                all << filesBelow(info.filePath(), prefix + info.fileName() + QLatin1Char('/'));
            else
                all << prefix + info.fileName();
        }
        all.sort();
        return all;
    }

    QString path(const QString& relative) const { return folder.filePath(relative); }

  private:
    QTemporaryDir resources;
};

/// One catalogue entry.
inline QString entry(const QString& key, const QString& dimensions, const QString& name) {
    return QStringLiteral("<key>%1</key><dict><key>Dimensions</key><string>%2</string><key>Name</key>"
                          "<string>%3</string></dict>")
        .arg(key, dimensions, name);
}

/// Five platform dictionaries; only the first has entries.
inline QString onlyIphone(const QString& entries) {
    return QStringLiteral("<dict>") + entries + QStringLiteral("</dict><dict/><dict/><dict/><dict/>");
}
