import base64
import gzip
import io
import subprocess

from case import BLUE, CLEAR, RED, ended, header, packed_zeros, chunk, refused, shown, SIGNATURE, Image

XLINK = "xmlns:xlink='http://www.w3.org/1999/xlink'"
RED_PAGE = "<rect width='100' height='100' fill='#f00'/>"
BLUE_PAGE = "<rect width='100' height='100' fill='#00f'/>"
DOT = "<rect width='1' height='1'/>"


def svg(content, attributes="width='100' height='100'", before=""):
    return f"{before}<svg xmlns='http://www.w3.org/2000/svg' {XLINK} {attributes}>{content}</svg>".encode()


def librsvg_version():
    """The one that the program was built with."""
    told = subprocess.run(["pkg-config", "--modversion", "librsvg-2.0"], stdout=subprocess.PIPE, text=True, check=True).stdout
    return tuple(map(int, told.split(".")))


def entities():
    root = "<rect width='100' height='100' fill='#f00'/><text>&e;</text>"
    for name, declaration in {"file": "<!ENTITY e SYSTEM 'file:///etc/passwd'>", "relative": "<!ENTITY e SYSTEM 'plain.svg'>",
                              "http": "<!ENTITY e SYSTEM 'http://localhost:9/e'>",
                              "public": "<!ENTITY e PUBLIC '-//e' 'http://localhost:9/e'>",
                              "parameter": "<!ENTITY % e SYSTEM 'file:///etc/passwd'> %e;",
                              "device": "<!ENTITY e SYSTEM 'file:///dev/zero'>"}.items():
        yield refused(f"entity-{name}.svg", svg(root, before=f"<!DOCTYPE svg [{declaration}]>"), "declares an external entity")
    laughs = "<!ENTITY e0 'ha'>" + "".join(f"<!ENTITY e{i} '{f'&e{i - 1};' * 10}'>" for i in range(1, 10))
    yield ended("billion-laughs.svg", svg("<text>&e9;</text>", before=f"<!DOCTYPE svg [{laughs}]>"))
    yield ended("billion-attributes.svg", svg("<g id='&e9;'/>", before=f"<!DOCTYPE svg [{laughs}]>"))
    yield ended("quadratic.svg", svg("<text>" + "&e;" * 20000 + "</text>", before=f"<!DOCTYPE svg [<!ENTITY e '{'a' * 50000}'>]>"))
    yield ended("million-declarations.svg", svg(RED_PAGE, before=f"<!DOCTYPE svg [{'<!ENTITY ' * 1000000}]>"))
    yield ended("entity-of-itself.svg", svg("<text>&e;</text>", before="<!DOCTYPE svg [<!ENTITY e '&e;'>]>"))
    yield ended("default-attributes.svg", svg(DOT, before="<!DOCTYPE svg [<!ATTLIST rect fill CDATA 'url(#p)'>]>"))
    yield shown("document-type.svg", svg(RED_PAGE, before="<!DOCTYPE svg PUBLIC '-//W3C//DTD SVG 1.1//EN' 'http://localhost:9/d'>"),
                RED)
    # What editors write.
    names = "<!DOCTYPE svg [<!ENTITY ns_svg 'http://www.w3.org/2000/svg'><!ENTITY colour '#f00'>]>"
    yield shown("entity-namespace.svg", (names + "<svg xmlns='&ns_svg;' width='100' height='100'>"
                                         "<rect width='100' height='100' fill='&colour;'/></svg>").encode(), RED)
    yield shown("declared-attributes.svg", svg(RED_PAGE, before="<!DOCTYPE svg [<!ATTLIST svg xmlns:xlink CDATA #FIXED "
                                               "'http://www.w3.org/1999/xlink'>]>"), RED)


def tenfold(levels, wrap, refer):
    parts = [wrap("a0", DOT)] + [wrap(f"a{i}", refer(f"a{i - 1}") * 10) for i in range(1, levels)]
    return "".join(parts) + refer(f"a{levels - 1}")


def wrapped(tag):
    return lambda name, content: f"<{tag} id='{name}' width='1' height='1'>{content}</{tag}>"


def painted(attribute):
    return lambda name: f"<path d='M0 0H9V9' {attribute}='url(#{name})'/>"


