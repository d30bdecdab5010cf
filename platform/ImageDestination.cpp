#include "platform/ImageDestination.h"

#include "platform/AtomicFile.h"

std::unique_ptr<ImageDestination> ImageDestination::create(const QString& path, const QString& type,
                                                           int count) {
    if (path.isEmpty() || path.contains(QChar::Null) || count < 1 || type != QLatin1String(icnsType))
        return nullptr;
    return std::unique_ptr<ImageDestination>(new ImageDestination(path, count));
}

void ImageDestination::addImage(const QImage& image) {
    --m_missing;
    const IcnsWriter::Added added = m_icns.addImage(image);
    m_hasFailed = m_hasFailed || added == IcnsWriter::Added::Failed;
    if (added == IcnsWriter::Added::Yes)
        m_largestSize = m_largestSize.expandedTo(image.size());
}

Result<Done> ImageDestination::finalize() {
    if (m_missing != 0 || m_hasFailed || m_icns.isEmpty())
        return Error{ErrorCode::Malformed, QStringLiteral("one of its pictures can't be made")};
    const QByteArray file = m_icns.data();
    Result<Done> written = AtomicFile::write(m_path, file);
    if (written)
        m_bytesWritten = file.size();
    return written;
}
