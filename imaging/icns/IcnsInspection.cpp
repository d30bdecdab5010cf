#include "imaging/icns/IcnsInspection.h"

#include "base/ByteReader.h"
#include "base/ShortMemory.h"
#include "imaging/icns/IcnsReader.h"
#include "imaging/icns/IcnsRle.h"

#include <algorithm>
#include <set>

namespace {

struct Description {
    FourCharCode code;
    const char* what;
};

constexpr FourCharCode tableOfContents("TOC ");

/// The meanings of types that hold no picture that is read here.
constexpr Description descriptions[] = {
    {tableOfContents, "table of contents"},
    {"icnV", "version of the tool that made it"},
    {"name", "name"},
    {"info", "information (property list)"},
    {"ICON", "1-bit picture, 32 points"},
    {"ICN#", "1-bit picture and mask, 32 points"},
    {"ics#", "1-bit picture and mask, 16 points"},
    {"icm#", "1-bit picture and mask, 16 × 12 points"},
    {"ich#", "1-bit picture and mask, 48 points"},
    {"icm4", "4-bit picture, 16 × 12 points"},
    {"ics4", "4-bit picture, 16 points"},
    {"icl4", "4-bit picture, 32 points"},
    {"ich4", "4-bit picture, 48 points"},
    {"icm8", "8-bit picture, 16 × 12 points"},
    {"ics8", "8-bit picture, 16 points"},
    {"icl8", "8-bit picture, 32 points"},
    {"ich8", "8-bit picture, 48 points"},
    {"tile", "variant: tile"},
    {"over", "variant: rollover"},
    {"drop", "variant: drop"},
    {"open", "variant: open"},
    {"odrp", "variant: open and drop"},
    {"sbtp", "variant: template"},
    {"slct", "variant: selected"},
    {FourCharCode(0xfdd92fa8), "variant: dark"},
};

/// Whether a PNG or JPEG 2000 file in an element of `type` is shown wrongly in application bundles.
bool failsInBundles(FourCharCode type) {
    constexpr FourCharCode types[] = {"ic04", "ic05", "icp4", "icp5", "icp6"};
    return std::ranges::find(types, type) != std::end(types);
}

QString scaleText(int scale) {
    return scale == 1 ? QString() : QStringLiteral(" @%1x").arg(scale);
}

QString sizeText(const QSize& size) {
    return QStringLiteral("%1 × %2 pixels").arg(size.width()).arg(size.height());
}

/// Remarks about run-length coded channels; empty where nothing is odd.
QStringList packedRemarks(QByteArrayView packed, int side, int channels) {
    const auto pixels = static_cast<std::size_t>(side) * static_cast<std::size_t>(side);
    for (int i = 0; i < channels; ++i) {
        const std::optional<QByteArrayView> rest = IcnsRle::skip(packed, pixels);
        if (!rest)
            return {QStringLiteral("its packed samples break off")};
        packed = *rest;
    }
    if (!packed.isEmpty())
        return {QStringLiteral("%1 bytes follow its samples").arg(packed.size())};
    return {};
}

class Inspector {
  public:
    /// `hasPicture`: whether any element holds a picture that is read here.
    Inspector(const IcnsReader& reader, bool hasPicture, qint64 fileSize) : m_reader(reader) {
        for (const IcnsElement& element : reader.elements())
            m_types.insert(element.type.value);
        if (fileSize > reader.length())
            m_result.remarks
                << QStringLiteral("%1 bytes follow the icon family").arg(fileSize - reader.length());
        if (reader.elements().empty())
            m_result.remarks << QStringLiteral("it has no elements");
        else if (!hasPicture)
            m_result.remarks << QStringLiteral("it has no picture of a kind that is read here");
    }

    IcnsInspection result() {
        m_result.elements.reserve(m_reader.elements().size());
        for (const IcnsElement& element : m_reader.elements())
            m_result.elements.push_back(inspected(element));
        return std::move(m_result);
    }

  private:
    IcnsInspection::Element inspected(const IcnsElement& element) {
        const IcnsElementType* type = icnsElementType(element.type);
        IcnsInspection::Element result;
        result.type = element.type;
        result.bytes = element.data.size();
        if (type != nullptr)
            result.info = icnsPictureInfo(*type, element.data);
        result.isRepeated = !m_seen.insert(element.type.value).second;
        if (result.isRepeated)
            return result;
        if (type != nullptr)
            result.remarks = remarks(element, *type, result.info);
        else if (element.type == tableOfContents && !isContentsRight(element.data))
            result.remarks << QStringLiteral("it does not agree with the elements");
        return result;
    }

    QStringList remarks(const IcnsElement& element, const IcnsElementType& type,
                        const IcnsPictureInfo& info) const {
        switch (type.content) {
        case IcnsContent::Picture:
            return pictureRemarks(element, type, info);
        case IcnsContent::Colors:
            return colorRemarks(element, type, info);
        case IcnsContent::Mask:
            break;
        }
        QStringList result;
        const qsizetype pixels = qsizetype{type.pixelSize} * type.pixelSize;
        if (element.data.size() != pixels)
            result << QStringLiteral("it has %1 bytes instead of %2").arg(element.data.size()).arg(pixels);
        const auto colors = std::ranges::find_if(icnsElementTypes(),
                                                 [&](const auto& other) { return other.mask == type.code; });
        if (!m_types.contains(colors->code.value))
            result << QStringLiteral("it is the mask of %1, which is missing").arg(colors->code.text());
        return result;
    }

