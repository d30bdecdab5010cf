#pragma once

#include "mainwindow/MainWindowController.h"
#include "tests/generation/FakeSurroundings.h"
#include "tests/support/Events.h"
#include "tests/support/RecordingLog.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QMimeData>

#include <gtest/gtest.h>

/// The main window, with services that the test controls.
class MainWindowFixture : public testing::Test {
  protected:
    MainWindowFixture() {
        controller->window();
        controller->showWindow(nullptr);
        Events::settle();
    }

    QString pictureFile(int width = 64, int height = 64) {
        const QString path = pictures.filePath(QStringLiteral("%1x%2.png").arg(width).arg(height));
        EXPECT_TRUE(Pictures::noise(width, height, 1).save(path, "PNG"));
        return path;
    }

    QString textFile() {
        QFile file(pictures.filePath(QStringLiteral("words.txt")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("no picture");
        return file.fileName();
    }

    void drop(const QString& path) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        controller->imgViewIcon->performDragOperation(&data);
    }

    /// The visible sheet of the class `Sheet` on the main window, or null.
    template <class Sheet>
    Sheet* sheet() {
        for (Sheet* candidate : controller->window()->findChildren<Sheet*>()) {
            if (candidate->isVisible())
                return candidate;
        }
        return nullptr;
    }

    /// Chooses `path` in the open file dialog: types its name and presses Return.
    void choose(QFileDialog* dialog, const QString& path) {
        auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        ASSERT_NE(name, nullptr);
        name->setText(path);
        Events::key(name, Qt::Key_Return);
        Events::settle();
    }

    QTemporaryDir pictures;
    QTemporaryDir out;
    FakeBundle bundle;
    FakeScreen screen;
    FakeWorkspace workspace;
    RecordingLog log;
    std::unique_ptr<MainWindowController> controller = MainWindowController::initWithWindowNibName(
        QStringLiteral("MainWindowController"), {bundle, screen, workspace});
};
