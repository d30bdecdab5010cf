#pragma once

#include "tests/support/Process.h"

#include <QImage>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace Qt::StringLiterals;

/// Runs tobrimax-cli in a temporary folder, which is removed when the test ends.
class CliTest : public testing::Test {
  protected:
    void SetUp() override;

    /// The path of `name` in the test's folder.
    QString path(const QString& name) const { return m_folder.filePath(name); }
    /// The default output folder for icon sets.
    QString out() const { return path(u"icons"_s); }
    /// The sample picture that comes with the program: "svg" or "png".
    static QString sample(const QString& suffix);

    /// Runs `tobrimax-cli generate PICTURE --out out() …` in the test's folder.
    ProcessResult generate(const QString& picture, const QStringList& more = {}) const;
    /// Like `generate`; the test fails unless the run succeeds and standard error is empty but for the
    /// warnings that Apple's sets get (see `otherErrorLines`).
    ProcessResult generated(const QString& picture, const QStringList& more = {}) const;

    /// These functions make a file, and the folders above it, and return its path.
    QString file(const QString& name, const QByteArray& content) const;
    QString picture(const QString& name, const QImage& image) const;
    QString flatPicture(const QString& name, int width, int height, const QColor& color = Qt::red) const;
    /// Makes a property list. `expression` is its root in Python; it can use `entry(name, size)`.
    QString propertyList(const QString& name, const QString& expression, bool isBinary = false) const;
    /// Makes a picture with a Python script. The script can use Pillow's Image and saves to `path`.
    QString pillowPicture(const QString& name, const QString& script) const;

    static QByteArray content(const QString& path);
    /// A written icon, as Qt reads it. `name` is relative to out().
    QImage icon(const QString& name) const;
    /// An iPhone icon that is 180 pixels wide.
    QImage icon180() const { return icon(u"iphone/AppIcon.appiconset/Icon-App-60x60@3x.png"_s); }

    /// The names of all files below a folder, also hidden files, and of all folders without files.
    static std::vector<std::string> tree(const QString& folder);
    std::vector<std::string> tree() const { return tree(out()); }

    /// The icons that a catalogue lists, as "iphone/AppIcon.appiconset/NAME.png 40 40" and so on, sorted by
    /// name.
    static std::vector<std::string> wanted(const QString& catalogue);
    /// The icons that were written, in the same form. Other programs read their sizes.
    std::vector<std::string> found() const;

  private:
    QTemporaryDir m_folder;
};

/// The output of a Python script; the test fails if the script does.
QByteArray printedByPython(const QString& script, const QStringList& arguments);

/// The JSON document on standard output; the test fails if anything else is there.
QJsonObject printedJson(const ProcessResult& result);

/// The lines on standard error but the warnings that icons for iPhone, iPad and Apple Watch get with every
/// picture: of their alpha channel, and of corners that were asked for.
QStringList otherErrorLines(const ProcessResult& result);

/// Expects that the program ended with status 1 and printed one such line on standard error, with `sentence`
/// in it.
void expectOneError(const ProcessResult& result, const QString& sentence);

/// Whether two colours are equal up to rounding.
bool isNear(const QColor& a, const QColor& b, int tolerance = 2);
