#pragma once

#include <QByteArray>
#include <QMimeData>
#include <QString>
#include <QStringList>

#include <memory>

/// Data of several types that one program leaves for another: a pasteboard of the process's own, or the
/// system's clipboard. Main thread only.
class Pasteboard {
  public:
    /// One that nobody else sees; empty.
    Pasteboard();
    ~Pasteboard();

    /// The system's clipboard. What is put there stays as long as this program runs.
    static Pasteboard generalPasteboard();

    QStringList types() const;

    /// Empty where there is none of that type.
    QByteArray dataForType(const QString& type) const;

    /// The first of `types` that there is data of; empty without one.
    QString availableTypeFromArray(const QStringList& types) const;

    /// Takes away what there is.
    void clearContents();

    /// Adds one type's data, to what was put here since it was cleared.
    void setData(const QByteArray& data, const QString& forType);

  private:
    explicit Pasteboard(bool isClipboard);

    bool m_isClipboard = false;
    std::unique_ptr<QMimeData> m_own;
};