    QStringList colorRemarks(const IcnsElement& element, const IcnsElementType& type,
                             const IcnsPictureInfo& info) const {
        QStringList result;
        QByteArrayView packed = element.data;
        if (info.encoding == IcnsEncoding::PlainArgb)
            result << QStringLiteral("it holds plain samples, which few readers know");
        else if (type.hasLeadingZeros && !packed.startsWith(packedStart))
            result << QStringLiteral("its packed samples do not begin with four zero bytes");
        else
            result << packedRemarks(type.hasLeadingZeros ? packed.sliced(packedStart.size()) : packed,
                                    type.pixelSize, 3);
        if (!m_types.contains(type.mask.value))
            result << QStringLiteral("there is no mask %1: it is opaque").arg(type.mask.text());
        return result;
    }

    static QStringList pictureRemarks(const IcnsElement& element, const IcnsElementType& type,
                                      const IcnsPictureInfo& info) {
        QStringList result;
        const bool isFile = info.encoding == IcnsEncoding::Png || info.encoding == IcnsEncoding::Jpeg2000;
        if (info.encoding == IcnsEncoding::Unknown)
            return {QStringLiteral("its picture is of an unknown kind")};
        if (!info.size.isValid())
            result << QStringLiteral("its picture breaks off");
        else if (info.size != type.size())
            result << QStringLiteral("it holds %1; its type stands for %2")
                          .arg(sizeText(info.size), sizeText(type.size()));
        if (isFile && failsInBundles(type.code))
            result << QStringLiteral(
                "application bundles show this type wrongly if it holds a PNG or JPEG 2000 file");
        if (info.encoding == IcnsEncoding::PackedArgb)
            result << packedRemarks(element.data.sliced(argbMark.size()), type.pixelSize, 4);
        if (info.encoding == IcnsEncoding::PlainArgb)
            result << QStringLiteral("it holds plain samples, which few readers know");
        return result;
    }

    /// Whether a table of contents has the header of every other element, in order.
    bool isContentsRight(QByteArrayView contents) const {
        ByteReader rest(contents);
        for (const IcnsElement& element : m_reader.elements()) {
            if (element.type == tableOfContents)
                continue;
            const auto header = rest.record<IcnsHeader>(0);
            if (!header || header->code != element.type.value ||
                header->length != icnsHeaderSize + element.data.size())
                return false;
            rest = *rest.from(icnsHeaderSize);
        }
        return rest.isEmpty();
    }

    const IcnsReader& m_reader;
    IcnsInspection m_result;
    // Not hash sets: a file chooses its types, and so which of them collide. Not QSet: it ends the program
    // where memory is short.
    std::set<quint32> m_types;
    std::set<quint32> m_seen;
};

} // namespace

Result<IcnsInspection> inspectIcns(const QByteArray& bytes) {
    return inspectIcns(bytes, bytes.size());
}

Result<IcnsInspection> inspectIcns(const QByteArray& bytes, qint64 fileSize) {
    const Result<IcnsReader> reader = IcnsReader::open(bytes);
    if (!reader)
        return reader.error();
    const Result<std::vector<IcnsElement>> pictures = reader->pictureElements();
    if (!pictures)
        return pictures.error();
    return unlessMemoryIsShort([&] { return Inspector(*reader, !pictures->empty(), fileSize).result(); });
}

QString icnsTypeDescription(FourCharCode type) {
    const auto* described = std::ranges::find(descriptions, type, &Description::code);
    if (described != std::end(descriptions))
        return QString::fromUtf8(described->what);
    const IcnsElementType* known = icnsElementType(type);
    if (known == nullptr)
        return QStringLiteral("unknown");
    switch (known->content) {
    case IcnsContent::Picture:
        return QStringLiteral("picture, %1 points").arg(known->points()) + scaleText(known->scale);
    case IcnsContent::Colors:
        return QStringLiteral("colours, %1 points").arg(known->points());
    case IcnsContent::Mask:
        break;
    }
    return QStringLiteral("mask, %1 points").arg(known->points());
}

QString icnsEncodingName(IcnsEncoding encoding) {
    switch (encoding) {
    case IcnsEncoding::Png:
        return QStringLiteral("PNG");
    case IcnsEncoding::Jpeg2000:
        return QStringLiteral("JPEG 2000");
    case IcnsEncoding::PackedArgb:
        return QStringLiteral("packed ARGB");
    case IcnsEncoding::PackedColors:
        return QStringLiteral("packed RGB");
    case IcnsEncoding::PlainArgb:
        return QStringLiteral("plain ARGB");
    case IcnsEncoding::Mask:
        return QStringLiteral("mask");
    case IcnsEncoding::Unknown:
        break;
    }
    return QStringLiteral("unknown");
}
