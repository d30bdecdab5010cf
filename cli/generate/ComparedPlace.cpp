#include "cli/generate/ComparedPlace.h"

#include "files/FileItem.h"
#include "files/PathBytes.h"
#include "files/RegularFile.h"
#include "imaging/png/PngHeader.h"

namespace {

QString shown(const QSize& size) {
    return QStringLiteral("%1 × %2").arg(size.width()).arg(size.height());
}

} // namespace

Result<Done> ComparedPlace::write(const QString& path, const QByteArray& bytes) {
    std::erase_if(m_differences, [&](const Difference& other) { return other.path == path; });
    if (!FileItem::exists(path)) {
        m_differences.push_back({path, Difference::Kind::Missing, {}});
        return Done{};
    }
    // No more is read than what can be equal.
    const Result<RegularFile::Part> there =
        RegularFile::readPart(PathBytes::encoded(path).toStdString(), bytes.size(),
                              [&](const QByteArray&) -> Result<qint64> { return bytes.size(); });
    if (!there)
        return there.error();
    if (there->fileSize == bytes.size() && there->bytes == bytes)
        return Done{};
    const std::optional<QSize> wanted = PngHeader::size(bytes);
    const std::optional<QSize> found = PngHeader::size(there->bytes);
    if (wanted && found && *wanted != *found)
        m_differences.push_back({path, Difference::Kind::OtherSize,
                                 QStringLiteral("%1, not %2").arg(shown(*found), shown(*wanted))});
    else
        m_differences.push_back({path, Difference::Kind::OtherBytes, {}});
    return Done{};
}
