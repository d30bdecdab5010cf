#include "iconfamily/IconFamily.h"
#include "platform/forks/AppleDoubleForkStore.h"
#include "platform/forks/ResourceFork.h"
#include "tests/cli/CliTest.h"
#include "tests/support/IcnsBytes.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

using IcnsBytes::element;
using IcnsBytes::icns;

class CustomIconCommands : public CliTest {
  protected:
    void SetUp() override {
        CliTest::SetUp();
        file(u"icon.icns"_s, m_icon);
        file(u"document"_s, "text");
        ASSERT_TRUE(QDir(path({})).mkpath(u"folder"_s));
    }

    ProcessResult run(const QStringList& words, bool isAppleDouble = true) const {
        const QStringList store = isAppleDouble ? QStringList{u"--apple-double"_s} : QStringList();
        return runCli(QStringList{u"custom-icon"_s} + words + store, path({}));
    }

    void expectDone(const ProcessResult& result) const {
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors.toStdString(), "");
    }

    quint16 flags(const QString& name) const {
        return AppleDoubleForkStore().finderInfo(path(name))->flags();
    }

    QStringList types(const QString& name) const {
        QStringList result;
        const Result<ResourceFork> fork =
            ResourceFork::parse(*AppleDoubleForkStore().resourceFork(path(name)));
        EXPECT_TRUE(fork);
        for (const Resource& resource : fork->resources())
            result << resource.type.text();
        return result;
    }

    /// "TYPE NUMBER DATA" for each resource, sorted, the data of an icon left out. Read by Python.
    std::vector<std::string> resources(const QString& name) const {
        const QByteArray printed = printedByPython(
            u"import struct, sys\n"
            "data = open(sys.argv[1], 'rb').read()\n"
            "for i in range(struct.unpack_from('>H', data, 24)[0]):\n"
            "    identifier, offset, length = struct.unpack_from('>3I', data, 26 + 12 * i)\n"
            "    if identifier == 2: fork = data[offset:offset + length]\n"
            "start, map = struct.unpack_from('>2I', fork)\n"
            "types = map + struct.unpack_from('>H', fork, map + 24)[0]\n"
            "found = []\n"
            "for i in range((struct.unpack_from('>H', fork, types)[0] + 1) & 0xffff):\n"
            "    kind, last, offset = struct.unpack_from('>4sHH', fork, types + 2 + 8 * i)\n"
            "    for j in range(last + 1):\n"
            "        number, name, at = struct.unpack_from('>hHI', fork, types + offset + 12 * j)\n"
            "        at = start + (at & 0xffffff)\n"
            "        length, = struct.unpack_from('>I', fork, at)\n"
            "        shown = '' if kind == b'icns' else fork[at + 4:at + 4 + length].decode()\n"
            "        found.append('%s %d %s' % (kind.decode(), number, shown))\n"
            "print('\\n'.join(sorted(found)))\n"_s,
            {QFileInfo(path(name)).path() + u"/._"_s + QFileInfo(name).fileName()});
        std::vector<std::string> lines;
        for (const QByteArray& line : printed.chopped(1).split('\n'))
            lines.push_back(line.toStdString());
        return lines;
    }

    QByteArray m_icon = icns(element("ICN#", QByteArray(256, 'i')) + element("ic04", QByteArray(1024, 'x')));
};

} // namespace

TEST_F(CustomIconCommands, a_file_gets_an_icon_and_loses_it) {
    expectDone(run({u"set"_s, u"document"_s, u"icon.icns"_s}));
    EXPECT_EQ(types(u"document"_s), QStringList{u"icns"_s});
    EXPECT_EQ(flags(u"document"_s), 0x0400);
    EXPECT_EQ(content(path(u"document"_s)), "text");
    expectDone(run({u"remove"_s, u"document"_s}));
    EXPECT_EQ(types(u"document"_s), QStringList());
    EXPECT_EQ(flags(u"document"_s), 0);
}

