#include "platform/widgets/Alert.h"
#include "shell/StoreErrorAlert.h"
#include "tests/shell/AppDelegateFixture.h"

#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QThread>
#include <QUndoStack>

#include <sys/mount.h>
#include <sys/resource.h>

#include <csignal>
#include <iostream>

namespace {

/// A bundle whose object model has one entity.
class ModelBundle final : public Bundle {
  public:
    ModelBundle() {
        QDir(m_folder.path()).mkdir(QStringLiteral("Tobrimax.momd"));
        QFile file(m_folder.filePath(QStringLiteral("Tobrimax.momd/Model.plist")));
        if (file.open(QIODevice::WriteOnly))
            file.write(
                "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>Thing</key><dict><key>name</key>"
                "<string>string</string></dict></dict></plist>");
    }

    QString pathForResource(const QString& name) const override {
        return name == QLatin1String("Tobrimax.momd") ? m_folder.filePath(name)
                                                      : Bundle::pathForResource(name);
    }

  private:
    QTemporaryDir m_folder;
};

class SavedDataTest : public AppDelegateFixture {
  protected:
    static QString folderPath() { return AppDelegate::applicationDocumentsDirectory(); }
    static QString storePath() { return folderPath() + QStringLiteral("/Tobrimax.storedata"); }

    /// Makes a change that is not saved.
    void change() {
        ASSERT_GT(modelled.managedObjectContext()->insertNewObjectForEntityForName(QStringLiteral("Thing")),
                  0);
    }

    /// Lets the process write no byte into any file, as long as this object lives.
    class FullDisk {
      public:
        FullDisk() {
            std::signal(SIGXFSZ, SIG_IGN);
            getrlimit(RLIMIT_FSIZE, &m_before);
            const rlimit none{0, m_before.rlim_max};
            setrlimit(RLIMIT_FSIZE, &none);
        }
        ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_before); }
        FullDisk(const FullDisk&) = delete;
        FullDisk& operator=(const FullDisk&) = delete;

      private:
        rlimit m_before{};
    };

    /// Presses the button `name` of the alert that is about to come, and keeps the alert's text.
    void answerNextAlert(const QString& name) {
        QTimer::singleShot(0, &application, [this, name] {
            auto* alert = visible<Alert>();
            ASSERT_NE(alert, nullptr);
            alertText = alert->text() + QLatin1Char('|') + alert->informativeText();
            QAbstractButton* pressed = nullptr;
            for (QAbstractButton* button : alert->buttons()) {
                if (button->text() == name)
                    pressed = button;
            }
            ASSERT_NE(pressed, nullptr);
            Events::click(pressed);
        });
    }

    ModelBundle modelBundle;
    AppDelegate modelled{{application,
                          {modelBundle, screen, workspace},
                          defaults,
                          [](const QString&) { return false; },
                          [this](const StoreError& error) {
                              presented.push_back(error);
                              return recovers;
                          }}};
    QString alertText;
};

using Reply = ApplicationDelegate::TerminateReply;

TEST_F(SavedDataTest, lies_in_the_users_data_folder) {
    EXPECT_TRUE(folderPath().endsWith(QStringLiteral("/Varnholt.Tobrimax")));
    EXPECT_TRUE(folderPath().startsWith(qEnvironmentVariable("XDG_DATA_HOME")));
    EXPECT_FALSE(QFileInfo::exists(folderPath())) << "asking makes nothing";
}

TEST_F(SavedDataTest, the_shipped_model_is_there_and_empty) {
    ASSERT_NE(delegate.managedObjectModel(), nullptr);
    EXPECT_TRUE(delegate.managedObjectModel()->entities().empty());
}

TEST_F(SavedDataTest, each_member_is_made_once) {
    EXPECT_EQ(delegate.managedObjectModel(), delegate.managedObjectModel());
    EXPECT_EQ(delegate.managedObjectContext(), delegate.managedObjectContext());
    EXPECT_EQ(delegate.persistentStoreCoordinator(), delegate.persistentStoreCoordinator());
    EXPECT_EQ(&delegate.managedObjectContext()->persistentStoreCoordinator(),
              delegate.persistentStoreCoordinator());
    EXPECT_EQ(delegate.windowWillReturnUndoManager(nullptr), delegate.managedObjectContext()->undoManager());
    QWidget window;
    EXPECT_EQ(delegate.windowWillReturnUndoManager(&window), delegate.windowWillReturnUndoManager(nullptr));
}

