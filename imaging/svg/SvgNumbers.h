#pragma once

#include <QStringView>

/// The numbers in attributes of SVG documents, as far as they tell how much work a drawing is.
namespace SvgNumbers {

/// How many numbers a list holds. A sign within an exponent counts as one too many.
double count(QStringView list);

/// The sum of all numbers in a text, without their signs. Infinite where one is too large.
double total(QStringView text);

/// How much larger a list of transforms (SVG 1.1, 7.6) may make what it applies to; at least 1.
double scaleOf(QStringView transforms);

} // namespace SvgNumbers
