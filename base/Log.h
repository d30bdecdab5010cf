#pragma once

#include <QLoggingCategory>
#include <QString>

/// The category that every diagnostic line goes to; a program or a test reads or hides it there.
Q_DECLARE_LOGGING_CATEGORY(tobrimaxLog)

/// The diagnostic log: one line, exactly this text.
void logLine(const QString& text);
