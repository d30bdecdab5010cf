#include "layouts/LayoutWriter.h"

#include "base/StageTimes.h"
#include "files/FilePath.h"
#include "files/PathBytes.h"
#include "files/RegularFile.h"
#include "generation/IconContainer.h"
#include "imaging/icns/IcnsWriter.h"
#include "imaging/ico/IcoWriter.h"
#include "imaging/png/PngStore.h"
#include "imaging/png/PngWriter.h"
#include "layouts/LayoutTemplate.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <functional>
#include <map>
#include <tuple>

namespace {

using Format = LayoutFile::Format;

constexpr qint64 mostTextBytes = 4 << 20;

/// The sizes of the pictures in a file.
std::vector<QSize> sizesOf(const LayoutFile& file) {
    if (file.format != Format::Icns)
        return file.sizes;
    std::vector<QSize> sizes;
    sizes.reserve(IconContainer::sides.size());
    for (const int side : IconContainer::sides)
        sizes.emplace_back(side, side);
    // Largest first, as they are stored.
    std::ranges::reverse(sizes);
    return sizes;
}

/// Makes the bytes of a layout's files.
class Encoding {
  public:
    Encoding(const LayoutInput& input, const Layout& layout, const std::vector<LayoutFile>& written)
        : m_input(input),
          m_layout(layout),
          m_written(written),
          m_renderer(m_input.pictures, input.style, input.background),
          m_pngs(input.effort),
          m_keeping(m_pngs) {
        for (const LayoutFile& file : written) {
            for (const QSize& size : sizesOf(file))
                ++m_count[kindOf(file, size)];
        }
    }

    Result<QByteArray> bytes(const LayoutFile& file) {
        switch (file.format) {
        case Format::Png:
            return png(file);
        case Format::Ico:
            return ico(file);
        case Format::Icns:
            return icns(file);
        case Format::Svg:
            return m_input.pictures.document;
        case Format::Text:
            break;
        }
        return filledTemplate(file, m_layout.files, m_written, {m_input.name, m_input.background});
    }

  private:
    /// Width, height and channels.
    using Kind = std::tuple<int, int, PngChannels>;

    static Kind kindOf(const LayoutFile& file, const QSize& size) {
        return {size.width(), size.height(), file.isOpaque ? PngChannels::Rgb : PngChannels::Rgba};
    }

    Result<QByteArray> png(const LayoutFile& file) {
        const Result<QImage> raster = m_renderer.raster(file, file.sizes.front());
        if (!raster)
            return raster.error();
        const Kind kind = kindOf(file, raster->size());
        const PngChannels channels = std::get<PngChannels>(kind);
        // No other raster can be equal to the only one of its kind. To keep it would only take memory.
        return m_count[kind] == 1 ? encodePng(*raster, {.channels = channels, .effort = m_pngs.effort()})
                                  : m_pngs.encoded(*raster, channels);
    }

    Result<QByteArray> ico(const LayoutFile& file) {
        std::vector<QImage> rasters;
        for (const QSize& size : file.sizes) {
            Result<QImage> raster = m_renderer.raster(file, size);
            if (!raster)
                return raster.error();
            rasters.push_back(std::move(*raster));
        }
        return encodeIco(rasters, &m_pngs);
    }

    Result<QByteArray> icns(const LayoutFile& file) {
        IcnsWriter writer;
        for (const QSize& size : sizesOf(file)) {
            const Result<QImage> raster = m_renderer.raster(file, size);
            if (!raster)
                return raster.error();
            if (const auto added = writer.addImage(*raster, &m_pngs); !added)
                return added.error();
        }
        return writer.data();
    }

