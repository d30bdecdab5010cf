#include "project/proof/ProofPage.h"

#include "base/ShortMemory.h"

#include <QFile>
#include <QHash>

#include <algorithm>

namespace {

constexpr char styleFile[] = ":/resources/proof.css";
/// Views that are wider than this scroll on a phone, and can be reached from the keyboard there.
constexpr int phoneWidth = 280;
/// Where a view is wider than this, the grounds stand one below the other.
constexpr int halfWidth = 512;

QByteArray escaped(const QString& text) {
    return text.toHtmlEscaped().toUtf8();
}

/// A file's name, which may be broken behind its punctuation.
QByteArray breakable(const QString& name) {
    QByteArray html;
    for (const char32_t letter : name.toStdU32String()) {
        html += escaped(QString::fromUcs4(&letter, 1));
        if (letter == U'/' || letter == U'-' || letter == U'_')
            html += "<wbr>";
    }
    return html;
}

QByteArray number(int value) {
    return QByteArray::number(value);
}

QString sizeText(const QSize& size) {
    return QStringLiteral("%1 × %2").arg(size.width()).arg(size.height());
}

/// `width="…" height="…"`.
QByteArray sides(const QSize& size) {
    return "width=\"" + number(size.width()) + "\" height=\"" + number(size.height()) + '"';
}

QByteArray hexadecimal(const Color& color) {
    QByteArray text("#");
    for (const double part : {color.red, color.green, color.blue})
        text += QByteArray::number(qRound(part * 255), 16).rightJustified(2, '0');
    return text;
}

/// The lines of an icon's shapes and safe zone, in its own pixels.
QByteArray guides(const ProofIcon& icon, const ProofView& view) {
    const QRectF whole(view.part);
    QByteArray shapes;
    const auto ellipse = [](const QRectF& rect) {
        return "cx=\"" + QByteArray::number(rect.center().x()) + "\" cy=\"" +
               QByteArray::number(rect.center().y()) + "\" rx=\"" + QByteArray::number(rect.width() / 2) +
               "\" ry=\"" + QByteArray::number(rect.height() / 2) + '"';
    };
    std::vector<QByteArray> elements;
    if (icon.safePart > 0)
        elements.push_back("<ellipse class=\"ring\" " + ellipse(ProofShapes::ring(whole, icon.safePart)) +
                           "/>");
    if (view.kind == ProofView::Kind::File) {
        for (const ProofCut cut : icon.cuts) {
            const QPainterPath path =
                ProofShapes::path(cut, ProofShapes::ring(whole, icon.cutPart).adjusted(0.5, 0.5, -0.5, -0.5));
            QByteArray points;
            for (const QPointF& point : path.toFillPolygon())
                points +=
                    QByteArray::number(point.x(), 'f', 1) + ',' + QByteArray::number(point.y(), 'f', 1) + ' ';
            elements.push_back("<polygon points=\"" + points.trimmed() + "\"/>");
        }
    }
    for (const char* layer : {"halo", "line"}) {
        shapes += QByteArray("<g class=\"") + layer + "\">";
        for (const QByteArray& element : elements)
            shapes += element;
        shapes += "</g>";
    }
    return shapes;
}

/// Writes the page from its top to its end.
class Page {
  public:
    QByteArray made(const ProofSheet& sheet, const QByteArray& style) {
        begin(sheet, style);
        definePictures(sheet);
        m_page += "<main>\n";
        int group = 0;
        for (const ProofGroup& one : sheet.groups)
            add(one, ++group);
        m_page += "</main>\n";
        end(sheet);
        return std::move(m_page);
    }

  private:
    void begin(const ProofSheet& sheet, const QByteArray& style) {
        QByteArray cuts;
        for (const ProofCut cut :
             {ProofCut::Squircle, ProofCut::Circle, ProofCut::RoundedSquare, ProofCut::Teardrop})
            cuts += ".cut-" + number(static_cast<int>(cut)) +
                    " { clip-path: " + ProofShapes::css(cut).toLatin1() + "; }\n";
        m_page += "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                  "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
                  "<meta name=\"color-scheme\" content=\"light dark\">\n"
                  "<meta name=\"generator\" content=\"Tobrimax\">\n<title>" +
                  escaped(sheet.title) + " – icon proof</title>\n<style>\n" + style + cuts +
                  "</style>\n</head>\n<body>\n<header>\n<p class=\"kind\">Icon proof</p>\n<h1>" +
                  escaped(sheet.title) + "</h1>\n<p class=\"facts\">" + escaped(sheet.facts()) + "</p>\n";
        if (sheet.groups.size() > 1) {
            m_page += "<nav aria-label=\"Contents\"><ul>\n";
            int group = 0;
            for (const ProofGroup& one : sheet.groups)
                m_page +=
                    "<li><a href=\"#group-" + number(++group) + "\">" + escaped(one.title) + "</a></li>\n";
            m_page += "</ul></nav>\n";
        }
        m_page += "</header>\n";
    }