def bombs():
    use = "<use href='#{}'/>".format
    for levels in (7, 10, 30):
        yield ended(f"use-{levels}.svg", svg("<defs>" + tenfold(levels, wrapped("g"), use) + "</defs>" + use(f"a{levels - 1}")))
    yield ended("use-xlink.svg", svg(tenfold(10, wrapped("symbol"), "<use xlink:href='#{}'/>".format)))
    for tag, attribute in {"pattern": "fill", "marker": "marker-mid", "mask": "mask", "clipPath": "clip-path"}.items():
        yield ended(f"{tag}-bomb.svg", svg(tenfold(9, wrapped(tag), painted(attribute))))
    yield ended("pattern-strokes.svg", svg(tenfold(9, wrapped("pattern"), painted("stroke"))))
    sheet = "".join(f".a{i}{{fill:u\\72l(#a{i})}}" for i in range(9))
    yield ended("pattern-by-style-sheet.svg", svg(f"<style>{sheet}</style>" + tenfold(
        9, wrapped("pattern"), lambda name: f"<path d='M0 0H9V9' class='{name}'/>")))
    yield ended("filter-bomb.svg", svg("".join(
        f"<filter id='f{i}'><feImage href='#g{i}'/></filter><g id='g{i}'>" +
        (f"<rect width='9' height='9' filter='url(#f{i - 1})'/>" * 10 if i else DOT) + "</g>" for i in range(9))))
    yield ended("marker-at-many-points.svg", svg(
        f"<marker id='m'>{DOT * 1000}</marker><path marker-mid='url(#m)' d='M0 0{'l1 1' * 50000}'/>"))
    yield ended("use-of-itself.svg", svg("<use id='a' href='#a'/>"))
    yield ended("use-of-its-parent.svg", svg("<g id='a'><use href='#a'/></g>"))
    yield ended("use-in-a-circle.svg", svg("".join(
        f"<g id='a{i}'>" + "".join(f"<use href='#a{j}'/>" for j in range(20)) + "</g>" for i in range(20))))
    yield ended("patterns-in-a-circle.svg", svg("<pattern id='p'><rect fill='url(#q)'/></pattern><pattern id='q'>"
                                                  "<rect fill='url(#p)'/></pattern><rect fill='url(#p)'/>"))
    yield ended("chain-of-uses.svg", svg("<defs>" + DOT.replace("<rect", "<rect id='a0'") + "".join(
        f"<use id='a{i}' href='#a{i - 1}'/>" for i in range(1, 5000)) + "</defs><use href='#a4999'/>"))
    yield refused("50000-groups.svg", svg("<g>" * 50000 + RED_PAGE + "</g>" * 50000), "nested deeper than")
    yield ended("200-opacities.svg", svg("<g opacity='.9'>" * 200 + RED_PAGE + "</g>" * 200))
    yield ended("million-elements.svg", svg(DOT * 1000000))
    yield ended("style-rules.svg", svg("<style>" + ".a{fill:red}" * 20000 + "</style>" + "<g class='a'/>" * 20000))
    yield ended("long-text.svg", svg(f"<text>{'a' * 1000000}</text>"))
    effect = "<filter id='f'>{}</filter><rect width='100' height='100' filter='url(#f)'/>".format
    yield ended("octaves.svg", svg(effect("<feTurbulence baseFrequency='.1' numOctaves='1000000000'/>")))
    yield ended("kernel.svg", svg(effect(f"<feConvolveMatrix order='50' kernelMatrix='{'1 ' * 2500}'/>")))
    yield ended("dashes.svg", svg("<path d='M-1e6 5L1e6 5' stroke='#000' stroke-dasharray='.0001'/>"))
    yield refused("unpacks-to-200-megabytes.svgz", gzip_of_spaces(), "larger than 64 MiB")
    yield refused("svgz-in-svgz.svgz", gzip.compress(gzip.compress(svg(RED_PAGE))), "SVG picture is truncated or damaged")
    yield refused("svgz-cut.svgz", gzip.compress(svg(RED_PAGE))[:-9], "can't be unpacked")


def gzip_of_spaces():
    stream = io.BytesIO()
    with gzip.GzipFile(fileobj=stream, mode="wb", mtime=0) as file:
        for _ in range(200):
            file.write(b" " * (1 << 20))
    return stream.getvalue()


