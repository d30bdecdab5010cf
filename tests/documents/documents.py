"""What the documents hold: fenced blocks with their marks, headings, links and pictures.

A fence names its language: ```sh. Words after it are marks:
    not-run="why"   the commands can't be run by a test
    file="NAME"     the block is the content of a file, which later commands find
In a `console` block a line that begins with "$ " is a command, and what follows is all that it prints. A line with "…"
alone stands for any lines, within a line it stands for any text."""

import dataclasses
import pathlib
import re
import shlex

FENCE = re.compile(r"^(?P<indent> *)```(?P<info>.*)$")
HEADING = re.compile(r"^(#+) +(.*?) *$")
IMAGE_OR_LINK = re.compile(r"!?\[(?:[^\]\[]|\[[^\]]*\])*\]\(([^)\s]+)\)")
ATTRIBUTE = re.compile(r'(?:src|srcset|href)="([^"]+)"')


class Malformed(Exception):
    """A document that is not written as the tests read it."""


@dataclasses.dataclass
class Block:
    document: str
    line: int
    section: str
    language: str
    marks: dict
    text: str

    def __str__(self):
        return f"{self.document}:{self.line}"


def marks_of(words, where):
    marks = {}
    for word in words:
        name, equals, value = word.partition("=")
        if name not in ("not-run", "file") or not equals or not value:
            raise Malformed(f'{where}: a mark is not-run="why" or file="NAME", not {word}')
        marks[name] = value
    return marks


class Document:
    def __init__(self, path):
        self.path = pathlib.Path(path)
        self.blocks, self.anchors, prose = [], set(), []
        section, block = "", None
        for number, line in enumerate(self.path.read_text(encoding="utf-8").splitlines(), 1):
            fence = FENCE.match(line)
            if block is not None:
                if fence and not fence["info"]:
                    self.blocks.append(block)
                    block = None
                else:
                    block.text += line.removeprefix(indent) + "\n"
            elif fence:
                indent = fence["indent"]
                language, *words = shlex.split(fence["info"]) or [""]
                where = f"{self.path.name}:{number}"
                block = Block(self.path.name, number, section, language, marks_of(words, where), "")
            else:
                prose.append(line)
                if heading := HEADING.match(line):
                    section = heading[2]
                    self.anchors.add(anchor(section))
        if block is not None:
            raise Malformed(f"{block}: the block has no end")
        self.prose = "\n".join(prose)

    def links(self):
        """The targets of all links and pictures."""
        # What is code is no link.
        prose = re.sub(r"`[^`\n]*`", "", self.prose)
        return IMAGE_OR_LINK.findall(prose) + ATTRIBUTE.findall(prose)


def anchor(heading):
    """What a link to the heading has behind its "#"."""
    heading = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading).replace("`", "")
    return re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")


def documents(project):
    """README.md and docs/*.md."""
    project = pathlib.Path(project)
    return [Document(path) for path in [project / "README.md", *sorted((project / "docs").glob("*.md"))]]