TEST_F(SavedDataTest, a_missing_folder_is_made_with_its_parents) {
    QDir(qEnvironmentVariable("XDG_DATA_HOME")).removeRecursively();
    EXPECT_NE(delegate.persistentStoreCoordinator(), nullptr);
    EXPECT_TRUE(QFileInfo(folderPath()).isDir());
    EXPECT_TRUE(presented.empty());
}

TEST_F(SavedDataTest, quitting_before_its_first_use_makes_nothing) {
    EXPECT_EQ(delegate.applicationShouldTerminate(&application), Reply::Now);
    EXPECT_EQ(run({[this] { mainWindow()->close(); }}), 0);
    EXPECT_FALSE(QFileInfo::exists(folderPath()));
}

TEST_F(SavedDataTest, saving_writes_only_changes) {
    modelled.saveAction(nullptr);
    EXPECT_FALSE(QFileInfo::exists(storePath()));
    change();
    modelled.saveAction(nullptr);
    EXPECT_TRUE(QFileInfo::exists(storePath()));
    EXPECT_FALSE(modelled.managedObjectContext()->hasChanges());
    EXPECT_TRUE(presented.empty());
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(SavedDataTest, a_refused_commit_is_logged_and_saved_all_the_same) {
    change();
    modelled.managedObjectContext()->registerEditor(&application, [] { return false; });
    modelled.saveAction(nullptr);
    EXPECT_EQ(log.lines(),
              QStringList(QStringLiteral("AppDelegate:saveAction: unable to commit editing before saving")));
    EXPECT_TRUE(QFileInfo::exists(storePath()));
}

TEST_F(SavedDataTest, a_failed_save_is_presented) {
    change();
    const FullDisk disk;
    modelled.saveAction(nullptr);
    ASSERT_EQ(presented.size(), 1U);
    EXPECT_EQ(presented[0].localizedDescription,
              QStringLiteral("The application's data could not be saved in \"%1\"").arg(storePath()));
    EXPECT_EQ(presented[0].localizedFailureReason, QStringLiteral("File too large"));
    EXPECT_TRUE(modelled.managedObjectContext()->hasChanges());
}

#ifdef Q_OS_LINUX
TEST_F(SavedDataTest, a_full_file_system_is_presented_and_leaves_the_earlier_file) {
    change();
    QDir().mkpath(folderPath());
    if (mount("none", folderPath().toLocal8Bit().constData(), "tmpfs", 0, "size=16k") != 0)
        GTEST_SKIP() << "only root may mount a file system of 16 kB";
    modelled.saveAction(nullptr);
    QFile filler(folderPath() + QStringLiteral("/filler"));
    const bool isOpen = filler.open(QIODevice::WriteOnly);
    while (isOpen && filler.write(QByteArray(1024, 'x')) > 0 && filler.flush()) {
    }
    QFile file(storePath());
    const QByteArray before = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    file.close();
    change();
    modelled.saveAction(nullptr);
    QFile again(storePath());
    const QByteArray after = again.open(QIODevice::ReadOnly) ? again.readAll() : QByteArray();
    const QStringList left = QDir(folderPath()).entryList(QDir::Files | QDir::Hidden);
    again.close();
    filler.close();
    umount2(folderPath().toLocal8Bit().constData(), MNT_DETACH);
    EXPECT_FALSE(before.isEmpty());
    EXPECT_EQ(after, before);
    EXPECT_EQ(left, QStringList({QStringLiteral("filler"), QStringLiteral("Tobrimax.storedata")}));
    ASSERT_EQ(presented.size(), 1U);
    EXPECT_EQ(presented[0].localizedDescription,
              QStringLiteral("The application's data could not be saved in \"%1\"").arg(storePath()));
    EXPECT_EQ(presented[0].localizedFailureReason, QStringLiteral("No space left on device"));
}
#endif

TEST_F(SavedDataTest, quitting_saves_changes) {
    change();
    EXPECT_EQ(modelled.applicationShouldTerminate(&application), Reply::Now);
    EXPECT_TRUE(QFileInfo::exists(storePath()));
}

TEST_F(SavedDataTest, quitting_without_changes_writes_nothing) {
    modelled.managedObjectContext();
    EXPECT_EQ(modelled.applicationShouldTerminate(&application), Reply::Now);
    EXPECT_FALSE(QFileInfo::exists(storePath()));
}

TEST_F(SavedDataTest, a_refused_commit_keeps_the_program_running) {
    change();
    modelled.managedObjectContext()->registerEditor(&application, [] { return false; });
    EXPECT_EQ(modelled.applicationShouldTerminate(&application), Reply::Cancel);
    EXPECT_EQ(log.lines(),
              QStringList(QStringLiteral(
                  "AppDelegate:applicationShouldTerminate: unable to commit editing to terminate")));
    EXPECT_FALSE(QFileInfo::exists(storePath()));
}

TEST_F(SavedDataTest, a_failed_save_at_the_end_that_was_recovered_from_keeps_it_running) {
    change();
    recovers = true;
    const FullDisk disk;
    EXPECT_EQ(modelled.applicationShouldTerminate(&application), Reply::Cancel);
    EXPECT_EQ(presented.size(), 1U);
}

TEST_F(SavedDataTest, a_failed_save_at_the_end_asks_and_cancel_keeps_it_running) {
    change();
    const FullDisk disk;
    answerNextAlert(QStringLiteral("Cancel"));
    EXPECT_EQ(modelled.applicationShouldTerminate(&application), Reply::Cancel);
    EXPECT_EQ(
        alertText,
        QStringLiteral(
            "Could not save changes while quitting. Quit anyway?|Quitting now will lose any changes you "
            "have made since the last successful save"));
    EXPECT_EQ(presented.size(), 1U);
}

TEST_F(SavedDataTest, a_failed_save_at_the_end_asks_and_quit_anyway_ends_it) {
    change();
    const FullDisk disk;
    answerNextAlert(QStringLiteral("Quit anyway"));
    EXPECT_EQ(modelled.applicationShouldTerminate(&application), Reply::Now);
    EXPECT_TRUE(modelled.managedObjectContext()->hasChanges());
}

TEST_F(SavedDataTest, the_running_program_goes_on_or_ends_as_the_answer_says) {
    application.setDelegate(&modelled);
    for (const bool cancels : {true, false}) {
        bool isShown = false;
        std::optional<FullDisk> disk;
        // The alert comes when the closing of the last window is handled.
        QTimer answer;
        QObject::connect(&answer, &QTimer::timeout, &application, [&] {
            if (visible<Alert>() == nullptr)
                return;
            answer.stop();
            answerNextAlert(cancels ? QStringLiteral("Cancel") : QStringLiteral("Quit anyway"));
        });
        // The alert has an event loop of its own, which goes on for a while when the alert is hidden.
        const auto isAnswered = [&] {
            return !answer.isActive() && visible<Alert>() == nullptr &&
                   QThread::currentThread()->loopLevel() == 1;
        };
        const int status = run({[&] { change(); },
                                [&] {
                                    disk.emplace();
                                    answer.start(1);
                                    modelled.mainWindowController()->window()->close();
                                },
                                [&] { isShown = modelled.mainWindowController()->window()->isVisible(); }},
                               isAnswered);
        disk.reset();
        EXPECT_EQ(status, cancels ? notEnded : 0);
        EXPECT_EQ(isShown, cancels);
    }
    application.setDelegate(nullptr);
}

TEST_F(SavedDataTest, quit_anyway_is_the_first_button_and_escape_cancels) {
    change();
    const FullDisk disk;
    QTimer::singleShot(0, &application, [this] {
        auto* alert = visible<Alert>();
        ASSERT_NE(alert, nullptr);
        EXPECT_EQ(alert->defaultButton()->text(), QStringLiteral("Quit anyway"));
        Events::key(alert, Qt::Key_Escape);
    });
    EXPECT_EQ(modelled.applicationShouldTerminate(&application), Reply::Cancel);
}

TEST_F(SavedDataTest, undo_is_for_all_windows) {
    change();
    ASSERT_TRUE(modelled.windowWillReturnUndoManager(nullptr)->canUndo());
    modelled.windowWillReturnUndoManager(nullptr)->undo();
    EXPECT_FALSE(modelled.managedObjectContext()->hasChanges());
}

TEST_F(SavedDataTest, an_error_is_presented_in_an_alert_that_recovers_nothing) {
    QString buttons;
    QTimer::singleShot(0, &application, [&] {
        auto* alert = visible<Alert>();
        ASSERT_NE(alert, nullptr);
        alertText = alert->text() + QLatin1Char('|') + alert->informativeText();
        buttons = alert->buttons().first()->text();
        Events::key(alert, Qt::Key_Return);
    });
    EXPECT_FALSE(presentStoreError({QStringLiteral("D"), 1, QStringLiteral("what"), QStringLiteral("why")}));
    EXPECT_EQ(alertText, QStringLiteral("what|why"));
    EXPECT_EQ(buttons, QStringLiteral("OK"));
}

/// Tests what a process writes to standard error before it aborts, because it can't open its store.
class StoreDeathTest : public testing::Test {
  protected:
    StoreDeathTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }

    static void askForTheStore() {
        FakeBundle bundle;
        FakeScreen screen;
        FakeWorkspace workspace;
        UserDefaults defaults(QStringLiteral("/dev/null"));
        AppDelegate delegate(
            {*Application::sharedApplication(),
             {bundle, screen, workspace},
             defaults,
             [](const QString&) { return false; },
             [](const StoreError& error) {
                 std::cerr << "presented " << error.domain.toStdString() << ' ' << error.code << ": "
                           << error.localizedDescription.toStdString() << " / "
                           << error.localizedFailureReason.toStdString()
                           << (error.underlyingError != nullptr
                                   ? " / cause " + error.underlyingError->localizedDescription.toStdString()
                                   : std::string(" / alone"))
                           << std::endl;
                 return false;
             }});
        delegate.managedObjectContext();
    }

    static void putFile(const QString& path, const QByteArray& bytes) {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
};

const std::string generalReason = "presented YOUR_ERROR_DOMAIN 9999: Failed to initialize the application's "
                                  "saved data / There was an error "
                                  "creating or loading the application's saved data. / cause ";

TEST_F(StoreDeathTest, a_file_in_the_folders_place_is_presented_logged_and_the_end) {
    const QString folder = AppDelegate::applicationDocumentsDirectory();
    putFile(folder, "a file");
    EXPECT_EXIT(
        askForTheStore(), testing::KilledBySignal(SIGABRT),
        "presented YOUR_ERROR_DOMAIN 9999: Failed to initialize the application's saved data / Expected a "
        "folder "
        "to store application data, found a file .*Varnholt.Tobrimax.*\\. / alone\n.*Unresolved error Error "
        "Domain=YOUR_ERROR_DOMAIN Code=9999 \"Failed to initialize the application's saved data\", "
        "\\{NSLocalizedDescription=");
    QFile file(folder);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "a file");
}

