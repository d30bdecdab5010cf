#include "mainwindow/ShownPicture.h"

#include "files/FilePath.h"
#include "files/PathBytes.h"
#include "files/RegularFile.h"
#include "imaging/image/FittedRep.h"
#include "imaging/svg/SvgDocument.h"

#include <utility>

ShownPicture::ShownPicture(const QString& path, QByteArray pasted, LoadedPicture picture)
    : m_path(path),
      m_pasted(path.isEmpty() ? std::move(pasted) : QByteArray()),
      m_stamp(FileItem::stamp(path)),
      m_picture(std::move(picture)) {}

QString ShownPicture::name() const {
    return m_path.isEmpty() ? QStringLiteral("icon") : nameWithoutEnding(m_path);
}

LayoutSources::Source ShownPicture::kept() const {
    if (isNull())
        return {};
    return {m_path, [this](const ReducedCopies::Renders& renders) { return fromKept(renders); }};
}

LayoutSources::Source ShownPicture::whole() const {
    if (isNull())
        return {};
    return {m_path, [this](const ReducedCopies::Renders& renders) { return fromSource(renders); }};
}

bool ShownPicture::isUnchanged() const {
    return m_stamp.isThere() && FileItem::stamp(m_path) == m_stamp;
}

Result<LoadedPicture> ShownPicture::fromKept(const ReducedCopies::Renders& renders) const {
    LoadedPicture picture = m_picture;
    picture.image = fitted(picture.image, renders.fit);
    return picture;
}

Result<LoadedPicture> ShownPicture::fromSource(const ReducedCopies::Renders& renders) const {
    const LoadOptions options{renders, {svgSecondsOfGeneration}};
    if (!m_pasted.isEmpty())
        return ImageSource::load(m_pasted, options);
    return isUnchanged() ? ImageSource::loadFile(PathBytes::encoded(m_path).toStdString(), options)
                         : fromKept(renders);
}

QByteArray ShownPicture::document() const {
    constexpr qint64 mostBytes = 64 << 20;
    if (!m_pasted.isEmpty())
        return SvgDocument::inflated(m_pasted).valueOr({});
    if (!isUnchanged())
        return {};
    const Result<QByteArray> bytes = RegularFile::read(PathBytes::encoded(m_path).toStdString(), mostBytes);
    return bytes ? SvgDocument::inflated(*bytes).valueOr({}) : QByteArray();
}
