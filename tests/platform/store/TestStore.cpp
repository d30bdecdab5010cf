#include "platform/store/AttributeText.h"
#include "platform/store/ManagedObjectContext.h"
#include "tests/support/Refusals.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTimeZone>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <limits>
#include <memory>

using Refusals::eachBeginning;

namespace {

QString text(const char* words) {
    return QString::fromUtf8(words);
}

const ManagedObjectModel model({{QStringLiteral("Thing"),
                                 {{QStringLiteral("name"), AttributeType::String},
                                  {QStringLiteral("count"), AttributeType::Integer},
                                  {QStringLiteral("size"), AttributeType::Double},
                                  {QStringLiteral("isNew"), AttributeType::Boolean},
                                  {QStringLiteral("made"), AttributeType::Date},
                                  {QStringLiteral("bytes"), AttributeType::Data}}},
                                {QStringLiteral("Other"), {}}});

class StoreTest : public testing::Test {
  protected:
    bool open(PersistentStoreCoordinator& coordinator) {
        return coordinator.addPersistentStoreWithType(PersistentStoreCoordinator::xmlStoreType, path, &error);
    }

    void write(const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QByteArray read() {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// Opens a store with the content `bytes`. Expects the error `code`, and a file that is left as it is.
    void expectRefused(const QByteArray& bytes, StoreErrorCode code) {
        write(bytes);
        error = {};
        PersistentStoreCoordinator coordinator(model);
        EXPECT_FALSE(open(coordinator)) << bytes.toStdString();
        EXPECT_EQ(error.code, static_cast<qint64>(code)) << bytes.toStdString();
        EXPECT_FALSE(error.localizedDescription.isEmpty());
        EXPECT_EQ(read(), bytes);
        EXPECT_TRUE(coordinator.objects().empty());
    }

    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("Tobrimax.storedata"));
    StoreError error;
};

TEST_F(StoreTest, a_missing_file_is_an_empty_store_and_stays_missing) {
    PersistentStoreCoordinator coordinator(model);
    EXPECT_TRUE(open(coordinator));
    EXPECT_TRUE(coordinator.objects().empty());
    EXPECT_FALSE(QFile::exists(path));
}

TEST_F(StoreTest, objects_come_back_as_they_were) {
    const QVariantMap values{
        {QStringLiteral("name"), text("<&\"' Grüße 🎈 \r\n\t\x01 \\ ]]>")},
        {QStringLiteral("count"), std::numeric_limits<qint64>::min()},
        {QStringLiteral("size"), 0.1 + 0.2},
        {QStringLiteral("isNew"), true},
        {QStringLiteral("made"), QDateTime(QDate(2026, 2, 28), QTime(23, 59, 59, 999), QTimeZone::utc())},
        {QStringLiteral("bytes"), QByteArray("\0\xff\x80 bytes", 9)}};
    StoredObjects expected;
    {
        PersistentStoreCoordinator coordinator(model);
        ASSERT_TRUE(open(coordinator));
        ManagedObjectContext context(coordinator);
        const qint64 thing = context.insertNewObjectForEntityForName(QStringLiteral("Thing"));
        for (auto value = values.begin(); value != values.end(); ++value)
            EXPECT_TRUE(context.setValue(thing, value.key(), value.value())) << value.key().toStdString();
        context.insertNewObjectForEntityForName(QStringLiteral("Other"));
        expected = context.objects();
        EXPECT_TRUE(context.hasChanges());
        EXPECT_TRUE(context.save(&error));
        EXPECT_FALSE(context.hasChanges());
    }
    PersistentStoreCoordinator coordinator(model);
    ASSERT_TRUE(open(coordinator)) << error.localizedDescription.toStdString();
    EXPECT_EQ(coordinator.objects(), expected);
    ASSERT_EQ(expected.size(), 2U);
    const auto& read = coordinator.objects().begin()->second.values;
    EXPECT_EQ(read, values);
    EXPECT_EQ(read.value(QStringLiteral("made")).toDateTime().timeSpec(), Qt::UTC);
    ManagedObjectContext context(coordinator);
    EXPECT_FALSE(context.hasChanges());
    EXPECT_EQ(context.insertNewObjectForEntityForName(QStringLiteral("Other")), 3);
}

TEST_F(StoreTest, halves_of_surrogate_pairs_survive) {
    const QString odd = QString(QChar(0xD800)) + QChar(0xFFFE) + QChar(0);
    PersistentStoreCoordinator coordinator(model);
    ASSERT_TRUE(open(coordinator));
    ManagedObjectContext context(coordinator);
    const qint64 thing = context.insertNewObjectForEntityForName(QStringLiteral("Thing"));
    ASSERT_TRUE(context.setValue(thing, QStringLiteral("name"), odd));
    ASSERT_TRUE(context.save());
    PersistentStoreCoordinator again(model);
    ASSERT_TRUE(open(again)) << error.localizedDescription.toStdString();
    EXPECT_EQ(again.objects().at(thing).values.value(QStringLiteral("name")), odd);
}

TEST_F(StoreTest, a_value_must_suit_its_attribute) {
    PersistentStoreCoordinator coordinator(model);
    ASSERT_TRUE(open(coordinator));
    ManagedObjectContext context(coordinator);
    EXPECT_EQ(context.insertNewObjectForEntityForName(QStringLiteral("Unknown")), 0);
    const qint64 thing = context.insertNewObjectForEntityForName(QStringLiteral("Thing"));
    const auto set = [&](const char* key, const QVariant& value) {
        return context.setValue(thing, QString::fromLatin1(key), value);
    };
    EXPECT_FALSE(set("unknown", 1));
    EXPECT_FALSE(set("count", QStringLiteral("words")));
    EXPECT_FALSE(set("count", 1.5));
    EXPECT_FALSE(set("size", std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(set("made", QDateTime()));
    EXPECT_FALSE(context.setValue(thing + 1, QStringLiteral("count"), 1));
    EXPECT_TRUE(context.objects().at(thing).values.isEmpty());
    EXPECT_TRUE(set("count", 7));
    EXPECT_TRUE(set("size", std::numeric_limits<double>::infinity()));
    EXPECT_TRUE(set("count", QVariant())) << "taken away";
    EXPECT_FALSE(context.objects().at(thing).values.contains(QStringLiteral("count")));
}

TEST_F(StoreTest, edge_values_come_back) {
    PersistentStoreCoordinator coordinator(model);
    ASSERT_TRUE(open(coordinator));
    ManagedObjectContext context(coordinator);
    const qint64 thing = context.insertNewObjectForEntityForName(QStringLiteral("Thing"));
    const auto set = [&](const char* key, const QVariant& value) {
        return context.setValue(thing, QString::fromLatin1(key), value);
    };
    EXPECT_TRUE(set("size", -std::numeric_limits<double>::infinity()));
    EXPECT_TRUE(set("name", QString(QLatin1String(""))));
    EXPECT_TRUE(set("bytes", QByteArray("")));
    EXPECT_FALSE(set("count", std::numeric_limits<quint64>::max())) << "a signed number can't hold it";
    EXPECT_TRUE(set("count", quint64{7}));
    ASSERT_TRUE(context.save());
    PersistentStoreCoordinator again(model);
    ASSERT_TRUE(open(again)) << error.localizedDescription.toStdString();
    EXPECT_EQ(again.objects(), context.objects());
    EXPECT_TRUE(set("size", -0.0));
    EXPECT_FALSE(std::signbit(context.objects().at(thing).values.value(QStringLiteral("size")).toDouble()))
        << "there is one zero";
}

TEST_F(StoreTest, a_value_that_is_there_already_is_nothing_to_undo) {
    PersistentStoreCoordinator coordinator(model);
    ASSERT_TRUE(open(coordinator));
    ManagedObjectContext context(coordinator);
    const qint64 thing = context.insertNewObjectForEntityForName(QStringLiteral("Thing"));
    EXPECT_TRUE(context.setValue(thing, QStringLiteral("count"), 1));
    const int steps = context.undoManager()->count();
    EXPECT_TRUE(context.setValue(thing, QStringLiteral("count"), 1));
    EXPECT_TRUE(context.setValue(thing, QStringLiteral("name"), QVariant()));
    EXPECT_EQ(context.undoManager()->count(), steps);
}

TEST_F(StoreTest, what_another_program_has_written_meanwhile_stays) {
    PersistentStoreCoordinator coordinator(model);
    ASSERT_TRUE(open(coordinator));
    ManagedObjectContext context(coordinator);
    context.insertNewObjectForEntityForName(QStringLiteral("Thing"));
    write("<store format=\"7\"></store>");
    EXPECT_FALSE(context.save(&error));
    EXPECT_EQ(error.code, static_cast<qint64>(StoreErrorCode::NotWritable));
    EXPECT_TRUE(error.localizedDescription.contains(path)) << "says what could not be saved, and where";
    EXPECT_EQ(error.localizedFailureReason, QStringLiteral("Another program has changed the file."));
    EXPECT_EQ(read(), "<store format=\"7\"></store>");
    EXPECT_TRUE(context.hasChanges());
}

TEST_F(StoreTest, the_last_number_that_can_be_read_is_the_last_that_is_given) {
    write("<store format=\"1\"><object entity=\"Thing\" id=\"9007199254740991\"/></store>");
    PersistentStoreCoordinator coordinator(model);
    ASSERT_TRUE(open(coordinator)) << error.localizedDescription.toStdString();
    ManagedObjectContext context(coordinator);
    EXPECT_EQ(context.insertNewObjectForEntityForName(QStringLiteral("Thing")), largestObjectNumber);
    EXPECT_EQ(context.insertNewObjectForEntityForName(QStringLiteral("Thing")), 0);
    ASSERT_TRUE(context.save());
    PersistentStoreCoordinator again(model);
    EXPECT_TRUE(open(again));
}

TEST_F(StoreTest, a_pipe_in_the_files_place_is_refused_without_waiting) {
    ASSERT_EQ(mkfifo(path.toLocal8Bit().constData(), 0600), 0);
    PersistentStoreCoordinator coordinator(model);
    EXPECT_FALSE(open(coordinator));
    EXPECT_EQ(error.code, static_cast<qint64>(StoreErrorCode::NotReadable));
}

TEST_F(StoreTest, a_folder_that_cannot_be_searched_is_no_empty_store) {
    // A file in the place of a folder can't be searched, also where the tests run as root.
    write("a file");
    PersistentStoreCoordinator coordinator(model);
    EXPECT_FALSE(coordinator.addPersistentStoreWithType(
        PersistentStoreCoordinator::xmlStoreType, path + QStringLiteral("/Tobrimax.storedata"), &error));
    EXPECT_EQ(error.code, static_cast<qint64>(StoreErrorCode::NotReadable));
}

TEST_F(StoreTest, every_change_can_be_undone_and_redone) {
    PersistentStoreCoordinator coordinator(model);
    ASSERT_TRUE(open(coordinator));
    ManagedObjectContext context(coordinator);
    std::vector<StoredObjects> states{context.objects()};
    const auto step = [&](bool isDone) {
        ASSERT_TRUE(isDone);
        states.push_back(context.objects());
    };
    const qint64 thing = context.insertNewObjectForEntityForName(QStringLiteral("Thing"));
    step(thing == 1);
    step(context.setValue(thing, QStringLiteral("count"), 1));
    step(context.setValue(thing, QStringLiteral("count"), 2));
    step(context.deleteObject(thing));
    EXPECT_FALSE(context.deleteObject(thing));
    EXPECT_FALSE(context.hasChanges()) << "as empty as the file";
    for (std::size_t i = states.size() - 1; i-- > 0;) {
        context.undoManager()->undo();
        EXPECT_EQ(context.objects(), states[i]) << i;
    }
    EXPECT_FALSE(context.undoManager()->canUndo());
    for (std::size_t i = 1; i < states.size(); ++i) {
        context.undoManager()->redo();
        EXPECT_EQ(context.objects(), states[i]) << i;
    }
}

TEST_F(StoreTest, one_that_breaks_off_anywhere_is_refused_and_untouched) {
    {
        PersistentStoreCoordinator coordinator(model);
        ASSERT_TRUE(open(coordinator));
        ManagedObjectContext context(coordinator);
        const qint64 thing = context.insertNewObjectForEntityForName(QStringLiteral("Thing"));
        ASSERT_TRUE(context.setValue(thing, QStringLiteral("name"), text("Grüße")));
        ASSERT_TRUE(context.setValue(thing, QStringLiteral("bytes"), QByteArray("abcdef")));
        ASSERT_TRUE(context.save());
    }
    const QByteArray whole = read();
    ASSERT_GT(whole.size(), 100);
    eachBeginning(whole, [this](const QByteArray& bytes) { expectRefused(bytes, StoreErrorCode::Corrupt); });
}

TEST_F(StoreTest, what_is_no_store_of_this_program_is_refused) {
    using Code = StoreErrorCode;
    expectRefused("<store format=\"2\"/>", Code::NewerFormat);
    expectRefused("<store/>", Code::Corrupt);
    expectRefused("<other format=\"1\"/>", Code::Corrupt);
    expectRefused("words", Code::Corrupt);
    expectRefused("<!DOCTYPE store [<!ENTITY a \"b\">]><store format=\"1\">&a;</store>", Code::Corrupt);
    expectRefused("<store format=\"1\"></store><store format=\"1\"></store>", Code::Corrupt);
    expectRefused("<store format=\"1\"><object entity=\"Thing\"/></store>", Code::Corrupt);
    expectRefused("<store format=\"1\"><object entity=\"Thing\" id=\"0\"/></store>", Code::Corrupt);
    expectRefused("<store format=\"1\"><object entity=\"Thing\" id=\"9223372036854775807\"/></store>",
                  Code::Corrupt);
    expectRefused(
        "<store format=\"1\"><object entity=\"Thing\" id=\"1\"/><object entity=\"Thing\" id=\"1\"/></store>",
        Code::Corrupt);
    expectRefused("<store format=\"1\"><object entity=\"Unknown\" id=\"1\"/></store>", Code::WrongModel);
    const auto value = [](const char* attributes, const char* content) {
        return QByteArray("<store format=\"1\"><object entity=\"Thing\" id=\"1\"><value ") + attributes +
               ">" + content + "</value></object></store>";
    };
    expectRefused("<store format=\"1\">text</store>", Code::Corrupt);
    expectRefused("<store format=\"1\" more=\"1\"></store>", Code::Corrupt);
    expectRefused("<store format=\"1\"><object entity=\"Thing\" id=\"1\">text</object></store>",
                  Code::Corrupt);
    expectRefused("<store format=\"1\"><object entity=\"Thing\" id=\"1\"><other name=\"count\" "
                  "type=\"integer\">1</other></object></store>",
                  Code::Corrupt);
    expectRefused("<store format=\"1\"><object entity=\"Thing\" id=\"1\"><value name=\"count\" "
                  "type=\"integer\">1</value>"
                  "<value name=\"count\" type=\"integer\">2</value></object></store>",
                  Code::Corrupt);
    expectRefused(value("name=\"size\" type=\"double\"", "nan"), Code::Corrupt);
    expectRefused(value("name=\"none\" type=\"string\"", "x"), Code::WrongModel);
    expectRefused(value("name=\"count\" type=\"string\"", "1"), Code::WrongModel);
    expectRefused(value("name=\"count\" type=\"integer\"", "one"), Code::Corrupt);
    expectRefused(value("name=\"isNew\" type=\"boolean\"", "yes"), Code::Corrupt);
    expectRefused(value("name=\"bytes\" type=\"data\"", "!!"), Code::Corrupt);
    expectRefused(value("name=\"made\" type=\"date\"", "today"), Code::Corrupt);
    expectRefused(value("name=\"name\" type=\"string\"", "\\12"), Code::Corrupt);
    expectRefused(value("name=\"name\" type=\"string\"", "\\zzzz"), Code::Corrupt);
    expectRefused(value("name=\"name\" type=\"string\"", "<b/>"), Code::Corrupt);
}

TEST_F(StoreTest, a_folder_or_another_type_is_refused) {
    QDir(folder.path()).mkdir(QStringLiteral("Tobrimax.storedata"));
    PersistentStoreCoordinator coordinator(model);
    EXPECT_FALSE(open(coordinator));
    EXPECT_EQ(error.code, static_cast<qint64>(StoreErrorCode::NotReadable));
    EXPECT_FALSE(coordinator.addPersistentStoreWithType(QStringLiteral("SQLite"), path, &error));
}

TEST_F(StoreTest, a_save_that_fails_keeps_file_and_changes) {
    const QString folderPath = folder.filePath(QStringLiteral("data"));
    QDir(folder.path()).mkdir(QStringLiteral("data"));
    path = folderPath + QStringLiteral("/Tobrimax.storedata");
    PersistentStoreCoordinator coordinator(model);
    ASSERT_TRUE(open(coordinator));
    ManagedObjectContext context(coordinator);
    context.insertNewObjectForEntityForName(QStringLiteral("Thing"));
    // The folder goes away and comes back.
    ASSERT_TRUE(QDir(folderPath).removeRecursively());
    EXPECT_FALSE(context.save(&error));
    EXPECT_EQ(error.code, static_cast<qint64>(StoreErrorCode::NotWritable));
    EXPECT_EQ(error.localizedDescription,
              QStringLiteral("The application's data could not be saved in \"%1\"").arg(path));
    EXPECT_EQ(error.localizedFailureReason, QStringLiteral("No such file or directory"));
    EXPECT_TRUE(context.hasChanges());
    QDir(folder.path()).mkdir(QStringLiteral("data"));
    EXPECT_TRUE(context.save(&error));
    EXPECT_FALSE(context.hasChanges());
    EXPECT_FALSE(read().isEmpty());
}

TEST_F(StoreTest, editors_are_asked_until_one_refuses) {
    PersistentStoreCoordinator coordinator(model);
    ASSERT_TRUE(open(coordinator));
    ManagedObjectContext context(coordinator);
    EXPECT_TRUE(context.commitEditing());
    bool isReady = false;
    QObject first;
    auto second = std::make_unique<QObject>();
    context.registerEditor(&first, [] { return true; });
    context.registerEditor(second.get(), [&] {
        context.registerEditor(&first, [] { return true; });
        return isReady;
    });
    EXPECT_FALSE(context.commitEditing());
    isReady = true;
    EXPECT_TRUE(context.commitEditing());
    isReady = false;
    second.reset();
    EXPECT_TRUE(context.commitEditing()) << "one that is gone is not asked";
}

TEST_F(StoreTest, a_model_is_read_from_its_folder) {
    QFile file(folder.filePath(QStringLiteral("Model.plist")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>Thing</key><dict><key>name</key>"
               "<string>string</string><key>count</key><string>integer</string></dict></dict></plist>");
    file.close();
    const auto loaded = ManagedObjectModel::initWithContentsOfURL(folder.path());
    ASSERT_NE(loaded, nullptr);
    ASSERT_NE(loaded->entity(QStringLiteral("Thing")), nullptr);
    EXPECT_EQ(loaded->entity(QStringLiteral("Thing"))->attribute(QStringLiteral("count"))->type,
              AttributeType::Integer);
    EXPECT_EQ(loaded->entity(QStringLiteral("Other")), nullptr);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>Thing</key><dict><key>name</key>"
               "<string>colour</string></dict></dict></plist>");
    file.close();
    EXPECT_EQ(ManagedObjectModel::initWithContentsOfURL(folder.path()), nullptr);
    EXPECT_EQ(ManagedObjectModel::initWithContentsOfURL(folder.filePath(QStringLiteral("missing"))), nullptr);
}

TEST(StoreError, tells_all_it_knows_in_one_line_each) {
    StoreError error{QStringLiteral("D"), 7, QStringLiteral("what"), QStringLiteral("why")};
    error.underlyingError =
        std::make_shared<const StoreError>(StoreError{QStringLiteral("U"), 1, QStringLiteral("deep"), {}});
    EXPECT_EQ(error.description(), QStringLiteral("Error Domain=D Code=7 \"what\""));
    EXPECT_EQ(error.userInfoDescription(),
              QStringLiteral("{NSLocalizedDescription=what, NSLocalizedFailureReason=why, "
                             "NSUnderlyingError=Error Domain=U Code=1 \"deep\"}"));
}

} // namespace
