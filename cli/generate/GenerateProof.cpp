#include "cli/generate/GenerateProof.h"

#include "cli/common/ProofOption.h"
#include "files/FileItem.h"
#include "project/proof/ProofSets.h"

#include <algorithm>

namespace {

void writeProof(ProofSheet sheet, const GenerateOptions& options, GenerateReport& report) {
    sheet.title = options.name.isEmpty() ? ProofOption::title(options.picture) : options.name;
    const QString there = FileItem::canonicalPath(options.proof);
    const bool isIcon = !there.isEmpty() && std::ranges::any_of(report.files(), [&](const auto& file) {
        return FileItem::canonicalPath(file.path) == there;
    });
    if (isIcon) {
        report.fail(options.proof,
                    {ErrorCode::NotWritable, QStringLiteral("the proof sheet would replace an icon")});
        return;
    }
    for (const auto& [path, cause] : report.failures())
        sheet.notes << QStringLiteral("%1 is left out: %2").arg(path, cause);
    if (const Result<Done> written = ProofOption::write(std::move(sheet), options.proof); !written)
        report.fail(options.proof, written.error());
    else
        report.proofWritten(options.proof);
}

} // namespace

void GenerateProof::ofPlatforms(const GenerateOptions& options, GenerateReport& report) {
    writeProof(ProofSets::ofPlatforms(report.files()), options, report);
}

void GenerateProof::ofLayouts(const GenerateOptions& options, std::span<const Layout> layouts,
                              const LayoutInput& input, GenerateReport& report) {
    writeProof(ProofSets::ofLayouts(report.files(), layouts, input.out, input.background), options, report);
}