TEST_F(CustomIconCommands, a_folder_gets_an_icon_and_loses_it) {
    expectDone(run({u"set"_s, u"folder"_s, u"icon.icns"_s}));
    EXPECT_EQ(types(u"folder/Icon\r"_s), QStringList{u"icns"_s});
    EXPECT_EQ(flags(u"folder"_s), 0x0400);
    expectDone(run({u"remove"_s, u"folder"_s}));
    EXPECT_EQ(flags(u"folder"_s), 0);
    EXPECT_TRUE(QDir(path(u"folder"_s)).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    expectOneError(run({u"remove"_s, u"folder"_s}), u"No such file or directory"_s);
}

TEST_F(CustomIconCommands, compatibility_stores_old_elements_too) {
    expectDone(run({u"set"_s, u"document"_s, u"icon.icns"_s, u"--compatibility"_s}));
    EXPECT_EQ(types(u"document"_s), QStringList({u"icns"_s, u"ICN#"_s}));
}

TEST_F(CustomIconCommands, a_second_icon_leaves_nothing_of_the_first) {
    const auto set = [&](const QByteArray& old, const QStringList& more) {
        file(u"icon.icns"_s, icns(element("ICN#", old) + element("ics8", old + "s")));
        expectDone(run(QStringList{u"set"_s, u"document"_s, u"icon.icns"_s} + more));
    };
    set("first", {u"--compatibility"_s});
    const auto lengthOnce = content(path(u"._document"_s)).size();
    set("other", {u"--compatibility"_s});
    EXPECT_EQ(resources(u"document"_s),
              (std::vector<std::string>{"ICN# -16455 other", "icns -16455 ", "ics8 -16455 others"}));
    EXPECT_EQ(content(path(u"._document"_s)).size(), lengthOnce);
    // An older program may have left those of several.
    {
        AppleDoubleForkStore store;
        ResourceFork fork = *ResourceFork::parse(*store.resourceFork(path(u"document"_s)));
        EXPECT_TRUE(fork.addResource({"ICN#", -16455, QByteArray(), 0, "older"}));
        EXPECT_TRUE(fork.addResource({"ICN#", 128, QByteArray(), 0, "another"}));
        ASSERT_TRUE(store.setResourceFork(path(u"document"_s), *fork.data()));
    }
    set("third", {u"--compatibility"_s});
    EXPECT_EQ(resources(u"document"_s), (std::vector<std::string>{"ICN# -16455 third", "ICN# 128 another",
                                                                  "icns -16455 ", "ics8 -16455 thirds"}));
    expectDone(run({u"remove"_s, u"document"_s}));
    EXPECT_EQ(resources(u"document"_s), std::vector<std::string>{"ICN# 128 another"});
}

TEST_F(CustomIconCommands, a_protected_resource_of_an_icon_stays_with_all_others) {
    AppleDoubleForkStore store;
    ResourceFork fork;
    EXPECT_TRUE(fork.addResource({"icl8", -16455, QByteArray(), 0, "one"}));
    EXPECT_TRUE(fork.addResource({"ICN#", -16455, QByteArray(), Resource::isProtected, "kept"}));
    ASSERT_TRUE(store.setResourceFork(path(u"document"_s), *fork.data()));
    const QByteArray before = content(path(u"._document"_s));
    expectOneError(run({u"set"_s, u"document"_s, u"icon.icns"_s, u"--compatibility"_s}),
                   u"the icon could not be set: document: a part of its icon is protected"_s);
    expectOneError(run({u"remove"_s, u"document"_s}), u"a part of its icon is protected"_s);
    EXPECT_EQ(content(path(u"._document"_s)), before);
}

TEST_F(CustomIconCommands, a_missing_file_is_made_on_demand_alone) {
    const auto before = tree(path({}));
    expectOneError(run({u"set"_s, u"new"_s, u"icon.icns"_s}),
                   u"the icon could not be set: new: No such file or directory; with --create"_s);
    EXPECT_EQ(tree(path({})), before);
    expectDone(run({u"set"_s, u"new"_s, u"icon.icns"_s, u"--create"_s}));
    EXPECT_EQ(QFileInfo(path(u"new"_s)).size(), 0);
    EXPECT_EQ(types(u"new"_s), QStringList{u"icns"_s});
    expectDone(run({u"set"_s, u"document"_s, u"icon.icns"_s, u"--create"_s}));
    EXPECT_EQ(content(path(u"document"_s)), "text") << "one that is there stays";
}

#ifndef Q_OS_MACOS
TEST_F(CustomIconCommands, without_a_place_for_forks_the_option_is_named) {
    const auto before = tree(path({}));
    expectOneError(run({u"set"_s, u"document"_s, u"icon.icns"_s}, false), u"--apple-double"_s);
    expectOneError(run({u"set"_s, u"folder"_s, u"icon.icns"_s}, false), u"--apple-double"_s);
    expectOneError(run({u"remove"_s, u"document"_s}, false), u"--apple-double"_s);
    expectOneError(run({u"remove"_s, u"folder"_s}, false), u"--apple-double"_s);
    EXPECT_EQ(tree(path({})), before);
}
#endif

TEST_F(CustomIconCommands, what_fails_is_told) {
    expectOneError(run({u"set"_s, u"document"_s, u"missing.icns"_s}), u"missing.icns: No such file"_s);
    expectOneError(run({u"set"_s, u"document"_s, u"document"_s}), u"not an icns file"_s);
    file(u"cut.icns"_s, m_icon.chopped(1));
    expectOneError(run({u"set"_s, u"document"_s, u"cut.icns"_s}), u"cut.icns: "_s);
    expectOneError(run({u"remove"_s, u"document"_s}), u"it has no resource fork"_s);
    expectOneError(run({u"remove"_s, u"missing"_s}), u"missing: No such file"_s);
    expectOneError(run({u"set"_s, u"no/folder"_s, u"icon.icns"_s}), u"no/folder: No such file"_s);
    file(u"._document"_s, "something else");
    expectOneError(run({u"set"_s, u"document"_s, u"icon.icns"_s}), u"the AppleDouble file is damaged"_s);
    EXPECT_EQ(content(path(u"._document"_s)), "something else");
}

TEST_F(CustomIconCommands, removing_from_a_folder_that_has_no_icon_leaves_nothing) {
    EXPECT_EQ(run({u"remove"_s, u"folder"_s}).exitStatus, 1);
    EXPECT_FALSE(QFileInfo::exists(path(u"._folder"_s)));
}

TEST_F(CustomIconCommands, a_folder_in_the_place_of_an_apple_double_file_stays) {
    ASSERT_TRUE(QDir(path({})).mkpath(u"folder/._Icon\r/somebody's own"_s));
    ASSERT_TRUE(QDir(path({})).mkpath(u"._new/somebody's own"_s));
    EXPECT_EQ(run({u"set"_s, u"folder"_s, u"icon.icns"_s}).exitStatus, 1);
    EXPECT_EQ(run({u"set"_s, u"new"_s, u"icon.icns"_s, u"--create"_s}).exitStatus, 1);
    EXPECT_TRUE(QFileInfo::exists(path(u"folder/._Icon\r/somebody's own"_s)));
    EXPECT_TRUE(QFileInfo::exists(path(u"._new/somebody's own"_s)));
}

TEST_F(CustomIconCommands, a_fork_that_is_damaged_stays_as_it_is) {
    AppleDoubleForkStore store;
    ASSERT_TRUE(store.setResourceFork(path(u"document"_s), "no fork at all"));
    const QByteArray before = content(path(u"._document"_s));
    expectOneError(run({u"set"_s, u"document"_s, u"icon.icns"_s}), u"the resource fork is damaged"_s);
    expectOneError(run({u"remove"_s, u"document"_s}), u"the resource fork is damaged"_s);
    EXPECT_EQ(content(path(u"._document"_s)), before);
}

TEST_F(CustomIconCommands, an_icon_survives_the_archives_that_are_told_of) {
    file(u"folder/b"_s, "b");
    file(u"folder/lib._x.dat"_s, "no AppleDouble file");
    expectDone(run({u"set"_s, u"folder"_s, u"icon.icns"_s}));
    expectDone(run({u"set"_s, u"folder/b"_s, u"icon.icns"_s}));
    // Takes the commands from the guide and changes the name in them.
    QFile guide(QStringLiteral(PROJECT_DIR "/docs/guide.md"));
    ASSERT_TRUE(guide.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(guide.readAll());
    QString recipe;
    for (const QString& firstWords : {u"find \"My App\" ! -name"_s, u"mkdir -p __MACOSX"_s}) {
        const qsizetype start = text.indexOf(firstWords);
        const qsizetype end = text.indexOf(u"```"_s, start);
        ASSERT_GT(end, start);
        recipe += text.sliced(start, end - start);
    }
    recipe.replace(u"My App"_s, u"folder"_s);
    const ProcessResult packed = runProcess(u"bash"_s, {u"-ec"_s, recipe}, path({}));
    ASSERT_EQ(packed.exitStatus, 0) << packed.errors.toStdString();

    const QStringList listed =
        QString::fromUtf8(runProcess(u"tar"_s, {u"-tzf"_s, path(u"app.tar.gz"_s)}).output)
            .split(u'\n', Qt::SkipEmptyParts);
    EXPECT_EQ(listed.size(), 7);
    for (const auto& [sidecar, item] :
         {std::pair(u"./._folder"_s, u"folder/"_s), std::pair(u"folder/._b"_s, u"folder/b"_s),
          std::pair(u"folder/._Icon\\r"_s, u"folder/Icon\\r"_s)})
        EXPECT_EQ(listed.indexOf(sidecar) + 1, listed.indexOf(item)) << item.toStdString();

    ASSERT_TRUE(QDir(path({})).mkpath(u"from tar"_s));
    EXPECT_EQ(
        runProcess(u"tar"_s, {u"-C"_s, path(u"from tar"_s), u"-xzf"_s, path(u"app.tar.gz"_s)}).exitStatus, 0);
    ASSERT_TRUE(QDir(path({})).mkpath(u"from zip"_s));
    EXPECT_EQ(runProcess(QStringLiteral(PYTHON3),
                         {u"-m"_s, u"zipfile"_s, u"-e"_s, path(u"app.zip"_s), path(u"from zip"_s)})
                  .exitStatus,
              0);
    EXPECT_EQ(flags(u"from tar/folder"_s), 0x0400);
    EXPECT_EQ(content(path(u"from zip/folder/lib._x.dat"_s)), "no AppleDouble file");
    EXPECT_FALSE(QFileInfo::exists(path(u"from zip/folder/._b"_s)));
    for (const QString& sidecar : {u"from tar/folder/._Icon\r"_s, u"from zip/__MACOSX/folder/._Icon\r"_s,
                                   u"from zip/__MACOSX/folder/._b"_s}) {
        const Result<AppleDouble> file = AppleDouble::parse(content(path(sidecar)));
        ASSERT_TRUE(file) << sidecar.toStdString();
        const Result<ResourceFork> fork = ResourceFork::parse(file->resourceFork());
        ASSERT_TRUE(fork) << sidecar.toStdString();
        EXPECT_EQ(fork->resource("icns", -16455)->data, m_icon);
    }
}

TEST_F(CustomIconCommands, another_program_knows_what_is_written) {
    expectDone(run({u"set"_s, u"document"_s, u"icon.icns"_s}));
    const ProcessResult told = runProcess(u"file"_s, {u"--brief"_s, path(u"._document"_s)});
    EXPECT_EQ(told.output.trimmed(), "AppleDouble encoded Macintosh file");
}
