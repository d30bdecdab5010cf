#pragma once

#include <QUrl>

/// The desktop around the program.
class Workspace {
  public:
    virtual ~Workspace() = default;

    /// Opens `url`: a folder in the file browser, a page in the web browser. Tells whether the desktop has
    /// taken it. False without a graphical application.
    virtual bool openURL(const QUrl& url);
};
