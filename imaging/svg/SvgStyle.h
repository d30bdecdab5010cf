#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <cstddef>
#include <vector>

/// As much of CSS as tells which of a document's elements refers to which. Source: CSS Syntax Module Level 3.
namespace SvgStyle {

inline constexpr std::size_t maximumDeclarations = 100000;

/// One property with its value.
struct Declaration {
    QString property; ///< in lower case
    QString value;    ///< without comments, escapes and what its `url(…)` say
    QStringList urls; ///< what its `url(…)` say
};

/// One selector with its declarations.
struct Rule {
    /// What an element must have for the selector to match: "#id", ".class", the element's name, or empty.
    /// The selector may ask for more.
    QString key;
    std::vector<Declaration> declarations;
};

struct Sheet {
    std::vector<Rule> rules;
    QStringList imports; ///< what its `@import` say
    /// A rule's own counted for each of its selectors; a sheet that has more than `maximumDeclarations` is
    /// read no further.
    std::size_t declarationCount = 0;
};

/// The declarations of a `style` attribute.
std::vector<Declaration> declarations(QStringView text);

/// The value of one property, as an attribute has it.
Declaration attribute(const QString& property, QStringView value);

/// A style sheet; of rules for some media only, all of them.
Sheet sheet(QStringView text);

} // namespace SvgStyle
