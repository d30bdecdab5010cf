// Opens any bytes as a file of saved data. Data that opens is saved and opened again, and is the same.

#include "platform/store/ManagedObjectContext.h"
#include "tests/fuzz/Require.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdint>

namespace {

const ManagedObjectModel& model() {
    static const ManagedObjectModel things({{QStringLiteral("Thing"),
                                             {{QStringLiteral("name"), AttributeType::String},
                                              {QStringLiteral("count"), AttributeType::Integer},
                                              {QStringLiteral("size"), AttributeType::Double},
                                              {QStringLiteral("isNew"), AttributeType::Boolean},
                                              {QStringLiteral("made"), AttributeType::Date},
                                              {QStringLiteral("bytes"), AttributeType::Data}}}});
    return things;
}

bool open(PersistentStoreCoordinator& coordinator, const QString& path) {
    return coordinator.addPersistentStoreWithType(PersistentStoreCoordinator::xmlStoreType, path);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The folder is in the build folder, since the fuzzer ends without calling destructors. The fuzzer runs
    // in the project's root.
    static const QTemporaryDir folder(QStringLiteral("build/fuzz/store-XXXXXX"));
    require(folder.isValid());
    const QString path = folder.filePath(QStringLiteral("Tobrimax.storedata"));
    QFile file(path);
    require(file.open(QIODevice::WriteOnly));
    file.write(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    file.close();
    PersistentStoreCoordinator coordinator(model());
    if (!open(coordinator, path))
        return 0;
    ManagedObjectContext context(coordinator);
    const qint64 added = context.insertNewObjectForEntityForName(QStringLiteral("Thing"));
    require(context.save());
    PersistentStoreCoordinator again(model());
    require(open(again, path));
    require(again.objects() == context.objects());
    require(added == 0 || again.objects().contains(added));
    return 0;
}
