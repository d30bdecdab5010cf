#include "base/SystemError.h"
#include "tests/support/BigEndian.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <clocale>
#include <cstring>
#ifdef __GLIBC__
#include <libintl.h>
#endif

TEST(SystemError, a_cause_is_an_english_sentence) {
    EXPECT_EQ(systemSentence(ENOENT), QStringLiteral("No such file or directory"));
    EXPECT_EQ(systemSentence(ENOTDIR), QStringLiteral("Not a directory"));
    EXPECT_EQ(systemSentence(98765), QStringLiteral("Unknown error 98765"));
}

#ifdef __GLIBC__
namespace {

/// A file of gettext's with one translation: "GNU gettext utilities", "The Format of GNU MO Files".
QByteArray translation(const QByteArray& text, const QByteArray& translated) {
    constexpr quint32 headerSize = 28;
    constexpr quint32 entrySize = 8;
    const quint32 textAt = headerSize + 2 * entrySize;
    const auto translatedAt = static_cast<quint32>(textAt + text.size() + 1);
    QByteArray bytes = big<quint32>(0x950412de) + big<quint32>(0) + big<quint32>(1) + big(headerSize) +
                       big(headerSize + entrySize) + big<quint32>(0) + big<quint32>(0);
    bytes += big(static_cast<quint32>(text.size())) + big(textAt);
    bytes += big(static_cast<quint32>(translated.size())) + big(translatedAt);
    return bytes + text + '\0' + translated + '\0';
}

} // namespace

TEST(SystemError, a_cause_is_in_english_in_any_language) {
    const QTemporaryDir folder;
    const QString messages = folder.filePath(QStringLiteral("xx/LC_MESSAGES"));
    ASSERT_TRUE(QDir().mkpath(messages));
    QFile file(messages + QStringLiteral("/libc.mo"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(translation("No such file or directory", "Kein Verzeichnis"));
    file.close();
    ASSERT_EQ(setenv("LANGUAGE", "xx", 1), 0);
    ASSERT_NE(bindtextdomain("libc", QFile::encodeName(folder.path()).constData()), nullptr);
    // Since version 2.39, the GNU C library translates nothing in C.UTF-8.
    const auto translates = [](const char* locale) {
        return std::setlocale(LC_ALL, locale) != nullptr &&
               std::strcmp(std::strerror(ENOENT), "Kein Verzeichnis") == 0;
    };
    if (std::ranges::none_of(std::array{"C.UTF-8", "en_US.UTF-8", "de_DE.UTF-8"}, translates))
        GTEST_SKIP() << "this system has no locale whose messages are translated";
    EXPECT_EQ(systemSentence(ENOENT), QStringLiteral("No such file or directory"));
    EXPECT_EQ(systemError(ENOENT, ErrorCode::NotFound).sentence, QStringLiteral("No such file or directory"));
}
#endif
