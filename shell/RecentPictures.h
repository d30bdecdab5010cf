#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

/// The pictures that were opened last, in the desktop's own list of recently used files, `recently-used.xbel`
/// (Desktop Bookmark Specification 1.0). Other programs write into the list too.
class RecentPictures {
  public:
    /// The list in the user's data folder.
    RecentPictures();
    /// The list in the file `path`.
    explicit RecentPictures(QString path);

    static constexpr int most = 10;

    /// The paths of the pictures that this program has opened, the latest first, at most `most`. Empty where
    /// the desktop has no list.
    QStringList paths() const;

    /// Notes that this program has opened the file at `picture`, now. Nothing where the desktop has no list,
    /// where the list can't be read as a whole, or where another program keeps it locked.
    void add(const QString& picture, const QDateTime& now = QDateTime::currentDateTimeUtc()) const;

  private:
    QString m_path;
};
