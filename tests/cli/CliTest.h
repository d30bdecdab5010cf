#pragma once

#include "tests/support/Process.h"

#include <QImage>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace Qt::StringLiterals;

/// A case that runs tobrimax-cli in a folder of its own, which goes when the case ends.
class CliTest : public testing::Test {
  protected:
    void SetUp() override;

    /// The path of `name` in the case's folder.
    QString path(const QString& name) const { return m_folder.filePath(name); }
    /// The folder that icon sets go into where a case does not say otherwise.
    QString out() const { return path(u"icons"_s); }
    /// The sample picture that the program comes with: "svg" or "png".
    static QString sample(const QString& suffix);

    /// `tobrimax-cli generate PICTURE --out out() …`, run in the case's folder.
    ProcessResult generate(const QString& picture, const QStringList& more = {}) const;
    /// As `generate`; a failure of the test where it does not succeed without a word on standard error.
    ProcessResult generated(const QString& picture, const QStringList& more = {}) const;

    /// Makes a file with that content, and the folders above it. All return its path.
    QString file(const QString& name, const QByteArray& content) const;
    QString picture(const QString& name, const QImage& image) const;
    QString flatPicture(const QString& name, int width, int height, const QColor& color = Qt::red) const;
    /// A property list. `expression` is its root in Python; `entry(name, size)` is at hand there.
    QString propertyList(const QString& name, const QString& expression, bool isBinary = false) const;
    /// A picture that a Python script saves under the path that it has as `path`, with Pillow's Image at
    /// hand.
    QString pillowPicture(const QString& name, const QString& script) const;

    static QByteArray content(const QString& path);
    /// A written icon, as Qt reads it: the name is below out().
    QImage icon(const QString& name) const;
    /// An icon of the iPhone's set that is 180 pixels wide.
    QImage icon180() const { return icon(u"iphone/AppIcon.appiconset/Icon-App-60x60@3x.png"_s); }

    /// The names of all files below a folder, hidden ones too, and of all folders without files.
    static std::vector<std::string> tree(const QString& folder);
    std::vector<std::string> tree() const { return tree(out()); }

    /// What a catalogue asks for: "iphone/AppIcon.appiconset/NAME.png 40 40" and so on, by name.
    static std::vector<std::string> wanted(const QString& catalogue);
    /// The same of what was written, by other programs' reading.
    std::vector<std::string> found() const;

  private:
    QTemporaryDir m_folder;
};

/// What a script prints; a failure of the test where it fails.
QByteArray printedByPython(const QString& script, const QStringList& arguments);

/// The one JSON document on standard output; a failure of the test where there is another thing.
QJsonObject printedJson(const ProcessResult& result);

/// Whether the program ended with status 1 and one line on standard error that says `sentence`.
void expectOneError(const ProcessResult& result, const QString& sentence);

/// Whether two colours are the same but for rounding.
bool isNear(const QColor& a, const QColor& b, int tolerance = 2);
