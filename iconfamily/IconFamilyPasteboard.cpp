// Reads icon families from pasteboards and writes them there.
#include "iconfamily/IconFamily.h"

QStringList IconFamily::readableTypesForPasteboard(const Pasteboard& /*pasteboard*/) {
    return {QStringLiteral("com.apple.icns"), QStringLiteral("'icns' (CorePasteboardFlavorType 0x69636E73)")};
}

int IconFamily::readingOptionsForType(const QString& /*type*/, const Pasteboard& /*pasteboard*/) {
    return 0;
}

bool IconFamily::canInitWithPasteboard(const Pasteboard& pasteboard) {
    return !pasteboard.availableTypeFromArray(readableTypesForPasteboard(pasteboard)).isEmpty();
}

std::unique_ptr<IconFamily> IconFamily::initWithPasteboardPropertyList(const QByteArray& propertyList,
                                                                       const QString& /*ofType*/) {
    return initWithData(propertyList);
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): callers ask the family that they write
QStringList IconFamily::writableTypesForPasteboard(const Pasteboard& pasteboard) const {
    return readableTypesForPasteboard(pasteboard);
}

QByteArray IconFamily::pasteboardPropertyListForType(const QString& /*type*/) const {
    return data();
}

std::unique_ptr<IconFamily> IconFamily::iconFamilyFromPasteboard(const Pasteboard& pasteboard) {
    const QString type = pasteboard.availableTypeFromArray(readableTypesForPasteboard(pasteboard));
    return type.isEmpty() ? nullptr : initWithPasteboardPropertyList(pasteboard.dataForType(type), type);
}

void IconFamily::writeToPasteboard(Pasteboard& pasteboard) const {
    pasteboard.clearContents();
    for (const QString& type : writableTypesForPasteboard(pasteboard))
        pasteboard.setData(pasteboardPropertyListForType(type), type);
}
