#include "imaging/svg/SvgNumbers.h"

#include "base/NumberText.h"

#include <QList>
#include <QString>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// The numbers in a text, without their signs.
std::vector<double> numbers(QStringView text) {
    const std::string characters = text.toLatin1().toStdString();
    std::string_view rest = characters;
    std::vector<double> found;
    while (!rest.empty()) {
        const NumberText::Number number = NumberText::leading(rest);
        const double value = number.isInRange ? number.value : std::numeric_limits<double>::infinity();
        if (number.length > 0 && !std::isnan(value))
            found.push_back(std::abs(value));
        rest.remove_prefix(std::max<std::size_t>(number.length, 1));
    }
    return found;
}

} // namespace

double SvgNumbers::count(QStringView list) {
    double found = 0;
    bool isInNumber = false;
    for (const QChar c : list) {
        const bool isDigit = c >= u'0' && c <= u'9';
        // The sign of an exponent counts as one more number, which does no harm.
        const bool begins = c == u'-' || c == u'+' || c == u'.' || (isDigit && !isInNumber);
        found += begins ? 1 : 0;
        isInNumber = isDigit || begins;
    }
    return found;
}

double SvgNumbers::total(QStringView text) {
    const std::vector<double> all = numbers(text);
    return std::accumulate(all.begin(), all.end(), 0.0);
}

double SvgNumbers::scaleOf(QStringView transforms) {
    double scale = 1;
    for (const QStringView function : transforms.split(u')')) {
        const qsizetype open = function.indexOf(u'(');
        if (open < 0 || function.contains(QLatin1String("translate")) ||
            function.contains(QLatin1String("rotate")))
            continue;
        std::vector<double> values = numbers(function.mid(open));
        // The last two numbers of a matrix only move.
        values.resize(std::min<std::size_t>(values.size(), 4));
        double largest = 1;
        for (const double value : values)
            largest = std::max(largest, value);
        const bool isSkew = function.contains(QLatin1String("skew"));
        scale *= isSkew ? 1 + std::abs(std::tan(qDegreesToRadians(largest))) : largest;
    }
    return scale;
}
