#include "shell/Languages.h"

#include <QCoreApplication>
#include <QFile>
#include <QLibraryInfo>
#include <QTranslator>

namespace {

const QString ourFolder = QStringLiteral(":/translations");

} // namespace

Languages::Languages(const QStringList& wanted) : m_code(QStringLiteral("en")) {
    for (const QString& language : wanted) {
        const QString code = language.section(u'-', 0, 0).section(u'_', 0, 0);
        const bool isThere = QFile::exists(ourFolder + QStringLiteral("/tobrimax_%1.qm").arg(code));
        if (!isThere && code != m_code)
            continue;
        m_code = code;
        if (isThere) {
            install(QStringLiteral("qtbase_") + code, QLibraryInfo::path(QLibraryInfo::TranslationsPath));
            install(QStringLiteral("tobrimax_") + code, ourFolder);
        }
        return;
    }
}

Languages::~Languages() = default;

void Languages::install(const QString& name, const QString& folder) {
    auto translator = std::make_unique<QTranslator>();
    if (translator->load(name, folder) && QCoreApplication::installTranslator(translator.get()))
        m_translators.push_back(std::move(translator));
}
