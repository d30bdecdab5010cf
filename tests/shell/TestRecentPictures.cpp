#include "shell/RecentPictures.h"

#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QTemporaryDir>
#include <QTimeZone>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

namespace {

/// A list as another program has written it.
const QByteArray ofAnother = R"(<?xml version="1.0" encoding="UTF-8"?>
<xbel version="1.0"
      xmlns:bookmark="http://www.freedesktop.org/standards/desktop-bookmarks"
      xmlns:mime="http://www.freedesktop.org/standards/shared-mime-info"
>
  <bookmark href="file:///home/a/caf%C3%A9.txt" added="2026-01-01T00:00:00Z" modified="2026-01-01T00:00:00Z" visited="2026-01-01T00:00:00Z">
    <info>
      <metadata owner="http://freedesktop.org">
        <mime:mime-type type="text/plain"/>
        <bookmark:groups><bookmark:group>Editor</bookmark:group></bookmark:groups>
        <bookmark:applications>
          <bookmark:application name="Editor" exec="&apos;editor %u&apos;" modified="2026-01-01T00:00:00Z" count="3"/>
        </bookmark:applications>
      </metadata>
    </info>
  </bookmark>
</xbel>
)";

class RecentPicturesTest : public testing::Test {
  protected:
    void write(const QByteArray& list) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(list);
    }

    QByteArray written() {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static QDateTime at(int second) { return {QDate(2026, 2, 3), QTime(4, 5, second), QTimeZone::utc()}; }

    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("recently-used.xbel"));
    RecentPictures recent{path};
};

TEST_F(RecentPicturesTest, a_desktop_without_a_list_gets_none) {
    recent.add(QStringLiteral("/a.png"), at(0));
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
    EXPECT_TRUE(recent.paths().isEmpty());
}

TEST_F(RecentPicturesTest, lists_what_this_program_has_opened_the_latest_first) {
    write(ofAnother);
    EXPECT_TRUE(recent.paths().isEmpty());
    const QString odd = QStringLiteral("/b c & <d>\"é%25.png");
    recent.add(QStringLiteral("/a.png"), at(0));
    recent.add(odd, at(1));
    EXPECT_EQ(recent.paths(), QStringList({odd, QStringLiteral("/a.png")}));
    recent.add(QStringLiteral("/a.png"), at(2));
    EXPECT_EQ(recent.paths(), QStringList({QStringLiteral("/a.png"), odd}));
    EXPECT_EQ(written().count("<bookmark "), 3);
    EXPECT_TRUE(written().contains("count=\"2\""));
    for (int i = 0; i < 2 * RecentPictures::most; ++i)
        recent.add(QStringLiteral("/%1.png").arg(i), at(3 + i));
    EXPECT_EQ(recent.paths().size(), RecentPictures::most);
    EXPECT_EQ(recent.paths().first(), QStringLiteral("/19.png"));
}

TEST_F(RecentPicturesTest, keeps_what_other_programs_have_noted) {
    write(ofAnother);
    recent.add(QStringLiteral("/home/a/café.txt"), at(0));
    const QByteArray list = written();
    EXPECT_EQ(list.count("<bookmark "), 1) << "the other program's entry has both";
    for (const QByteArray kept : {"name=\"Editor\"", "count=\"3\"", "<mime:mime-type type=\"text/plain\"/>",
                                  "<bookmark:group>Editor</bookmark:group>", "added=\"2026-01-01T00:00:00Z\"",
                                  "xmlns:mime=", "name=\"Tobrimax\""})
        EXPECT_TRUE(list.contains(kept)) << kept.constData();
    EXPECT_FALSE(list.contains("visited=\"2026-01-01T00:00:00Z\""));
    QXmlStreamReader reader(list);
    while (!reader.atEnd())
        reader.readNext();
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString() << list.constData();
}

TEST_F(RecentPicturesTest, a_list_that_is_damaged_or_locked_stays_as_it_is) {
    for (const QByteArray& damaged : {QByteArray(), ofAnother.left(300), QByteArray("<html/>")}) {
        write(damaged);
        recent.add(QStringLiteral("/a.png"), at(0));
        EXPECT_EQ(written(), damaged);
    }
    write(ofAnother);
    QLockFile other(path + QStringLiteral(".lock"));
    ASSERT_TRUE(other.tryLock());
    recent.add(QStringLiteral("/a.png"), at(0));
    EXPECT_EQ(written(), ofAnother);
    other.unlock();
    recent.add(QStringLiteral("/a.png"), at(0));
    EXPECT_EQ(recent.paths(), QStringList(QStringLiteral("/a.png")));
}

} // namespace
