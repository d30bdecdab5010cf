#include "svgworker/Session.h"

#include "imaging/svgpipe/SharedMemory.h"
#include "imaging/svgpipe/SvgMessages.h"
#include "imaging/svgpipe/SvgPipe.h"
#include "svgworker/Document.h"

#include <memory>

using namespace SvgPipe;

int serve(int socket) {
    std::unique_ptr<Document> document;
    for (;;) {
        Request request;
        int descriptor = -1;
        const std::size_t count = receive(socket, writableBytesOf(request), &descriptor);
        SharedMemory memory(descriptor);
        if (count == 0)
            return 0;
        const bool isDrawing = request.kind == RequestKind::Drawing;
        if (count < sizeof request || !isValid(request) || isDrawing != (document != nullptr))
            return messageStatus;
        std::byte* bytes = memory.map(request.sharedBytes());
        Answer answer;
        answer.refusal = Refusal::Memory;
        if (bytes != nullptr && isDrawing)
            answer = document->draw(request, reinterpret_cast<std::uint8_t*>(bytes));
        else if (bytes != nullptr)
            document = Document::read({bytes, request.sharedBytes()}, answer);
        if (!send(socket, bytesOf(answer)) || document == nullptr)
            return 0;
    }
}
