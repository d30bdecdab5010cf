#include "base/Log.h"
#include "files/Folder.h"
#include "platform/widgets/Alert.h"
#include "shell/AppDelegate.h"

#include <QFile>
#include <QStandardPaths>

#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace {

/// Whether the item at `path` is a folder. An error where the item does not exist or its status can't be
/// read.
std::variant<bool, StoreError> isDirectory(const QString& path) {
    struct stat status = {};
    if (stat(QFile::encodeName(path).constData(), &status) == 0)
        return S_ISDIR(status.st_mode);
    const int cause = errno;
    return storeError(cause == ENOENT ? StoreErrorCode::NoSuchFile : StoreErrorCode::NotReadable,
                      QString::fromStdString(std::generic_category().message(cause)));
}

/// A text of the quit alert, in the current language.
QString localized(const char* key) {
    return Bundle::localizedStringForKey(QString::fromLatin1(key), {}, {});
}

} // namespace

QString AppDelegate::applicationDocumentsDirectory() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Varnholt.Tobrimax");
}

const ManagedObjectModel* AppDelegate::managedObjectModel() {
    if (_managedObjectModel == nullptr)
        _managedObjectModel = ManagedObjectModel::initWithContentsOfURL(
            _surroundings.mainWindow.bundle.pathForResource(QStringLiteral("Tobrimax.momd")));
    return _managedObjectModel.get();
}

PersistentStoreCoordinator* AppDelegate::persistentStoreCoordinator() {
    if (_persistentStoreCoordinator != nullptr)
        return _persistentStoreCoordinator.get();
    const QString folder = applicationDocumentsDirectory();
    std::optional<StoreError> error;
    const std::variant<bool, StoreError> state = isDirectory(folder);
    if (const bool* isFolder = std::get_if<bool>(&state)) {
        if (!*isFolder)
            failWithoutStore(
                QStringLiteral("Expected a folder to store application data, found a file (%1).").arg(folder),
                std::nullopt);
    } else {
        error = std::get<StoreError>(state);
        if (error->code == static_cast<qint64>(StoreErrorCode::NoSuchFile)) {
            error.reset();
            if (const Result<Done> made = Folder::create(folder); !made)
                error = storeError(StoreErrorCode::NotWritable, made.error().sentence);
        }
    }
    if (!error) {
        static const ManagedObjectModel withoutEntities;
        const ManagedObjectModel* model = managedObjectModel();
        _persistentStoreCoordinator =
            std::make_unique<PersistentStoreCoordinator>(model != nullptr ? *model : withoutEntities);
        StoreError addingError;
        if (_persistentStoreCoordinator->addPersistentStoreWithType(
                PersistentStoreCoordinator::xmlStoreType, folder + QStringLiteral("/Tobrimax.storedata"),
                &addingError))
            return _persistentStoreCoordinator.get();
        _persistentStoreCoordinator.reset();
        error = addingError;
    }
    failWithoutStore(QStringLiteral("There was an error creating or loading the application's saved data."),
                     error);
}

/// Shows and logs the error, then aborts. Once the program has asked for its store, it can't go on without
/// it.
void AppDelegate::failWithoutStore(const QString& reason, const std::optional<StoreError>& underlying) {
    StoreError error{QStringLiteral("YOUR_ERROR_DOMAIN"), 9999,
                     QStringLiteral("Failed to initialize the application's saved data"), reason};
    if (underlying)
        error.underlyingError = std::make_shared<const StoreError>(*underlying);
    _surroundings.presentError(error);
    logLine(QStringLiteral("Unresolved error %1, %2").arg(error.description(), error.userInfoDescription()));
    std::abort();
}

ManagedObjectContext* AppDelegate::managedObjectContext() {
    if (_managedObjectContext == nullptr) {
        PersistentStoreCoordinator* coordinator = persistentStoreCoordinator();
        if (coordinator == nullptr)
            return nullptr;
        _managedObjectContext = std::make_unique<ManagedObjectContext>(*coordinator);
    }
    return _managedObjectContext.get();
}

void AppDelegate::saveAction(QObject* /*sender*/) {
    ManagedObjectContext* context = managedObjectContext();
    if (!context->commitEditing())
        logLine(QStringLiteral("AppDelegate:saveAction: unable to commit editing before saving"));
    StoreError error;
    if (context->hasChanges() && !context->save(&error))
        _surroundings.presentError(error);
}

QUndoStack* AppDelegate::windowWillReturnUndoManager(QWidget* /*window*/) {
    return managedObjectContext()->undoManager();
}

ApplicationDelegate::TerminateReply AppDelegate::applicationShouldTerminate(Application* /*sender*/) {
    // Reads the member, because managedObjectContext() would make a store.
    if (_managedObjectContext == nullptr)
        return TerminateReply::Now;
    if (!_managedObjectContext->commitEditing()) {
        logLine(
            QStringLiteral("AppDelegate:applicationShouldTerminate: unable to commit editing to terminate"));
        return TerminateReply::Cancel;
    }
    StoreError error;
    if (!_managedObjectContext->hasChanges() || _managedObjectContext->save(&error))
        return TerminateReply::Now;
    if (_surroundings.presentError(error))
        return TerminateReply::Cancel;
    Alert alert;
    alert.setMessageText(localized("Could not save changes while quitting. Quit anyway?"));
    alert.setInformativeText(
        localized("Quitting now will lose any changes you have made since the last successful save"));
    alert.addButtonWithTitle(localized("Quit anyway"));
    alert.addButtonWithTitle(localized("Cancel"));
    constexpr int secondButtonReturn = Alert::firstButtonReturn + 1;
    return alert.runModal() == secondButtonReturn ? TerminateReply::Cancel : TerminateReply::Now;
}
