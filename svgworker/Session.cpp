#include "svgworker/Session.h"

#include "imaging/svgpipe/SvgMessages.h"
#include "imaging/svgpipe/SvgPipe.h"
#include "svgworker/Document.h"
#include "svgworker/Fonts.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <span>
#include <string>
#include <vector>

namespace {

using namespace SvgPipe;

#ifdef MAP_POPULATE
// All of its pages are written.
constexpr int mapFlags = MAP_SHARED | MAP_POPULATE;
#else
constexpr int mapFlags = MAP_SHARED;
#endif

/// A descriptor that came along with a request, if any. Closes it.
class ReceivedDescriptor {
  public:
    ReceivedDescriptor() = default;
    ~ReceivedDescriptor() {
        if (value >= 0)
            ::close(value);
    }
    ReceivedDescriptor(const ReceivedDescriptor&) = delete;
    ReceivedDescriptor& operator=(const ReceivedDescriptor&) = delete;

    int value = -1;
};

/// A drawing's shared memory.
class SharedPixels {
  public:
    SharedPixels(int descriptor, const Request& request)
        : m_size(std::size_t{4} * static_cast<std::size_t>(request.width) *
                 static_cast<std::size_t>(request.height)) {
        struct stat state {};
        if (::fstat(descriptor, &state) == 0 && static_cast<std::uint64_t>(state.st_size) >= m_size) {
            void* memory = ::mmap(nullptr, m_size, PROT_READ | PROT_WRITE, mapFlags, descriptor, 0);
            m_pixels = memory != MAP_FAILED ? static_cast<std::uint8_t*>(memory) : nullptr;
        }
    }
    ~SharedPixels() {
        if (m_pixels != nullptr)
            ::munmap(m_pixels, m_size);
    }
    SharedPixels(const SharedPixels&) = delete;
    SharedPixels& operator=(const SharedPixels&) = delete;

    /// Null where there is no memory.
    std::uint8_t* pixels() const { return m_pixels; }

  private:
    std::size_t m_size;
    std::uint8_t* m_pixels = nullptr;
};

Answer refusalOf(const DrawingFailure& failure) {
    Answer answer;
    answer.refusal = failure.refusal;
    answer.textLength = static_cast<std::uint32_t>(std::min(failure.text.size(), answer.text.size()));
    std::copy_n(failure.text.begin(), answer.textLength, answer.text.begin());
    return answer;
}

bool reply(int socket, const Answer& answer) {
    return send(socket, bytesOf(answer), endless()) == Transfer::Done;
}

/// Reads the document and answers with its size and missing fonts. Null where the program has gone or the
/// document is refused.
std::unique_ptr<Document> openDocument(int socket, const Request& request) {
    // The library keeps what it needs of the bytes.
    std::vector<std::byte> bytes(static_cast<std::size_t>(request.documentBytes));
    std::string fonts(static_cast<std::size_t>(request.fontBytes), '\0');
    if (receive(socket, bytes, endless()) != Transfer::Done ||
        receive(socket, std::as_writable_bytes(std::span(fonts)), endless()) != Transfer::Done)
        return nullptr;
    DrawingFailure failure;
    std::unique_ptr<Document> document = Document::read(bytes, failure);
    Answer answer = refusalOf(failure);
    if (document != nullptr) {
        answer.kind = AnswerKind::Size;
        answer.width = document->width();
        answer.height = document->height();
        answer.missingFonts = Fonts::missing(fonts);
    }
    return reply(socket, answer) ? std::move(document) : nullptr;
}

Answer drawn(const Document& document, const Request& request, int descriptor) {
    const SharedPixels shared(descriptor, request);
    if (shared.pixels() == nullptr)
        return refusalOf({Refusal::Memory, {}});
    if (const std::optional<DrawingFailure> failure = document.draw(request, shared.pixels()))
        return refusalOf(*failure);
    Answer answer;
    answer.kind = AnswerKind::Drawn;
    return answer;
}

} // namespace

int serve(int socket) {
    std::unique_ptr<Document> document;
    for (;;) {
        Request request;
        ReceivedDescriptor descriptor;
        if (receive(socket, writableBytesOf(request), endless(), &descriptor.value) != Transfer::Done)
            return 0;
        const bool isDrawing = request.kind == RequestKind::Drawing;
        if (!isValid(request) || isDrawing != (document != nullptr) || isDrawing != (descriptor.value >= 0))
            return messageStatus;
        if (!isDrawing) {
            document = openDocument(socket, request);
            if (document == nullptr)
                return 0;
        } else if (!reply(socket, drawn(*document, request, descriptor.value))) {
            return 0;
        }
    }
}
