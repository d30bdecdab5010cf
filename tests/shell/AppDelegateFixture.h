#pragma once

#include "shell/AppDelegate.h"
#include "tests/generation/FakeSurroundings.h"
#include "tests/support/Events.h"
#include "tests/support/RecordingLog.h"

#include <QSet>
#include <QTimer>

#include <gtest/gtest.h>

/// A delegate with services that the test controls.
class AppDelegateFixture : public testing::Test {
  protected:
    AppDelegateFixture() { application.setDelegate(&delegate); }
    ~AppDelegateFixture() override { application.setDelegate(nullptr); }

    static constexpr int notEnded = 99;

    /// Runs the application. Once it is launched, does `steps` one after another, and then ends the
    /// application. Each of these waits until `isReady` is true. Returns the exit status, or `notEnded` where
    /// no step has ended the application.
    int run(
        std::vector<std::function<void()>> steps,
        const std::function<bool()>& isReady = [] { return true; }) {
        QTimer timer;
        std::size_t next = 0;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
            if (!isReady())
                return;
            if (next < steps.size())
                steps[next++]();
            else
                QCoreApplication::exit(notEnded);
        });
        timer.start(30);
        return application.run();
    }

    QWidget* mainWindow() { return delegate.mainWindowController()->window(); }

    /// The visible window of the class `Window`, or null.
    template <class Window>
    static Window* visible() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* found = qobject_cast<Window*>(window); found != nullptr && found->isVisible())
                return found;
        }
        return nullptr;
    }

    /// Records addresses. `succeeds` decides whether they count as opened. With `isSlow`, the outcome is told
    /// when the test calls `outcome`.
    class StoreWorkspace final : public Workspace {
      public:
        QList<QUrl> asked;
        bool succeeds = true;
        bool isSlow = false;
        std::function<void()> outcome;
        bool openURL(const QUrl& url) override {
            asked << url;
            return succeeds;
        }
        void openURLWithCompletionHandler(const QUrl& url, QObject* receiver,
                                          std::function<void(bool)> completionHandler) override {
            asked << url;
            outcome = [this, completionHandler, receiver = QPointer<QObject>(receiver)] {
                if (receiver != nullptr)
                    completionHandler(succeeds);
            };
            if (!isSlow)
                outcome();
        }
    };

    Application& application = *Application::sharedApplication();
    QTemporaryDir folder;
    FakeBundle bundle;
    FakeScreen screen;
    StoreWorkspace workspace;
    UserDefaults defaults{folder.filePath(QStringLiteral("settings.ini"))};
    RecordingLog log;
    QSet<QString> existingFiles;
    std::vector<StoreError> presented;
    bool recovers = false;
    AppDelegate delegate{{application,
                          {bundle, screen, workspace},
                          defaults,
                          [this](const QString& path) { return existingFiles.contains(path); },
                          [this](const StoreError& error) {
                              presented.push_back(error);
                              return recovers;
                          }}};
};
