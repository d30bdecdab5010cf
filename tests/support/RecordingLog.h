#pragma once

#include <QStringList>
#include <QtGlobal>

/// Records the lines of the diagnostic log while it exists. Only one may exist at a time.
class RecordingLog {
  public:
    RecordingLog();
    ~RecordingLog();
    RecordingLog(const RecordingLog&) = delete;
    RecordingLog& operator=(const RecordingLog&) = delete;

    const QStringList& lines() const;

  private:
    QtMessageHandler m_previous;
};
