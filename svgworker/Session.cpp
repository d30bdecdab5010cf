#include "svgworker/Session.h"

#include "imaging/svgpipe/SharedPart.h"
#include "imaging/svgpipe/SvgMessages.h"
#include "svgworker/Document.h"

#include <unistd.h>

#include <memory>

using namespace SvgPipe;

int serve(int input, int output, int memory, std::size_t documentBytes) {
    std::unique_ptr<Document> document;
    Answer answer;
    // An empty document has a part too.
    if (const SharedPart text(memory, 0, documentBytes + 1); text.bytes() != nullptr)
        document = Document::read({text.bytes(), documentBytes}, answer);
    else
        return memoryStatus;
    while (::write(output, &answer, sizeof answer) == sizeof answer && document != nullptr) {
        Request request;
        const ssize_t bytes = ::read(input, &request, sizeof request);
        if (bytes <= 0)
            return 0;
        if (bytes < ssize_t{sizeof request} || !isValid(request))
            return messageStatus;
        const SharedPart pixels(memory, request.place, request.bytes());
        if (pixels.bytes() == nullptr)
            return memoryStatus;
        answer = document->draw(request, pixels.bytes());
    }
    return 0;
}
