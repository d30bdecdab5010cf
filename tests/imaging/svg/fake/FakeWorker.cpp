// A worker that misbehaves at one of its messages, for tests. FAKE_WORKER is what it does and the number of
// the message, such as "stops 1": 0 is the document, 1 its size, 2 and the following are drawings.
// "says FILE" answers with the bytes of a file.

#include "imaging/svgpipe/SvgMessages.h"
#include "imaging/svgpipe/SvgPipe.h"

#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <span>
#include <string>

namespace {

using namespace SvgPipe;

void misbehave(const std::string& how, const Answer& answer) {
    const int socket = workerEnd;
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
        ::close(socket);
        ::pause();
    }
    if (how == "halves") {
        send(socket, bytesOf(answer).first(sizeof answer / 2));
        ::_exit(0);
    }
    Answer wrong = answer;
    if (how == "mumbles")
        wrong.mark = 0x5a5a5a5a;
    if (how == "misreads")
        wrong.kind = answer.kind == AnswerKind::Size ? AnswerKind::Drawn : AnswerKind::Size;
    if (how == "overflows") {
        wrong.kind = AnswerKind::Refused;
        wrong.textLength = ~0U;
    }
    if (how == "is-infinite") {
        wrong.kind = AnswerKind::Size;
        wrong.width = 1e300 * 1e300;
    }
    send(socket, bytesOf(wrong));
}

/// Sends the bytes of a file, whatever it is asked for.
int say(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string words{std::istreambuf_iterator<char>(file), {}};
    send(workerEnd, std::as_bytes(std::span(words)));
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
        Request request;
        int descriptor = -1;
        if (receive(workerEnd, writableBytesOf(request), &descriptor) == 0)
            return 0;
        ::close(descriptor);
        if (message == at)
            misbehave(how, answer);
        else
            send(workerEnd, bytesOf(answer));
        answer.kind = AnswerKind::Drawn;
    }
}
