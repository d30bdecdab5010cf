#include "iconfamily/IconFamily.h"

#include "base/Log.h"
#include "base/ShortMemory.h"
#include "files/FileInPlace.h"
#include "files/PathBytes.h"
#include "files/RegularFile.h"
#include "iconfamily/CarbonFSRefCreation.h"
#include "iconfamily/IconFamilyElements.h"
#include "imaging/icns/IcnsReader.h"
#include "imaging/icns/IconFamilyBlock.h"
#include "platform/forks/ResourceFile.h"

#include <limits>
#include <vector>

std::unique_ptr<IconFamily> IconFamily::init() {
    return initWithIconFamilyHandle({});
}

std::unique_ptr<IconFamily> IconFamily::iconFamily() {
    return init();
}

std::unique_ptr<IconFamily> IconFamily::initWithData(const QByteArray& data) {
    // A deep copy: the caller may free the bytes that `data` refers to.
    return initWithIconFamilyHandle(QByteArray(data.constData(), data.size()));
}

std::unique_ptr<IconFamily> IconFamily::initWithContentsOfFile(const QString& path) {
    constexpr qint64 largest = std::numeric_limits<quint32>::max();
    const Result<FSRef> reference = CarbonFSRefCreation::reference(path, false);
    if (!reference)
        return nullptr;
    Result<RegularFile::Part> file = unlessMemoryIsShort([&] {
        return RegularFile::readPart(PathBytes::encoded(reference->path).toStdString(), largest,
                                     IcnsReader::lengthToRead);
    });
    // What follows the family in the file is no part of it.
    if (!file || IcnsReader::lengthOf(file->bytes) != file->bytes.size())
        return nullptr;
    return initWithIconFamilyHandle(std::move(file->bytes));
}

std::unique_ptr<IconFamily> IconFamily::iconFamilyWithContentsOfFile(const QString& path) {
    return initWithContentsOfFile(path);
}

std::unique_ptr<IconFamily> IconFamily::initWithIconFamilyHandle(QByteArray handle) {
    // std::make_unique cannot call the private constructor.
    return std::unique_ptr<IconFamily>(new (std::nothrow) IconFamily(std::move(handle)));
}

std::unique_ptr<IconFamily> IconFamily::iconFamilyWithIconFamilyHandle(QByteArray handle) {
    return initWithIconFamilyHandle(std::move(handle));
}

std::unique_ptr<IconFamily> IconFamily::initWithIconOfFile(const QString& /*path*/) {
    return nullptr;
}

std::unique_ptr<IconFamily> IconFamily::iconFamilyWithIconOfFile(const QString& path) {
    return initWithIconOfFile(path);
}

std::unique_ptr<IconFamily> IconFamily::initWithSystemIcon(FourCharCode /*type*/) {
    return nullptr;
}

std::unique_ptr<IconFamily> IconFamily::iconFamilyWithSystemIcon(FourCharCode type) {
    return initWithSystemIcon(type);
}

bool IconFamily::writeToFile(const QString& path) const {
    return FileInPlace::write(path, hIconFamily).operator bool();
}

namespace {

/// The samples of `bitmap` in the form that `element` stores. No value if the bitmap has another size or
/// shape, or if memory is short.
std::optional<QByteArray> converted(const BitmapImageRep& bitmap, const WritableElement& element) {
    switch (element.content) {
    case ElementContent::Colors:
        return IconFamily::get32BitDataFromBitmapImageRep(bitmap, element.pixelSize);
    case ElementContent::Channel:
        return IconFamily::get8BitDataFromBitmapImageRep(bitmap, element.pixelSize);
    case ElementContent::Coverage:
        return IconFamily::get8BitMaskFromBitmapImageRep(bitmap, element.pixelSize);
    case ElementContent::Bits:
        return IconFamily::get1BitMaskFromBitmapImageRep(bitmap, element.pixelSize);
    }
    return std::nullopt;
}

} // namespace

