#pragma once

#include <QString>
#include <QStringList>

#include <concepts>
#include <vector>

/// Prints one JSON document on standard output. Members stand in the order of the calls, each on a line of
/// its own, two spaces further in for each level. Bytes of names that are not UTF-8 become U+FFFD, and
/// characters that a terminal may obey are escaped.
class JsonWriter {
  public:
    /// A member's name; its value follows.
    JsonWriter& key(const char* name);

    void beginObject() { begin(u'{'); }
    void endObject() { end(u'}'); }
    void beginArray() { begin(u'['); }
    void endArray() { end(u']'); }
    void value(const QString& text);
    void value(double number);
    void value(std::integral auto number) { addValue(QString::number(number)); }
    void value(const QStringList& texts);

    /// Prints the rest, and ends the line. False if something could not be printed.
    bool finish();

  private:
    void addValue(const QString& text);
    void begin(QChar bracket);
    void end(QChar bracket);
    void startLine();
    void print();

    QString m_text;               ///< what is not printed yet
    std::vector<bool> m_isFilled; ///< of each level that is open, whether it has a value
    bool m_hasKey = false;        ///< a key is written, and its value is not
    bool m_isPrinted = true;
};
