#include "imaging/image/PictureReader.h"

#include <QXmlStreamReader>

#include <algorithm>

namespace {

std::optional<int> number(QStringView text) {
    bool isNumber = false;
    const int value = text.trimmed().toInt(&isNumber);
    return isNumber ? std::optional(value) : std::nullopt;
}

} // namespace

std::optional<int> PictureReader::xmpOrientation(QByteArrayView packet) {
    constexpr qsizetype longest = qsizetype{4} << 20;
    const QByteArrayView looked = packet.first(std::min(longest, packet.size()));
    const QString rdf = QStringLiteral("http://www.w3.org/1999/02/22-rdf-syntax-ns#");
    const QString tiff = QStringLiteral("http://ns.adobe.com/tiff/1.0/");
    const QString property = QStringLiteral("Orientation");
    QXmlStreamReader xml(QByteArray::fromRawData(looked.data(), looked.size()));
    // 1 in the RDF, 2 in a description of the picture. What is described deeper inside is another one, such
    // as a picture that this one was made of.
    int depth = 0;
    while (!xml.atEnd()) {
        switch (xml.readNext()) {
        case QXmlStreamReader::DTD: // no packet has one
            return std::nullopt;
        case QXmlStreamReader::StartElement:
            if (depth == 0 && !(xml.name() == u"RDF" && xml.namespaceUri() == rdf))
                break;
            if (depth == 1 && xml.attributes().hasAttribute(tiff, property))
                return number(xml.attributes().value(tiff, property));
            if (depth == 2 && xml.name() == property && xml.namespaceUri() == tiff) {
                const QString text = xml.readElementText();
                return xml.hasError() ? std::nullopt : number(text);
            }
            ++depth;
            break;
        case QXmlStreamReader::EndElement:
            depth = std::max(depth - 1, 0);
            break;
        default:
            break;
        }
    }
    return std::nullopt;
}
