#pragma once

#include "cli/GenerateOptions.h"
#include "cli/Terminal.h"
#include "generation/GenerationObserver.h"

#include <QStringList>

#include <vector>

/// Collects what a generation does and tells it to people, or to programs as JSON.
class GenerateReport final : public GenerationObserver {
  public:
    explicit GenerateReport(const GenerateOptions& options) : m_options(options) {}

    /// From here on progress is shown.
    void begin(Terminal::ProgressBar& progress) { m_progress = &progress; }

    void fileWritten(const File& file) override;
    void failed(const QString& path, const Error& error) override;

    void warn(const QString& sentence);
    /// A failure that is not about one file of the set.
    void fail(const QString& sentence);

    /// Writes everything out and returns the exit status.
    int finish();

  private:
    struct Failure {
        QString path;
        QString cause;
    };

    void printFailures() const;
    bool printSummary() const;
    bool printTimings() const;
    bool printJson() const;
    QString fileLine(const File& file) const;
    QString shortPath(const QString& path) const;

    const GenerateOptions& m_options;
    Terminal::ProgressBar* m_progress = nullptr;
    std::vector<File> m_files;
    std::vector<Failure> m_failures;
    QStringList m_warnings;
    QStringList m_errors;
};
