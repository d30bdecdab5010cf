#include "layouts/LayoutSet.h"

#include "layouts/LayoutCatalogue.h"
#include "layouts/LayoutVariables.h"
#include "layouts/LayoutWriter.h"

#include <QMap>

#include <algorithm>
#include <iterator>

Result<LayoutSet> LayoutSet::load(const QStringList& names, const QString& out, const QString& name) {
    LayoutSet set;
    QMap<QString, QString> writers;
    for (const QString& wanted : names) {
        Result<Layout> layout = LayoutCatalogue::load(wanted);
        if (layout)
            layout = withVariables(std::move(*layout), out, name);
        if (!layout)
            return layout.error().code == ErrorCode::NotFound
                       ? layout.error()
                       : about(QStringLiteral("layout \"%1\"").arg(wanted), layout.error());
        for (const LayoutFile& file : layout->files) {
            if (writers.contains(file.path))
                return Error{ErrorCode::Malformed,
                             QStringLiteral("the layouts \"%1\" and \"%2\" both write %3")
                                 .arg(writers.value(file.path), layout->name, file.path)};
            writers.insert(file.path, layout->name);
        }
        set.m_layouts.push_back(std::move(*layout));
    }
    return set;
}

std::vector<QSizeF> LayoutSet::renders(LayoutPicture picture, const std::set<LayoutPicture>& given) const {
    std::vector<LayoutFile> files;
    for (const Layout& layout : m_layouts) {
        std::ranges::copy_if(layout.files, std::back_inserter(files), [&](const LayoutFile& file) {
            const bool isWritten = !file.isOnlyIfGiven || given.contains(file.picture);
            return isWritten && file.picture != LayoutPicture::None &&
                   LayoutPictures::drawnFor(file.picture, given) == picture;
        });
    }
    return LayoutWriter::renders(files);
}

std::vector<QSize> LayoutSet::sizes() const {
    std::vector<QSize> sizes;
    for (const Layout& layout : m_layouts) {
        for (const LayoutFile& file : layout.files)
            sizes.insert(sizes.end(), file.sizes.begin(), file.sizes.end());
    }
    return sizes;
}

std::vector<LayoutFile> LayoutSet::writtenFiles(const LayoutPictures& pictures) const {
    std::vector<LayoutFile> files;
    for (const Layout& layout : m_layouts)
        std::ranges::move(LayoutWriter::writtenFiles(layout, pictures), std::back_inserter(files));
    return files;
}

std::vector<LayoutNote> LayoutSet::notes(const QString& out) const {
    std::vector<LayoutNote> notes;
    for (const Layout& layout : m_layouts)
        std::ranges::move(LayoutWriter::notes(layout, out), std::back_inserter(notes));
    return notes;
}
