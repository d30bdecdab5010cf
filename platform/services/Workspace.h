#pragma once

#include <QUrl>

#include <functional>

class QObject;

/// The desktop around the program.
class Workspace {
  public:
    virtual ~Workspace() = default;

    /// Opens `url`: a folder in the file browser, a page in the web browser. Tells whether the desktop has
    /// taken it, and does not wait for what comes of it. False without a graphical application.
    virtual bool openURL(const QUrl& url);

    /// Opens `url` and calls `completionHandler` once, on the main thread, with the outcome. Needs the event
    /// loop. Where the desktop has the program `xdg-open`, its exit status decides: 0 is success. Two seconds
    /// without an exit status are success too, and so is an end of the application before; `xdg-open` then
    /// goes on. Elsewhere the outcome is the answer of `openURL`, and the handler is called at once. Once
    /// `receiver` is destroyed, the handler is not called.
    virtual void openURLWithCompletionHandler(const QUrl& url, QObject* receiver,
                                              std::function<void(bool isOpened)> completionHandler);
};
