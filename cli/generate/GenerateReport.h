#pragma once

#include "cli/generate/ComparedPlace.h"
#include "cli/generate/GenerateOptions.h"
#include "cli/text/ErrorDocument.h"
#include "cli/text/Terminal.h"
#include "generation/GenerationObserver.h"

#include <QStringList>

#include <utility>
#include <vector>

/// Collects the results of a generation and prints them for people, or as JSON for programs.
class GenerateReport final : public GenerationObserver {
  public:
    explicit GenerateReport(const GenerateOptions& options) : m_options(options) {}

    /// Shows progress from now on.
    void begin(Terminal::ProgressBar& progress) { m_progress = &progress; }
    void end() { m_progress = nullptr; }

    void fileWritten(const File& file) override;
    void failed(const QString& path, const Error& error) override;

    /// Tells of a line that a file of the project lacks.
    void note(const QString& path, const QString& line);

    /// Tells how files on the disk are not what the run would write.
    void differ(std::vector<Difference> differences) { m_differences = std::move(differences); }

    void warn(const QString& sentence);
    /// Reports a failure that is not about one file of the set. `path` may be empty.
    void fail(const QString& path, const Error& error);

    /// What was written up to now.
    const std::vector<File>& files() const { return m_files; }
    /// For each file that could not be written, its path and the cause.
    std::vector<std::pair<QString, QString>> failures() const;

    /// Tells of the proof sheet that was written.
    void proofWritten(const QString& path) { m_proof = path; }

    /// Prints everything and returns the exit status.
    int finish();

  private:
    struct Failure {
        QString path;
        QString cause;
    };

    void sortFiles();
    void printFailures() const;
    bool printSummary() const;
    bool printList() const;
    bool printComparison() const;
    bool printResult() const;
    bool printTimings() const;
    bool printJson() const;
    QString fileLine(const File& file) const;
    QString ofPicture(const QString& sentence) const;
    bool isListed() const { return m_options.purpose == GeneratePurpose::List; }
    QString countedFiles() const;
    QString shortPath(const QString& path) const;

    const GenerateOptions& m_options;
    Terminal::ProgressBar* m_progress = nullptr;
    std::vector<File> m_files;
    std::vector<Failure> m_failures;
    std::vector<Difference> m_differences;
    QStringList m_notes;
    QString m_proof;
    QStringList m_warnings;
    std::vector<ToldError> m_errors;
};