    const LayoutInput& m_input;
    const Layout& m_layout;
    const std::vector<LayoutFile>& m_written;
    LayoutRenderer m_renderer;
    std::map<Kind, int> m_count; ///< of the rasters of all files
    PngStore m_pngs;
    PngStore::Keeping m_keeping;
};

/// Whether a text file of somebody else is there, which stays.
bool isOthers(const LayoutFile& file, const QString& path) {
    if (!file.keepsOthers)
        return false;
    const Result<QByteArray> there = RegularFile::read(PathBytes::encoded(path).toStdString(), mostTextBytes);
    return there ? !there->contains(file.ours.toUtf8()) : there.error().code != ErrorCode::NotFound;
}

/// The error where a file of the same name has another ending.
Result<Done> checkEnding(const LayoutFile& file, const QString& path) {
    if (!file.hasOneEnding)
        return Done{};
    const QFileInfo wanted(path);
    for (const QString& other :
         wanted.dir().entryList({wanted.baseName() + QStringLiteral(".*")}, QDir::Files | QDir::Hidden)) {
        if (other == wanted.fileName() || other.section(u'.', 0, 0) != wanted.baseName())
            continue;
        return Error{
            ErrorCode::NotWritable,
            QStringLiteral("%1 is there already, and a build takes only one of the two; remove it first")
                .arg(other)};
    }
    return Done{};
}

using Bytes = std::function<Result<QByteArray>(const LayoutFile&)>;

Result<QByteArray> writtenBytes(const Bytes& bytesOf, const LayoutFile& file, const QString& path,
                                OutputPlace& place) {
    Result<QByteArray> bytes = bytesOf(file);
    if (!bytes)
        return bytes;
    const StageTimes::Timer timer(Stage::Write);
    if (const Result<Done> made = place.makeFolder(deletingLastPathComponent(path)); !made)
        return made.error();
    if (const Result<Done> written = place.write(path, *bytes); !written)
        return written.error();
    return bytes;
}

/// Writes `files` with the bytes that `bytesOf` makes.
void writeFiles(const QString& layout, const std::vector<LayoutFile>& files, const QString& out,
                const Bytes& bytesOf, GenerationObserver& observer, OutputPlace& place) {
    for (const LayoutFile& file : files) {
        const QString path = appendingPathComponent(out, file.path);
        const bool isInProject = !out.isEmpty();
        if (isInProject && isOthers(file, path))
            continue;
        const Result<Done> checked = isInProject ? checkEnding(file, path) : Done{};
        const Result<QByteArray> bytes = checked ? writtenBytes(bytesOf, file, path, place) : checked.error();
        if (!bytes) {
            observer.failed(path, bytes.error());
            continue;
        }
        QSize largest(0, 0);
        for (const QSize& size : sizesOf(file))
            largest = largest.expandedTo(size);
        observer.fileWritten({layout, path, largest, bytes->size()});
    }
}

} // namespace

std::vector<LayoutFile> LayoutWriter::writtenFiles(const Layout& layout, const LayoutPictures& pictures) {
    std::vector<LayoutFile> files;
    std::ranges::copy_if(layout.files, std::back_inserter(files), [&](const LayoutFile& file) {
        if (file.format == Format::Svg)
            return !pictures.document.isEmpty();
        return !file.isOnlyIfGiven || pictures.has(file.picture);
    });
    return files;
}

std::vector<QSizeF> LayoutWriter::renders(const std::vector<LayoutFile>& files) {
    std::vector<QSizeF> sizes;
    for (const LayoutFile& file : files) {
        for (const QSize& size : sizesOf(file)) {
            const int inner = LayoutRenderer::shapeSide(file, size);
            sizes.emplace_back(inner, inner);
        }
    }
    return sizes;
}

void LayoutWriter::write(const Layout& layout, const LayoutInput& input, GenerationObserver& observer,
                         OutputPlace& place) {
    const std::vector<LayoutFile> files = writtenFiles(layout, input.pictures);
    Encoding encoding(input, layout, files);
    writeFiles(
        layout.name, files, input.out, [&](const LayoutFile& file) { return encoding.bytes(file); }, observer,
        place);
}

void LayoutWriter::list(const Layout& layout, const LayoutInput& input, GenerationObserver& observer,
                        OutputPlace& place) {
    writeFiles(
        layout.name, writtenFiles(layout, input.pictures), input.out,
        [](const LayoutFile&) { return QByteArray(); }, observer, place);
}

std::vector<LayoutNote> LayoutWriter::notes(const Layout& layout, const QString& out) {
    std::vector<LayoutNote> lacking;
    if (out.isEmpty())
        return lacking;
    for (const LayoutNote& note : layout.notes) {
        const Result<QByteArray> text = RegularFile::read(
            PathBytes::encoded(appendingPathComponent(out, note.file)).toStdString(), mostTextBytes);
        if (!text)
            continue;
        const QString there = QString::fromUtf8(*text);
        const bool hasLine = note.pattern.isEmpty() ? there.contains(note.line)
                                                    : there.contains(QRegularExpression(note.pattern));
        if (!hasLine)
            lacking.push_back(note);
    }
    return lacking;
}
