#pragma once

#include "mainwindow/LayoutList.h"
#include "mainwindow/PictureWell.h"
#include "mainwindow/ProjectSheet.h"
#include "mainwindow/ProofPreview.h"
#include "tests/mainwindow/MainWindowFixture.h"
#include "tests/support/Process.h"

#include <QComboBox>
#include <QDirIterator>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTreeWidget>

/// The sheet that writes into a project, over the main window.
class ProjectSheetFixture : public MainWindowFixture {
  protected:
    /// Shows a picture in the well and opens the sheet.
    void open(const QString& picture) {
        drop(picture);
        controller->generateForProject();
        Events::settle();
        ASSERT_NE(shown(), nullptr);
    }

    ProjectSheet* shown() { return sheet<ProjectSheet>(); }

    template <class Widget>
    Widget* part(const char* name) {
        auto* found = shown() != nullptr ? shown()->findChild<Widget*>(QLatin1String(name)) : nullptr;
        if (found == nullptr)
            ADD_FAILURE() << name;
        return found;
    }

    /// Ticks a layout with the keyboard.
    void tick(const QString& name) {
        auto* list = part<LayoutList>("layoutList");
        list->setCurrentItem(list->findItems(name, Qt::MatchExactly).value(0));
        Events::key(list, Qt::Key_Space);
        Events::settle();
    }

    void setFolder(const QString& folder) {
        part<QLineEdit>("folderEdit")->setText(folder);
        Events::settle();
    }

    QString message() { return part<QLabel>("messageLabel")->text(); }
    QString warnings() { return part<QLabel>("warningsLabel")->text(); }
    bool canGenerate() { return part<QPushButton>("generateButton")->isEnabled(); }
    bool showsResult() {
        return part<QStackedWidget>("pages")->currentWidget() == part<QWidget>("resultPage");
    }

    void generate() {
        Events::key(shown(), Qt::Key_Return);
        Events::settle();
    }

    /// All texts of the page with the result.
    QString resultWords() {
        QStringList words;
        for (const QLabel* label : part<QWidget>("projectResult")->findChildren<QLabel*>())
            words << label->text();
        return words.join(u'\n');
    }

    /// The bytes of all files below a folder, under their relative paths.
    static QMap<QString, QByteArray> contents(const QString& folder) {
        QMap<QString, QByteArray> files;
        QDirIterator walk(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            QFile file(walk.next());
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            files.insert(QDir(folder).relativeFilePath(file.fileName()), file.readAll());
        }
        return files;
    }

    QString write(const QString& folder, const QString& name, const QByteArray& bytes) {
        QFile file(QDir(folder).filePath(name));
        QDir().mkpath(QFileInfo(file.fileName()).path());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }

    /// A picture that is not square and has holes.
    QString translucentFile(const QString& name, int width, int height, unsigned seed) {
        QString path = pictures.filePath(name);
        EXPECT_TRUE(Pictures::translucentNoise(width, height, seed).save(path, "PNG"));
        return path;
    }
};
