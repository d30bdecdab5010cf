#include "cli/generate/GenerateWatch.h"

#include "cli/text/Terminal.h"
#include "files/FileItem.h"
#include "files/PathBytes.h"
#include "project/FileWatch.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>

namespace {

/// The end of a pipe into which an interruption writes.
volatile std::sig_atomic_t interruptions = -1;

extern "C" void interrupted(int /*signal*/) {
    const char byte = 0;
    // A full pipe holds an interruption already.
    static_cast<void>(!write(interruptions, &byte, 1));
}

/// Ends the event loop at SIGINT or SIGTERM. What is being made then is made to its end.
class Interruption {
  public:
    Interruption() : m_isMade(pipe(m_ends.data()) == 0), m_notifier(m_ends[0], QSocketNotifier::Read) {
        interruptions = m_ends[1];
        struct sigaction action = {};
        action.sa_handler = interrupted;
        action.sa_flags = SA_RESTART;
        for (const int signal : {SIGINT, SIGTERM})
            sigaction(signal, &action, nullptr);
        QObject::connect(&m_notifier, &QSocketNotifier::activated, [] { QCoreApplication::quit(); });
    }

    bool isMade() const { return m_isMade; }

  private:
    std::array<int, 2> m_ends{-1, -1};
    bool m_isMade;
    QSocketNotifier m_notifier;
};

} // namespace

std::set<QString> GenerateWatch::inputs(const GenerateOptions& options) {
    std::set<QString> paths;
    for (const std::string* picture :
         {&options.picture, &options.dark, &options.tinted, &options.foreground, &options.monochrome}) {
        if (!picture->empty())
            paths.insert(PathBytes::decoded(*picture));
    }
    for (const SmallPicture& small : options.small)
        paths.insert(PathBytes::decoded(small.path));
    if (!options.catalogue.isEmpty())
        paths.insert(options.catalogue);
    for (const QString& layout : options.layouts) {
        // The others are names of our own layouts.
        if (layout.contains(u'/') || layout.endsWith(QLatin1String(".toml")))
            paths.insert(layout);
    }
    return paths;
}

int GenerateWatch::run(const std::set<QString>& known, const std::function<std::set<QString>()>& make,
                       bool isQuiet) {
    const Interruption interruption;
    if (!interruption.isMade()) {
        Terminal::error(QStringLiteral("files can't be watched: too many files are open"));
        return 1;
    }
    const auto makeAll = [&] {
        std::set<QString> files = make();
        std::fflush(stdout);
        return files;
    };
    FileWatch watch([&] { watch.follow(makeAll()); });
    watch.follow(known);
    watch.follow(makeAll());
    if (!isQuiet)
        Terminal::note(QStringLiteral("waiting for changes; Ctrl+C ends"));
    return QCoreApplication::exec();
}
