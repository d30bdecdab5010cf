#include "imaging/svg/SvgTime.h"
#include "mainwindow/BorderImageView.h"
#include "tests/support/Process.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

namespace {

/// The files that the scripts in tests/pictures make in `folder`, each with whether its picture is shown.
QJsonObject madeIn(const QTemporaryDir& folder) {
    const QString script = QStringLiteral(PROJECT_DIR "/tests/pictures");
    const ProcessResult result = runPython(
        QStringLiteral("import sys; sys.dont_write_bytecode = True; sys.path.insert(0, sys.argv[2]); "
                       "import hostile; hostile.main()"),
        {folder.path(), script});
    EXPECT_EQ(result.exitStatus, 0) << result.errors.constData();
    QFile file(folder.filePath(QStringLiteral("expected.json")));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QJsonDocument::fromJson(file.readAll()).object();
}

} // namespace

TEST(HostilePictures, a_bad_one_clears_the_well_and_a_good_one_is_shown) {
    const QTemporaryDir folder;
    const QJsonObject expected = madeIn(folder);
    ASSERT_GT(expected.size(), 450);
    BorderImageView view;
    view.resize(100, 100);
    for (auto picture = expected.begin(); picture != expected.end(); ++picture) {
        SCOPED_TRACE(picture.key().toStdString());
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(folder.filePath(picture.key()))});
        if (picture.value().isNull()) {
            // It may be shown or not. Less time than usual is enough to see that the window goes on.
            const SvgRequest request(0.2);
            EXPECT_TRUE(view.performDragOperation(&data));
            view.grab();
            continue;
        }
        EXPECT_TRUE(view.performDragOperation(&data));
        EXPECT_EQ(!view.image().isNull(), picture.value().toBool());
        view.grab();
    }
}
