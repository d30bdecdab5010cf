#include "platform/LibraryMessages.h"

#include <QLoggingCategory>

#include <glib.h>

namespace {

Q_LOGGING_CATEGORY(glibLog, "glib")

void toQt(const gchar* domain, GLogLevelFlags /*level*/, const gchar* message, gpointer /*data*/) {
    qCDebug(glibLog) << domain << message;
}

} // namespace

void routeLibraryMessages() {
    g_log_set_default_handler(toQt, nullptr);
}
