#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>

#include <cstdio>

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

/// Writes bytes that were captured to `stream`, stdout or stderr. False if they could not be written.
bool passOn(std::FILE* stream, const QByteArray& bytes);

/// While it lives, what this program would write to the standard streams is kept instead, and no progress is
/// shown. There is one at a time.
class Capture {
  public:
    Capture();
    ~Capture();
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;

    const QByteArray& output() const { return m_output; }
    const QByteArray& errors() const { return m_errors; }
    void add(std::FILE* stream, const QByteArray& bytes);

  private:
    QByteArray m_output;
    QByteArray m_errors;
};

/// Whether standard error is a terminal on which a line can be erased: TERM is neither empty nor "dumb", and
/// nothing is captured.
bool canErase();

/// How many characters fit into a line of the terminal behind a file descriptor; 80 if there is no terminal.
int columns(int stream);

/// A progress bar on standard error; not shown if standard error is not a terminal, or if the variable TERM
/// is empty or "dumb".
class ProgressBar {
  public:
    /// What is counted. Sets also have a rate.
    enum class Unit { Icons, Sets };

    ProgressBar(int total, bool isWanted, Unit unit = Unit::Icons);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void advance();
    /// Erases the bar, before lines are printed. It is shown again when it advances.
    void hide() const;

  private:
    void draw() const;
    QString rate() const;

    int m_total;
    int m_done = 0;
    bool m_isShown;
    Unit m_unit;
    QElapsedTimer m_timer;
};

} // namespace Terminal
