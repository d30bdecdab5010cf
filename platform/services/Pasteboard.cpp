#include "platform/services/Pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

Pasteboard::Pasteboard() : Pasteboard(false) {}

Pasteboard::Pasteboard(bool isClipboard) : m_isClipboard(isClipboard), m_own(std::make_unique<QMimeData>()) {}

Pasteboard::~Pasteboard() = default;

Pasteboard Pasteboard::generalPasteboard() {
    return Pasteboard(true);
}

namespace {

/// The clipboard's data; null where the desktop has no clipboard.
const QMimeData* clipboardData() {
    return QGuiApplication::clipboard()->mimeData();
}

} // namespace

QStringList Pasteboard::types() const {
    const QMimeData* data = m_isClipboard ? clipboardData() : m_own.get();
    return data != nullptr ? data->formats() : QStringList();
}

QByteArray Pasteboard::dataForType(const QString& type) const {
    const QMimeData* data = m_isClipboard ? clipboardData() : m_own.get();
    return data != nullptr ? data->data(type) : QByteArray();
}

QString Pasteboard::availableTypeFromArray(const QStringList& types) const {
    const QStringList present = this->types();
    for (const QString& type : types) {
        if (present.contains(type))
            return type;
    }
    return {};
}

void Pasteboard::clearContents() {
    m_own = std::make_unique<QMimeData>();
    if (m_isClipboard)
        QGuiApplication::clipboard()->clear();
}

void Pasteboard::setData(const QByteArray& data, const QString& forType) {
    m_own->setData(forType, data);
    if (!m_isClipboard)
        return;
    // The clipboard takes ownership of its data.
    auto* copy = new QMimeData;
    for (const QString& type : m_own->formats())
        copy->setData(type, m_own->data(type));
    QGuiApplication::clipboard()->setMimeData(copy);
}