    /// Every picture once; equal ones have one name.
    void definePictures(const ProofSheet& sheet) {
        m_page += "<svg class=\"pictures\" width=\"0\" height=\"0\" aria-hidden=\"true\" "
                  "focusable=\"false\"><defs>\n";
        for (const ProofGroup& group : sheet.groups) {
            for (const ProofPart& part : group.parts) {
                for (const ProofIcon& icon : part.icons)
                    define(icon.picture);
            }
        }
        m_page += "</defs></svg>\n";
    }

    void define(const ProofPicture& picture) {
        if (m_names.contains(picture.bytes))
            return;
        const QByteArray name = "picture-" + number(static_cast<int>(m_names.size()) + 1);
        m_names.insert(picture.bytes, name);
        m_page += "<image id=\"" + name + "\" " + sides(picture.size()) + " href=\"data:image/" +
                  (picture.isDrawing ? "svg+xml" : "png") + ";base64," + picture.bytes.toBase64() + "\"/>\n";
    }

    void add(const ProofGroup& group, int index) {
        const QByteArray id = "group-" + number(index);
        m_page += "<section aria-labelledby=\"" + id + "\">\n<h2 id=\"" + id + "\">" + escaped(group.title) +
                  "</h2>\n";
        for (const ProofPart& part : group.parts) {
            if (!part.title.isEmpty())
                m_page += "<h3 class=\"part\">" + escaped(part.title) + "</h3>\n";
            m_page += "<ul class=\"icons\">\n";
            for (const ProofIcon& icon : part.icons)
                add(icon, part.title.isEmpty() ? "h3" : "h4");
            m_page += "</ul>\n";
        }
        m_page += "</section>\n";
    }

    void add(const ProofIcon& icon, const QByteArray& heading) {
        const std::vector<ProofView> views = ProofViews::of(icon);
        const int widest =
            std::ranges::max(views, {}, [](const ProofView& view) { return view.size.width(); }).size.width();
        m_page += widest > halfWidth ? "<li class=\"icon wide\">\n" : "<li class=\"icon\">\n";
        m_page += "<div class=\"label\"><" + heading + " class=\"name\">" + breakable(icon.name) + "</" +
                  heading + "><p class=\"size\">" + escaped(sizeText(icon.picture.size())) + " px</p>";
        if (!icon.detail.isEmpty())
            m_page += "<p class=\"detail\">" + breakable(icon.detail) + "</p>";
        m_page += "</div>\n";
        for (const char* ground : {"light", "dark"}) {
            m_page += QByteArray("<div class=\"ground ") + ground + R"(" role="group" aria-label=")" +
                      escaped(icon.name) + " on " + ground + '"' +
                      (widest > phoneWidth ? R"( tabindex="0")" : "") + ">\n";
            for (const ProofView& view : views)
                add(icon, view);
            m_page += "</div>\n";
        }
        m_page += "</li>\n";
    }

    void add(const ProofIcon& icon, const ProofView& view) {
        QString description = QStringLiteral("%1, %2 pixels").arg(icon.name, sizeText(icon.picture.size()));
        if (!view.caption.isEmpty())
            description += QStringLiteral(", ") + view.caption;
        QByteArray shape("picture");
        if (view.kind == ProofView::Kind::Enlarged)
            shape += " enlarged";
        if (view.kind == ProofView::Kind::Cut)
            shape += " cut-" + number(static_cast<int>(view.cut));
        const QRect& part = view.part;
        m_page += "<figure><svg class=\"" + shape + "\" " + sides(view.size) + R"( viewBox=")" +
                  number(part.x()) + ' ' + number(part.y()) + ' ' + number(part.width()) + ' ' +
                  number(part.height()) + R"(" role="img" aria-label=")" + escaped(description) + "\">";
        if (view.kind == ProofView::Kind::Cut && icon.ground)
            m_page += R"(<rect width="100%" height="100%" x=")" + number(part.x()) + "\" y=\"" +
                      number(part.y()) + "\" fill=\"" + hexadecimal(*icon.ground) + "\"/>";
        m_page += "<use href=\"#" + m_names.value(icon.picture.bytes) + "\"/>";
        if (view.hasGuides)
            m_page += guides(icon, view);
        m_page += "</svg>";
        if (!view.caption.isEmpty())
            m_page += "<figcaption>" + escaped(view.caption) + "</figcaption>";
        m_page += "</figure>\n";
    }

    void end(const ProofSheet& sheet) {
        m_page += "<footer>\n";
        for (const QString& note : sheet.notes)
            m_page += "<p class=\"note\">" + escaped(note) + "</p>\n";
        for (const QString& remark : sheet.legend())
            m_page += "<p>" + escaped(remark) + "</p>\n";
        m_page += "</footer>\n</body>\n</html>\n";
    }

    QByteArray m_page;
    QHash<QByteArray, QByteArray> m_names;
};

} // namespace

Result<QByteArray> proofPage(const ProofSheet& sheet) {
    QFile style{QLatin1String(styleFile)};
    if (!style.open(QIODevice::ReadOnly))
        return Error{ErrorCode::NotFound, QStringLiteral("the style of the page is missing in the program")};
    const QByteArray text = style.readAll();
    return unlessMemoryIsShort([&] { return Page().made(sheet, text); });
}
