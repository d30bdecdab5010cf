#pragma once

#include <QString>

#include <string>

/// While it lives, a terminal says "reading big.png…" as soon as half a second has passed, and the words are
/// erased at the end. Nothing is shown if standard error is not a terminal that can erase a line. No thread
/// waits: the system's timer sends a signal, whose handler does nothing but write. There is one at a time.
class ReadingNote {
  public:
    /// `path` is what is read; its last part is shown.
    ReadingNote(const QString& path, bool isWanted);
    ~ReadingNote();
    ReadingNote(const ReadingNote&) = delete;
    ReadingNote& operator=(const ReadingNote&) = delete;

  private:
    bool m_isStarted = false;
};
