// Saves a text in a store, as the application saves its data: store_saver FILE TEXT. If that fails, it tries
// once more. Exit status: 0 saved, 1 saved at the second try, 2 not saved, 3 the store can't be opened.
#include "files/FilePath.h"
#include "files/Folder.h"
#include "platform/store/ManagedObjectContext.h"

#include <csignal>
#include <cstdio>

namespace {

const ManagedObjectModel& model() {
    static const ManagedObjectModel only(
        {{QStringLiteral("Note"), {{QStringLiteral("text"), AttributeType::String}}}});
    return only;
}

bool isSaved(ManagedObjectContext& context) {
    StoreError error;
    if (context.save(&error))
        return true;
    std::fprintf(stderr, "%s\n", qPrintable(error.description()));
    return false;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3)
        return 3;
    std::signal(SIGXFSZ, SIG_IGN);
    const QString file = QString::fromLocal8Bit(argv[1]);
    StoreError error;
    PersistentStoreCoordinator coordinator(model());
    if (!Folder::create(deletingLastPathComponent(file)) ||
        !coordinator.addPersistentStoreWithType(PersistentStoreCoordinator::xmlStoreType, file, &error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error.description()));
        return 3;
    }
    ManagedObjectContext context(coordinator);
    const qint64 note = context.objects().empty()
                            ? context.insertNewObjectForEntityForName(QStringLiteral("Note"))
                            : context.objects().begin()->first;
    if (!context.setValue(note, QStringLiteral("text"), QString::fromLocal8Bit(argv[2])))
        return 3;
    if (isSaved(context))
        return 0;
    return isSaved(context) ? 1 : 2;
}
