#include "generation/IconSizeCatalogue.h"

#include "base/NumberText.h"
#include "files/PathBytes.h"
#include "files/RegularFile.h"
#include "platform/services/Bundle.h"
#include "platform/services/PropertyList.h"

#include <QFile>

#include <iterator>
#include <string>
#include <vector>

namespace {

const QString dimensionsKey = QStringLiteral("Dimensions");
const QString nameKey = QStringLiteral("Name");

Error notACatalogue(ErrorCode code, const QString& sentence) {
    return {code, QStringLiteral("not a size catalogue: %1").arg(sentence)};
}

Error malformed(const QString& sentence) {
    return notACatalogue(ErrorCode::Malformed, sentence);
}

Result<QByteArray> resourceBytes(const QString& path) {
    constexpr qint64 maximumBytes = 16 << 20;
    if (!path.startsWith(u':'))
        return RegularFile::read(PathBytes::encoded(path).toStdString(), maximumBytes);
    // The resource is compiled into the program.
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Error{ErrorCode::NotReadable, file.errorString()};
    return file.readAll();
}

/// Malformed if an entry is not a dictionary or a value in it is not text. Keys may be missing.
Result<Done> checkEntry(const QString& idiom, const QString& key, const QVariant& entry) {
    const QString where = QStringLiteral("the entry \"%1\" of %2").arg(key, idiom);
    if (entry.typeId() != QMetaType::QVariantMap)
        return malformed(where + QStringLiteral(" is not a dictionary"));
    const QVariantMap map = entry.toMap();
    for (const QString& name : {dimensionsKey, nameKey}) {
        if (map.contains(name) && map.value(name).typeId() != QMetaType::QString)
            return malformed(where + QStringLiteral(" has a \"%1\" that is not a string").arg(name));
    }
    return Done{};
}

/// The first two numbers in `text`, or fewer.
std::vector<double> numbersIn(const QString& text) {
    const std::string characters = text.toStdString();
    const char* at = characters.data();
    const char* const end = at + characters.size();
    std::vector<double> numbers;
    while (at != end && numbers.size() < 2) {
        // A number begins with a digit, or with a sign or a point before a digit. "nan" and "inf" are words,
        // not numbers.
        const char* digits = at;
        if (*digits == '+' || *digits == '-')
            ++digits;
        if (digits != end && *digits == '.')
            ++digits;
        if (digits == end || *digits < '0' || *digits > '9') {
            ++at;
            continue;
        }
        if (*at == '+')
            ++at;
        const NumberText::Number number = NumberText::leading({at, static_cast<std::size_t>(end - at)});
        numbers.push_back(number.value);
        at += number.length;
    }
    return numbers;
}

} // namespace

Result<IconSizeCatalogue> IconSizeCatalogue::load(const Bundle& bundle) {
    const QString path = bundle.pathForResource(QLatin1String(resourceName));
    if (path.isEmpty())
        return Error{ErrorCode::NotFound, QStringLiteral("the size catalogue is missing")};
    const Result<QByteArray> bytes = resourceBytes(path);
    if (!bytes)
        return bytes.error();
    return parsed(*bytes);
}

Result<IconSizeCatalogue> IconSizeCatalogue::parsed(const QByteArray& bytes) {
    const Result<QVariant> root = PropertyList::parse(bytes);
    if (!root && root.error().code == ErrorCode::OutOfMemory)
        return root.error();
    if (!root)
        return notACatalogue(ErrorCode::NotReadable, root.error().sentence);
    if (root->typeId() != QMetaType::QVariantList)
        return notACatalogue(ErrorCode::NotReadable,
                             QStringLiteral("the property list's root is not an array"));
    const QVariantList elements = root->toList();
    if (elements.size() < std::ssize(Platforms::all))
        return malformed(QStringLiteral("the array has %1 elements, not one for each of the five platforms")
                             .arg(elements.size()));
    IconSizeCatalogue catalogue;
    for (const Platform platform : Platforms::all) {
        const QString idiom = Platforms::idiom(platform);
        const auto index = static_cast<std::size_t>(platform);
        const QVariant& element = elements[static_cast<qsizetype>(index)];
        if (element.typeId() != QMetaType::QVariantMap)
            return malformed(QStringLiteral("element %1 (%2) is not a dictionary").arg(index).arg(idiom));
        const QVariantMap dictionary = element.toMap();
        for (auto entry = dictionary.begin(); entry != dictionary.end(); ++entry) {
            if (const Result<Done> checked = checkEntry(idiom, entry.key(), entry.value()); !checked)
                return checked.error();
        }
        catalogue.m_dictionaries[index] = dictionary;
    }
    return catalogue;
}

QSizeF IconSizeCatalogue::dimensions(const QVariantMap& entry) {
    return sizeFromString(entry.value(dimensionsKey).toString());
}

QString IconSizeCatalogue::sizeFault(const QVariantMap& entry) {
    if (!entry.contains(dimensionsKey))
        return QStringLiteral("its entry in the size catalogue has no \"%1\"").arg(dimensionsKey);
    if (numbersIn(entry.value(dimensionsKey).toString()).size() < 2)
        return QStringLiteral(
                   "\"%1\" in its entry of the size catalogue is not two numbers, such as {40, 40}")
            .arg(dimensionsKey);
    return {};
}

QString IconSizeCatalogue::name(const QVariantMap& entry) {
    return entry.contains(nameKey) ? entry.value(nameKey).toString() : QStringLiteral("(null)");
}

QSizeF sizeFromString(const QString& text) {
    const std::vector<double> numbers = numbersIn(text);
    return numbers.size() == 2 ? QSizeF(numbers[0], numbers[1]) : QSizeF(0, 0);
}