TEST_F(StoreDeathTest, a_folder_that_cannot_be_read_is_the_end) {
    putFile(qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/file"), "");
    qputenv("XDG_DATA_HOME", qgetenv("XDG_DATA_HOME") + "/file/data");
    EXPECT_EXIT(askForTheStore(), testing::KilledBySignal(SIGABRT), generalReason + "Not a directory");
}

TEST_F(StoreDeathTest, a_folder_that_cannot_be_made_is_the_end) {
    // A link that leads nowhere: nothing exists at its path, and nothing can be made there.
    const QString folder = AppDelegate::applicationDocumentsDirectory();
    QDir().mkpath(QFileInfo(folder).path());
    ASSERT_TRUE(QFile::link(QStringLiteral("/nowhere/at/all"), folder));
    EXPECT_EXIT(askForTheStore(), testing::KilledBySignal(SIGABRT),
                generalReason + ".*Varnholt.Tobrimax: Not a directory");
}

TEST_F(StoreDeathTest, a_store_that_breaks_off_or_is_newer_is_the_end_and_untouched) {
    const QString path = AppDelegate::applicationDocumentsDirectory() + QStringLiteral("/Tobrimax.storedata");
    for (const QByteArray& bytes :
         {QByteArray("<store format=\"1\">"), QByteArray("<store format=\"99\"></store>"), QByteArray()}) {
        putFile(path, bytes);
        EXPECT_EXIT(askForTheStore(), testing::KilledBySignal(SIGABRT), generalReason + ".+");
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), bytes);
    }
}

} // namespace
