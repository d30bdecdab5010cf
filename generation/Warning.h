#pragma once

#include <QString>

/// A sentence for people about icons that may not be what they want.
struct Warning {
    QString sentence;
    QString option = {}; ///< in brackets, the option of the command line that helps; may be empty

    /// Both, as the command line prints them.
    QString text() const { return option.isEmpty() ? sentence : sentence + u' ' + option; }
};
