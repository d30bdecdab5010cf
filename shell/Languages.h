#pragma once

#include <QStringList>

#include <memory>
#include <vector>

class QTranslator;

/// Translates the texts of the windows into the user's language, as long as it exists. Those of Qt itself are
/// translated too, where Qt's translations are installed. Without a translation they are English.
class Languages {
  public:
    /// Takes the first language of `wanted` that there is: English, or one of resources/translations. They
    /// have the form of QLocale::uiLanguages.
    explicit Languages(const QStringList& wanted);
    ~Languages();
    Languages(const Languages&) = delete;
    Languages& operator=(const Languages&) = delete;

    /// The code of the language, such as "de".
    const QString& code() const { return m_code; }

  private:
    void install(const QString& name, const QString& folder);

    QString m_code;
    std::vector<std::unique_ptr<QTranslator>> m_translators;
};
