#pragma once

#include <QLoggingCategory>
#include <QString>

/// The category of all diagnostic lines. Programs and tests read or silence them through it.
Q_DECLARE_LOGGING_CATEGORY(tobrimaxLog)

/// Writes one line to the diagnostic log: exactly this text.
void logLine(const QString& text);