bool IconFamily::setIconFamilyElement(FourCharCode type, const BitmapImageRep* fromBitmapImageRep) {
    const WritableElement* element = writableElement(type);
    if (fromBitmapImageRep == nullptr || element == nullptr)
        return false;
    const std::optional<QByteArray> samples = converted(*fromBitmapImageRep, *element);
    if (!samples) {
        logLine(QStringLiteral("Null data returned to setIconFamilyElement:fromBitmapImageRep:"));
        return false;
    }
    const Result<Done> stored = IconFamilyBlock::setIconFamilyData(hIconFamily, type, *samples);
    if (!stored)
        logLine(QStringLiteral("SetIconFamilyData() returned error %1")
                    .arg(IconFamilyBlock::platformStatus(stored.error())));
    return stored.operator bool();
}

bool IconFamily::addResourceType(FourCharCode type, qint16 asResID) const {
    return addElement(type, asResID).operator bool();
}

Result<Done> IconFamily::addElement(FourCharCode type, qint16 asResID) const {
    Result<QByteArray> data = IconFamilyBlock::getIconFamilyData(hIconFamily, type);
    if (!data)
        return data.error();
    if (data->isEmpty())
        return Error{ErrorCode::NotFound, QStringLiteral("the element %1 is empty").arg(type.text())};
    ResourceFile* file = ResourceFile::current();
    if (file == nullptr)
        return Done{};
    return unlessMemoryIsShort([&] {
        return file->fork().addResource({type, asResID, QByteArray(), 0, std::move(*data)});
    });
}

namespace {

/// A null image if the block holds no picture of a known format.
Result<Image> imageOf(const QByteArray& block) {
    const Result<IcnsReader> reader = IcnsReader::open(block);
    if (!reader)
        return reader.error();
    const Result<std::vector<IcnsElement>> elements = reader->pictureElements();
    if (!elements)
        return elements.error();
    std::vector<std::shared_ptr<const ImageRep>> representations;
    QSize largest;
    for (const IcnsElement& element : *elements) {
        Result<DecodedPicture> picture = reader->picture(element);
        if (!picture)
            continue;
        const QSize size = picture->raster.size();
        if (size.width() * size.height() > largest.width() * largest.height())
            largest = size;
        representations.push_back(std::make_shared<BitmapImageRep>(std::move(picture->raster)));
    }
    if (representations.empty())
        return Image();
    Image image{QSizeF(largest)};
    for (auto& representation : representations)
        image.addRepresentation(std::move(representation));
    return image;
}

} // namespace

Image IconFamily::imageWithAllReps() const {
    return unlessMemoryIsShort([&] { return imageOf(hIconFamily); }).valueOr({});
}

std::unique_ptr<BitmapImageRep>
IconFamily::bitmapImageRepWithAlphaForIconFamilyElement(FourCharCode type) const {
    const IcnsElementType* element = readableElement(type);
    if (element == nullptr)
        return nullptr;
    const qsizetype pixels = qsizetype{element->pixelSize} * element->pixelSize;
    Result<QByteArray> samples = IconFamilyBlock::getIconFamilyData(hIconFamily, type);
    if (!samples || samples->size() < 4 * pixels)
        return nullptr;
    if (element->content == IcnsContent::Colors) {
        const Result<QByteArray> mask = IconFamilyBlock::getIconFamilyData(hIconFamily, element->mask);
        if (!mask && mask.error().code == ErrorCode::OutOfMemory)
            return nullptr;
        const bool isMasked = mask && mask->size() >= pixels;
        for (qsizetype i = 0; i < pixels; ++i) {
            char& alpha = (*samples)[4 * i];
            alpha = isMasked ? static_cast<char>(alpha | mask->at(i)) : static_cast<char>(255);
        }
    }
    BitmapLayout layout;
    layout.pixelsWide = element->pixelSize;
    layout.pixelsHigh = element->pixelSize;
    layout.isAlphaFirst = true;
    return BitmapImageRep::initWithBitmapData(layout, *samples).valueOr(nullptr);
}
