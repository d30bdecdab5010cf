#include "generation/IconSizeCatalogue.h"
#include "platform/services/Bundle.h"
#include "tests/allocation/FailingAllocations.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// With a catalogue of its own.
class OtherBundle final : public Bundle {
  public:
    explicit OtherBundle(QString path) : m_path(std::move(path)) {}
    QString pathForResource(const QString& /*name*/) const override { return m_path; }

  private:
    QString m_path;
};

} // namespace

TEST(IconSizeCatalogueAllocations, a_catalogue_is_loaded_or_memory_is_short) {
    constexpr qsizetype large = 1 << 20;
    QFile builtIn(QStringLiteral(RESOURCES_DIR "/ImageSizeFile.plist"));
    ASSERT_TRUE(builtIn.open(QIODevice::ReadOnly));
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("large.plist")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(builtIn.readAll() + QByteArray(large, '\n'));
    file.close();
    const OtherBundle bundle(file.fileName());
    FailingAllocations::expectFailuresOfLarge(large, [&] {
        const Result<IconSizeCatalogue> catalogue = IconSizeCatalogue::load(bundle);
        EXPECT_TRUE(!catalogue || catalogue->keys(Platform::Iphone).size() == 9);
        return FailingAllocations::hasSucceeded(catalogue);
    });
}