def links():
    """Links to anything outside of the document are not followed. The picture is drawn without them."""
    yield ended("million-links.svg", svg("".join(f"<image href='{i}.png'/>" for i in range(1000000))))
    yield shown("plain.svg", svg(RED_PAGE), RED)
    for name, link in {"file": "file:///etc/passwd", "http": "http://localhost:9/a.png", "https": "https://localhost:9/a.svg",
                       "ftp": "ftp://localhost:9/a.png", "relative": "plain.svg", "parent": "../../../etc/passwd",
                       "itself": "link-to-itself.svg", "absolute": "/etc/passwd", "device": "file:///dev/zero",
                       "fifo": "a-pipe.png", "host": "//localhost:9/a", "resource": "resource:///org/gtk/a.png",
                       "smb": "smb://localhost/a.png"}.items():
        content = BLUE_PAGE + "".join(part.replace("LINK", link) for part in (
            "<image width='100' height='100' href='LINK'/>", "<image width='100' height='100' xlink:href='LINK'/>",
            "<use href='LINK#a'/>", "<style>@import url('LINK'); @import 'LINK';</style>",
            "<style>@font-face{font-family:a;src:url('LINK')}</style><text font-family='a'> </text>",
            "<rect width='100' height='100' fill='url(LINK#a) none'/>",
            "<rect width='1' height='1' fill='none' filter='url(LINK#a)' mask='url(LINK#m)' cursor='url(LINK)'/>",
            "<filter id='f'><feImage href='LINK'/></filter><rect width='0' height='0' filter='url(#f)'/>",
            "<xi:include xmlns:xi='http://www.w3.org/2001/XInclude' href='LINK'/>",
            "<text><tref href='LINK#a'/></text><script href='LINK'/><a href='LINK'/>"))
        yield shown(f"link-to-{name}.svg", svg(content, before=f"<?xml-stylesheet href='{link}'?>"), BLUE)
    yield shown("script.svg", svg(BLUE_PAGE + "<script>while (true);</script>", "width='100' height='100' onload='alert(1)'"), BLUE)
    yield shown("foreign-object.svg", svg(BLUE_PAGE + "<foreignObject width='9' height='9'><body xmlns='http://www.w3.org/1999/xhtml'>"
                                          "<iframe src='file:///etc/passwd'/></body></foreignObject>"), BLUE)
    yield shown("animation.svg", svg(BLUE_PAGE.replace("/>", "><animate attributeName='fill' to='red' dur='1s'/></rect>")), BLUE)


def embedded():
    def image(data, kind="image/png"):
        link = f"data:{kind};base64,{base64.b64encode(data).decode()}"
        return svg(f"<image width='100' height='100' preserveAspectRatio='none' href='{link}'/>")
    stream = io.BytesIO()
    Image.new("RGB", (8, 8), RED[:3]).save(stream, "PNG")
    yield shown("embedded.svg", image(stream.getvalue()), RED)
    bomb = SIGNATURE + header(30000, 30000, 1, 0) + chunk(b"IDAT", packed_zeros(30000 * 3751)) + chunk(b"IEND", b"")
    yield ended("embedded-bomb.svg", image(bomb))
    # A chunk before the header that looks like a small one.
    hidden = bomb[:8] + chunk(b"prVt", bytes((0, 0, 0, 8, 0, 0, 0, 8))) + bomb[8:]
    yield ended("embedded-hidden-size.svg", image(hidden))
    yield ended("embedded-cut.svg", image(stream.getvalue()[:-20]))
    yield ended("embedded-document.svg", image(svg(RED_PAGE), "image/svg+xml"))
    inner = base64.b64encode(svg("<g id='a'>" + RED_PAGE + "</g>")).decode()
    yield ended("embedded-use.svg", svg(f"<use href='data:image/svg+xml;base64,{inner}#a'/>"))
    yield ended("embedded-style-sheet.svg", svg(RED_PAGE, before="<?xml-stylesheet href='data:text/css,rect{fill:blue}'?>"))
    yield ended("embedded-import.svg", svg("<style>@import url(data:text/css,rect{fill:blue});</style>" + RED_PAGE))


def sizes():
    empty = "its size is empty"
    for name, attributes in {"0": "width='0' height='0'", "view-box-0": "viewBox='0 0 0 0'",
                             "view-box-nan": "viewBox='nan nan nan nan'", "tiny": "width='1e-6' height='1e-6'"}.items():
        yield refused(f"size-{name}.svg", svg("" if name.startswith("view") else RED_PAGE, attributes), empty)
    # An invalid size counts as no size: the document is as large as its drawing.
    for name, attributes in {"nan": "width='nan' height='nan'", "negative": "width='-5' height='-5'",
                             "huge": "width='1e9' height='1e9' viewBox='0 0 100 100'",
                             "small": "width='.01' height='.01' viewBox='0 0 100 100'"}.items():
        yield shown(f"size-{name}.svg", svg(RED_PAGE, attributes), RED)
    yield shown("view-box-huge.svg", svg("<rect x='-1e9' y='-1e9' width='2e9' height='2e9' fill='#f00'/>",
                                         "viewBox='-1e9 -1e9 2e9 2e9'"), RED)
    # From version 2.55.90 on librsvg passes over an invalid attribute. Before, it left its element out; here it is the root.
    yield shown("view-box-of-text.svg", svg(RED_PAGE, "width='100' height='100' viewBox='a b c d'"),
                RED if librsvg_version() >= (2, 55, 90) else CLEAR)
    yield shown("nothing.svg", svg(""), CLEAR)
    yield refused("not-closed.svg", svg(RED_PAGE)[:-6], "SVG picture is truncated or damaged")
    yield refused("html.svg", b"<html><body>svg</body></html>", "not a picture but an HTML page")
    yield refused("nul.svg", svg("\0" + RED_PAGE), "SVG picture is truncated or damaged")
    yield refused("no-utf-8.svg", svg(RED_PAGE) .replace(b"<rect", b"\xff\xfe<rect"), "SVG picture is truncated or damaged")
    yield ended("font-size.svg", svg(BLUE_PAGE + "<text y='500' font-size='1e9'>a</text>"))
    yield ended("scaled-text.svg", svg("<g transform='scale(1e9)'><text>a</text></g>"))
    yield ended("tiles-of-nothing.svg", svg("<filter id='f' width='0'><feFlood/><feTile/></filter>"
                                              "<rect width='9' height='9' filter='url(#f)'/>"))
    # Only the log tells that a font can't be loaded.
    yield shown("large-font.svg", svg(BLUE_PAGE + "<text y='5000000' font-size='700000'>a</text>"), BLUE)


