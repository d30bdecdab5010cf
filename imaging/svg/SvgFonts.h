#pragma once

#include <QByteArrayView>
#include <QStringList>

#include <optional>
#include <vector>

/// The fonts that the texts of an SVG document ask for, each with those that may stand for it.
class SvgFonts {
  public:
    /// A list of font families such as "Corporate, 'Brand Sans', serif", up to the first name that stands for
    /// any font of its kind. Each is kept once.
    void add(QByteArrayView families);
    /// The names of such a list.
    void add(const QStringList& names);

    /// At most as many lists as a worker is asked for, none of them empty.
    const std::vector<QStringList>& lists() const { return m_lists; }

    /// The font families that CSS asks for: of an attribute `style`, or of a whole style sheet.
    static std::vector<QByteArray> ofStyle(QByteArrayView style);

    /// The lists as a worker reads them.
    static QByteArray message(const std::vector<QStringList>& lists);

  private:
    std::vector<QStringList> m_lists;
};
