"""Compares the sentences that docs/guide.md explains with those in the sources, and with the system's:
test_sentences.py PROJECT"""

import os
import pathlib
import re
import sys
import unittest

from documents import Document

PROJECT = ""
ROOMS = ("base", "files", "imaging", "platform", "iconfamily", "generation", "layouts", "cli")
LITERAL = re.compile(r'"((?:[^"\\\n]|\\.)*)"')


def literals():
    """All strings of the sources as people read them. Strings side by side are one, and so are those joined by +."""
    for room in ROOMS:
        for path in (pathlib.Path(PROJECT) / room).rglob("*"):
            if path.suffix not in (".cpp", ".h"):
                continue
            text = path.read_text(encoding="utf-8")
            text = re.sub(r'"\s*\n\s*"', "", text)
            # One string after another, with a name or a call between them: "there is no colour '" + text + "'".
            text = re.sub(r'(?<!\\)" \+ [\w.]+(?:\([^()"]*\))? \+ "', "…", text)
            for literal in LITERAL.findall(text):
                yield re.sub(r"%\d", "…", literal.replace('\\"', '"'))


class Sentences(unittest.TestCase):
    def test_every_sentence_that_is_explained_is_one_of_the_programs(self):
        guide = Document(pathlib.Path(PROJECT) / "docs" / "guide.md")
        tables = guide.prose[guide.prose.index("## Troubleshooting"):]
        explained = re.findall(r"^\| `([^`]+)` \|", tables, flags=re.MULTILINE)
        self.assertGreater(len(explained), 40)
        own = list(literals())
        # Their beginning and end may be joined from elsewhere.
        parts = [literal.strip("…; ") for literal in own if " " in literal.strip("…; ")]
        system = [os.strerror(number) for number in range(1, 135)]
        for sentence in explained:
            with self.subTest(sentence):
                rest = sentence
                for part in sorted([part for part in parts + system if part and part in sentence], key=len, reverse=True):
                    rest = rest.replace(part, "")
                # What is left are names, and the glue of such parts.
                self.assertRegex(rest, r"\A[…; :'\"?]*\Z")


if __name__ == "__main__":
    PROJECT = sys.argv[1]
    unittest.main(argv=sys.argv[:1] + sys.argv[2:])