def decoys():
    """Attributes of other namespaces, and values that a later one replaces: the library does not take them for its own."""
    foreign = "xmlns:f='http://localhost/f' width='100' height='100'"
    use = "<use href='#{}'/>".format
    for name in "f:id", "xml:id":
        marked = tenfold(9, lambda group, content, name=name: f"<rect {name}='{group}'/><g id='{group}'>{content}</g>", use)
        yield ended(f"decoy-{name.replace(':', '-')}.svg", svg(f"<defs>{marked}</defs>" + use("a8"), foreign))
    sheet = "<style>" + "".join(f".a{i}{{fill:url(#a{i})}}" for i in range(9)) + "</style>"
    for name in "class='b'", "fill='none'", "style='fill:none'", "d=''":
        yield ended(f"decoy-{name.partition('=')[0]}.svg", svg(sheet + tenfold(
            9, wrapped("pattern"), lambda pattern, name=name: f"<path d='M0 0H9V9' class='{pattern}' f:{name}/>"), foreign))
    yield ended("decoy-points.svg", svg(
        f"<marker id='m'>{DOT * 1000}</marker><path marker-mid='url(#m)' d='M0 0{'l1 1' * 50000}' points=''/>"))
    yield ended("decoy-sheet.svg", svg("<style><style/>" + ".a{fill:red}" * 20000 + "</style>" + "<g class='a'/>" * 20000))


def shapes():
    yield ended("circles.svg", svg("<circle r='1e9' fill-opacity='.01'/>" * 500))
    star = " ".join(f"{i * 7919 % 1000} {i * 104729 % 1000}" for i in range(100000))
    page = "viewBox='0 0 1000 1000' width='100' height='100'"
    yield ended("lines-filled.svg", svg(f"<path d='M{star}'/>", page))
    yield ended("lines-clipped.svg", svg(f"<clipPath id='c'><path d='M{star}'/></clipPath>"
                                         "<rect width='1000' height='1000' clip-path='url(#c)'/>", page))
    yield ended("lines-stroked.svg", svg(f"<path fill='none' stroke='#000' stroke-width='50' d='M{star} {star}'/>", page))
    yield ended("curves.svg", svg("<path stroke='#000' d='M0 0" + "C1e7 1e7 -1e7 1e7 9 9" * 20000 + "'/>"))
    yield ended("arcs.svg", svg("<path stroke='#000' d='M0 0" + "A1e9 1e9 0 1 1 9 9" * 20000 + "'/>"))
    effect = "<filter id='f' x='-9' y='-9' width='20' height='20'>{}</filter><rect width='100' height='100' filter='url(#f)'/>".format
    page = "viewBox='-1000 -1000 2000 2000' width='100' height='100'"
    yield ended("morphology.svg", svg(effect("<feMorphology operator='dilate' radius='500'/>"), page))
    yield ended("blurs.svg", svg(effect("<feGaussianBlur stdDeviation='300'/>" * 300), page))
    yield ended("displacement.svg", svg(effect("<feDisplacementMap scale='900' in2='SourceGraphic'/>" * 300), page))
    yield ended("convolutions.svg", svg(effect(f"<feConvolveMatrix order='9' kernelMatrix='{'1 ' * 81}'/>" * 100), page))
    inner, masks = "", ""
    for i in range(30):
        masks += f"<mask id='m{i}'>" + f"<rect width='100' height='100' fill='#fff' {inner}/>" * 2 + "</mask>"
        inner = f"mask='url(#m{i})'"
    yield ended("nested-masks.svg", svg(masks + f"<rect width='100' height='100' {inner}/>"))


def cases():
    for group in (entities, bombs, links, embedded, sizes, decoys, shapes):
        yield from group()
