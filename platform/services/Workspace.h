#pragma once

#include <QUrl>

/// The desktop around the program.
class Workspace {
  public:
    virtual ~Workspace() = default;

    /// Opens `url` (a folder in the file browser, a page in the browser) and reports whether the desktop took
    /// it. Without a graphical application there is no desktop: false.
    virtual bool openURL(const QUrl& url);
};
