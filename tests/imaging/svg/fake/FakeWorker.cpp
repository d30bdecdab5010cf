// A worker that misbehaves at one of its messages, for tests. FAKE_WORKER is what it does and the number of
// the message, such as "stops 1": 0 is its start, 1 the document's size, 2 and the following are drawings.
// "says FILE" answers with the bytes of a file.

#include "imaging/svgpipe/SvgMessages.h"

#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

namespace {

using namespace SvgPipe;

void send(const void* bytes, std::size_t count) {
    if (::write(STDOUT_FILENO, bytes, count) != static_cast<ssize_t>(count))
        ::_exit(0);
}

void misbehave(const std::string& how, const Answer& answer) {
    if (how == "exits")
        ::_exit(1);
    if (how == "dies")
        ::kill(::getpid(), SIGKILL);
    if (how == "stops")
        ::kill(::getpid(), SIGSTOP);
    if (how == "sleeps")
        ::pause();
    if (how == "spins") {
        volatile bool isForEver = true;
        while (isForEver) {
        }
    }
    if (how == "tires") {
        while (std::clock() < CLOCKS_PER_SEC / 2) {
        }
        ::_exit(1);
    }
    if (how == "closes") {
        ::close(STDOUT_FILENO);
        ::pause();
    }
    if (how == "halves") {
        send(&answer, sizeof answer / 2);
        ::_exit(0);
    }
    if (how == "floods") {
        const std::vector<char> words(1 << 20);
        for (;;)
            send(words.data(), words.size());
    }
    Answer wrong = answer;
    if (how == "mumbles")
        wrong.mark = 0x5a5a5a5a;
    if (how == "misreads")
        wrong.kind = answer.kind == AnswerKind::Size ? AnswerKind::Drawn : AnswerKind::Size;
    if (how == "is-unknown")
        wrong.kind = static_cast<AnswerKind>(5);
    if (how == "is-infinite") {
        wrong.kind = AnswerKind::Size;
        wrong.width = std::numeric_limits<double>::infinity();
    }
    send(&wrong, sizeof wrong);
}

/// Sends the bytes of a file, whatever it is asked for.
int say(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string words{std::istreambuf_iterator<char>(file), {}};
    send(words.data(), words.size());
    return 0;
}

} // namespace

int main() {
    const char* plan = std::getenv("FAKE_WORKER");
    const std::string text = plan != nullptr ? plan : "";
    const std::string how = text.substr(0, text.find(' '));
    if (how == "says")
        return say(text.substr(how.size() + 1));
    const long at = how.size() < text.size() ? std::atol(text.c_str() + how.size()) : -1;
    Answer answer;
    answer.kind = AnswerKind::Size;
    answer.width = answer.height = 9;
    if (at == 0)
        misbehave(how, answer);
    for (long message = 1;; ++message) {
        if (message == at)
            misbehave(how, answer);
        else
            send(&answer, sizeof answer);
        Request request;
        if (::read(STDIN_FILENO, &request, sizeof request) != sizeof request)
            return 0;
        answer.kind = AnswerKind::Drawn;
    }
}
