#include "cli/common/ProofOption.h"

#include "cli/common/InputFile.h"
#include "cli/text/Terminal.h"
#include "files/FileItem.h"
#include "files/FilePath.h"
#include "files/PathBytes.h"
#include "project/proof/Proof.h"

void ProofOption::addTo(CLI::App& command, std::string& word) {
    command
        .add_option(
            "--proof", word,
            "write a page that shows each icon at its true size on light and dark, in the shapes that "
            "systems cut; its ending, .html or .png, says in which form")
        ->type_name("FILE");
}

Parsed<QString> ProofOption::path(const std::string& word, const std::string& input) {
    QString path;
    std::optional<UsageError> error;
    if (!take(OptionText::path(word, "--proof"), path, error))
        return *error;
    if (!isProofName(path))
        return UsageError{"--proof takes a name that ends with .html or .png, not '" + word + "'"};
    const QString there = FileItem::canonicalPath(path);
    if (!there.isEmpty() && there == FileItem::canonicalPath(PathBytes::decoded(input)))
        return UsageError{"--proof would replace the file that is read, '" + word + "'"};
    return path;
}

QString ProofOption::title(const std::string& input) {
    return InputFile::isStandardInput(input) ? QStringLiteral("Icons")
                                             : lastPathComponent(PathBytes::decoded(input));
}

Result<Done> ProofOption::write(ProofSheet sheet, const QString& path) {
    const auto escape = [](QString& text) { text = Terminal::escaped(text); };
    escape(sheet.title);
    for (ProofGroup& group : sheet.groups) {
        escape(group.title);
        for (ProofPart& part : group.parts) {
            escape(part.title);
            for (ProofIcon& icon : part.icons) {
                escape(icon.name);
                escape(icon.detail);
            }
        }
    }
    for (QString& note : sheet.notes)
        escape(note);
    return writeProof(sheet, path);
}
