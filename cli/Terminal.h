#pragma once

#include <QString>

/// What is written to the standard streams, always as UTF-8.
namespace Terminal {

/// `text` as it may be shown: control characters, line separators and those that only
/// change how others are shown (the direction of writing, for instance) are escaped.
QString escaped(const QString& text);

/// A JSON document that says the same, with such characters in its texts escaped as JSON does.
QString escapedJson(const QString& document);

/// One line on standard output, as it is. False where it could not be written.
bool print(const QString& line);

/// Says that standard output can't be written and returns the exit status that goes with it.
int outputFailure();

/// "tobrimax-cli: error: …" and "tobrimax-cli: warning: …" on standard error, escaped.
void error(const QString& sentence);
void warning(const QString& sentence);

/// Sends the diagnostic log to standard error, or nowhere, as everything else that libraries print.
void showDiagnosticLog(bool isShown);

/// A bar on standard error that tells how far a job has come; nothing where that is no terminal.
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
