#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <cstddef>
#include <vector>

/// The part of CSS that tells which of a document's elements refers to which. Source: CSS Syntax Module Level
/// 3.
namespace SvgStyle {

inline constexpr std::size_t maximumDeclarations = 100000;

/// One property with its value.
struct Declaration {
    QString property; ///< in lower case
    QString value;    ///< without comments and each `url(…)`; escapes replaced by their characters
    QStringList urls; ///< the contents of each `url(…)`
};

/// One selector with its declarations.
struct Rule {
    /// What the selector asks of an element: "#id", ".class", the element's name, or nothing (empty). The
    /// selector may ask for more than that.
    QString key;
    std::vector<Declaration> declarations;
};

struct Sheet {
    std::vector<Rule> rules;
    QStringList imports; ///< the contents of each `@import`
    /// Declarations count once for each selector of their rule; a rule has at least one. A sheet with more
    /// than `maximumDeclarations` is read no further.
    std::size_t declarationCount = 0;
};

/// The declarations of a `style` attribute.
std::vector<Declaration> declarations(QStringView text);

/// The declaration that an attribute makes for the property of its name.
Declaration attribute(const QString& property, QStringView value);

/// Reads a style sheet. All rules for particular media are taken.
Sheet sheet(QStringView text);

} // namespace SvgStyle
