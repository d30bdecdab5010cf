#pragma once

#include "base/Result.h"
#include "files/FileDescriptor.h"
#include "imaging/svgpipe/SvgMessages.h"

#include <QByteArray>
#include <QImage>

#include <map>

/// Memory that a program has in common with its SVG workers: a document, and behind it places for drawings.
class SvgMemory {
  public:
    explicit SvgMemory(const QByteArray& document);

    /// False where memory is short.
    bool isOpen() const { return m_memory.isOpen(); }
    int descriptor() const { return m_memory.number(); }
    std::size_t documentBytes() const { return m_documentBytes; }

    /// Gives a drawing a place of its own. False where memory is short.
    bool take(SvgPipe::Request& drawing);
    /// The place is free again.
    void giveBack(const SvgPipe::Request& drawing) { m_taken.erase(drawing.place); }

    /// A copy of a drawing's pixels, RGBA8888_Premultiplied. OutOfMemory.
    Result<QImage> image(const SvgPipe::Request& drawing) const;

  private:
    bool growTo(std::uint64_t bytes);

    FileDescriptor m_memory;
    std::size_t m_documentBytes;
    std::uint64_t m_bytes = 0;
    std::map<std::uint64_t, std::uint64_t> m_taken; ///< the begin and the end of each place
};
