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
    m_icns.addImage(image);
}

Result<Done> ImageDestination::finalize() {
    if (m_missing != 0 || m_icns.isEmpty())
        return Error{ErrorCode::Malformed, QStringLiteral("a picture is missing")};
    const QByteArray file = m_icns.data();
    Result<Done> written = AtomicFile::write(m_path, file);
    if (written)
        m_bytesWritten = file.size();
    return written;
}
