#pragma once

#include <QStringView>

/// The numbers in attributes of SVG documents that tell how much work a drawing is.
namespace SvgNumbers {

/// How many numbers a list holds. A sign within an exponent counts as one more.
double count(QStringView list);

/// The sum of all numbers in a text, without their signs. Infinite where one of them is too large for a
/// double.
double total(QStringView text);

/// How many times larger a list of transforms (SVG 1.1, 7.6) may make its element; at least 1.
double scaleOf(QStringView transforms);

} // namespace SvgNumbers
