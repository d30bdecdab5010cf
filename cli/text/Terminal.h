#pragma once

#include <QString>

/// Writes to the standard streams, always as UTF-8.
namespace Terminal {

/// `text` in a form that is safe to show. Control characters, line separators and invisible characters that
/// change how others are shown (the direction of writing, for instance) are escaped, and so are bytes of
/// names that are not UTF-8.
QString escaped(const QString& text);

/// `text` with such characters escaped as in JSON.
QString escapedJson(const QString& text);

/// Prints one line on standard output, unescaped. False if it could not be written.
bool print(const QString& line);

/// The same without the end of the line.
bool printText(const QString& text);

/// Reports that standard output can't be written, and returns the exit status 1.
int outputFailure();

/// Prints "tobrimax-cli: error: …", "tobrimax-cli: warning: …" or "tobrimax-cli: note: …" on standard error,
/// escaped.
void error(const QString& sentence);
void warning(const QString& sentence);
void note(const QString& sentence);

/// Sends the diagnostic log to standard error, or discards it. Messages of libraries are always discarded.
void showDiagnosticLog(bool isShown);

/// A progress bar on standard error; not shown if standard error is not a terminal, or if the variable TERM
/// is empty or "dumb".
class ProgressBar {
  public:
    ProgressBar(int total, bool isWanted);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void advance();

  private:
    void draw() const;

    int m_total;
    int m_done = 0;
    bool m_isShown;
};

} // namespace Terminal
