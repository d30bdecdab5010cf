#pragma once

/// Sends what GLib and the libraries above it print to Qt's logging category "glib" instead of to standard
/// error, from the first call on.
void routeLibraryMessages();
