#include "cli/generate/GenerateJobs.h"

#include "project/JobProcesses.h"

#include <QDataStream>
#include <QIODevice>

namespace {

QByteArray bytesOf(const OptionValues& values) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << static_cast<qint32>(values.size());
    for (const auto& [name, texts] : values) {
        stream << QByteArray::fromStdString(name) << static_cast<qint32>(texts.size());
        for (const std::string& text : texts)
            stream << QByteArray::fromStdString(text);
    }
    return bytes;
}

OptionValues valuesOf(const QByteArray& bytes) {
    OptionValues values;
    QDataStream stream(bytes);
    qint32 options = 0;
    for (stream >> options; options > 0; --options) {
        QByteArray name;
        qint32 texts = 0;
        stream >> name >> texts;
        std::vector<std::string>& list = values[name.toStdString()];
        for (; texts > 0; --texts) {
            QByteArray text;
            stream >> text;
            list.push_back(text.toStdString());
        }
    }
    return values;
}

QByteArray bytesOf(const RunResult& result) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << static_cast<qint32>(result.exitStatus) << result.output << result.errors;
    return bytes;
}

RunResult resultOf(const QByteArray& bytes) {
    RunResult result;
    QDataStream stream(bytes);
    qint32 exitStatus = 1;
    stream >> exitStatus >> result.output >> result.errors;
    result.exitStatus = exitStatus;
    return result;
}

QByteArray answerTo(const QByteArray& job) {
    Parsed<GenerateOptions> options = GenerateRuns::parsed(valuesOf(job));
    // The process that sent them has read them already.
    if (const auto* error = std::get_if<UsageError>(&options))
        return bytesOf(
            RunResult::failed({}, {ErrorCode::Malformed, QString::fromStdString(error->sentence)}));
    auto& one = std::get<GenerateOptions>(options);
    one.isOneOfSeveral = true;
    one.open = false;
    return bytesOf(RunResult::of(one));
}

} // namespace

void GenerateJobs::run(const std::vector<GenerateRun>& runs, int count, RunResults& results) {
    std::vector<QByteArray> jobs;
    jobs.reserve(runs.size());
    for (const GenerateRun& run : runs)
        jobs.push_back(bytesOf(run.values));
    JobProcesses::run(jobs, count, [&](std::size_t job, const Result<QByteArray>& answer) {
        results.add(job, answer ? resultOf(*answer) : RunResult::failed(runs[job].options, answer.error()));
    });
}

void GenerateJobs::serve() {
    JobProcesses::serve(answerTo);
}
