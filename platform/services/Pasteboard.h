#pragma once

#include <QByteArray>
#include <QMimeData>
#include <QString>
#include <QStringList>

#include <memory>

/// Data of several types for other programs, on the system's clipboard, or on a pasteboard that only this
/// process sees. Main thread only.
class Pasteboard {
  public:
    /// An empty pasteboard that nobody else sees.
    Pasteboard();
    ~Pasteboard();

    /// The system's clipboard. Data that is put there stays as long as this program runs.
    static Pasteboard generalPasteboard();

    QStringList types() const;

    /// Empty where there is no data of that type.
    QByteArray dataForType(const QString& type) const;

    /// The first of `types` for which there is data. Empty where there is no data of these types.
    QString availableTypeFromArray(const QStringList& types) const;

    /// Removes all data.
    void clearContents();

    /// Sets the data of one type. Data of other types stays if it was set through this object since
    /// `clearContents`.
    void setData(const QByteArray& data, const QString& forType);

  private:
    explicit Pasteboard(bool isClipboard);

    bool m_isClipboard = false;
    std::unique_ptr<QMimeData> m_own;
};
