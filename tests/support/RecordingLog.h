#pragma once

#include <QStringList>
#include <QtGlobal>

/// While it lives, the diagnostic log's lines go here. One at a time.
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
