#include "cli/generate/RunResults.h"

#include "cli/generate/GenerateReport.h"
#include "files/PathBytes.h"

#include <new>

namespace {

/// The lines of a document, moved to the right.
QByteArray indented(const QByteArray& document) {
    constexpr int columns = 4;
    const QByteArray space(columns, ' ');
    return space + document.trimmed().replace("\n", "\n" + space);
}

} // namespace

RunResult RunResult::of(const GenerateOptions& options) {
    try {
        Terminal::Capture capture;
        const int exitStatus = GenerateRuns::make(options);
        return {exitStatus, capture.output(), capture.errors()};
    } catch (const std::bad_alloc&) {
        return failed(options, {ErrorCode::OutOfMemory, QStringLiteral("not enough memory")});
    }
}

RunResult RunResult::failed(const GenerateOptions& options, const Error& error) {
    Terminal::Capture capture;
    GenerateReport report(options);
    report.fail(PathBytes::decoded(options.picture), error);
    const int exitStatus = report.finish();
    return {exitStatus, capture.output(), capture.errors()};
}

RunResults::RunResults(const std::vector<GenerateRun>& runs)
    : m_isJson(runs.front().options.json),
      m_progress(static_cast<int>(runs.size()), !runs.front().options.quiet && !runs.front().options.verbose,
                 Terminal::ProgressBar::Unit::Sets) {}

void RunResults::add(std::size_t index, RunResult result) {
    m_waiting.emplace(index, std::move(result));
    while (!m_waiting.empty() && m_waiting.begin()->first == m_printed) {
        print(m_waiting.begin()->second);
        m_waiting.erase(m_waiting.begin());
        ++m_printed;
    }
    m_progress.advance();
}

void RunResults::print(const RunResult& result) {
    m_isFailed = m_isFailed || result.exitStatus != 0;
    if (result.output.isEmpty() && result.errors.isEmpty())
        return;
    m_progress.hide();
    Terminal::passOn(stderr, result.errors);
    if (!m_isJson) {
        m_isWritten = Terminal::passOn(stdout, result.output) && m_isWritten;
        return;
    }
    const QByteArray before = m_printed == 0 ? "{\n  \"runs\": [\n" : ",\n";
    m_isWritten = Terminal::passOn(stdout, before + indented(result.output)) && m_isWritten;
}

int RunResults::finish() {
    m_progress.hide();
    if (m_isJson)
        m_isWritten = Terminal::passOn(stdout, "\n  ]\n}\n") && m_isWritten;
    if (!m_isWritten)
        return Terminal::outputFailure();
    return m_isFailed ? 1 : 0;
}
