#include "cli/generate/GeneratePlace.h"

#include "files/Folder.h"

OutputPlace& GeneratePlace::place() {
    switch (m_options.purpose) {
    case GeneratePurpose::Check:
        return m_compared;
    case GeneratePurpose::List:
        return m_planned;
    case GeneratePurpose::Stream:
        return m_tar;
    case GeneratePurpose::Write:
        break;
    }
    return OutputPlace::disk();
}

Result<Done> GeneratePlace::check() const {
    const bool isOnDisk =
        m_options.purpose == GeneratePurpose::Write || m_options.purpose == GeneratePurpose::List;
    return isOnDisk ? Folder::checkTarget(m_options.out) : Done{};
}

void GeneratePlace::finish(GenerateReport& report) {
    if (m_options.purpose == GeneratePurpose::Check)
        report.differ(m_compared.differences());
    if (m_options.purpose != GeneratePurpose::Stream)
        return;
    if (const Result<Done> finished = m_tar.finish(); !finished)
        report.fail({}, finished.error());
}
