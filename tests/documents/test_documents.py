"""Checks the links, pictures and lines of the documents, and that each one with commands is tried:
test_documents.py TOBRIMAX_CLI PROJECT DOCUMENTS TESTS…
DOCUMENTS are those with a test of their commands, with semicolons between."""

import pathlib
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

from PIL import Image

from documents import Document, documents

PROGRAM = PROJECT = TRIED = ""


class Documents(unittest.TestCase):
    def setUp(self):
        project = pathlib.Path(PROJECT)
        self.documents = documents(project) + [Document(project / name) for name in ("CONTRIBUTING.md", "CHANGELOG.md")]

    def targets(self):
        for document in self.documents:
            for link in document.links():
                if not link.startswith(("https://", "http://", "mailto:")):
                    path, _, fragment = link.partition("#")
                    yield document, link, document.path.parent / path if path else document.path, fragment

    def test_every_link_leads_somewhere(self):
        for document, link, path, fragment in self.targets():
            with self.subTest(f"{document.path.name}: {link}"):
                self.assertTrue(path.exists())
                if fragment:
                    self.assertIn(fragment, Document(path).anchors)

    def test_every_picture_can_be_shown(self):
        pictures = [path for _, _, path, _ in self.targets() if path.suffix in (".png", ".svg")]
        self.assertGreater(len(pictures), 0)
        for path in pictures:
            with self.subTest(path.name):
                if path.suffix == ".svg":
                    self.assertTrue(xml.etree.ElementTree.parse(path).getroot().tag.endswith("svg"))
                else:
                    with Image.open(path) as picture:
                        picture.load()

    def test_every_document_with_commands_is_tried(self):
        with_commands = {document.path.name for document in documents(PROJECT)
                         if any(block.language in ("sh", "console") for block in document.blocks)}
        self.assertEqual(with_commands, set(TRIED.split(";")))

    def test_prose_fits_into_120_columns(self):
        for document in documents(PROJECT):
            for line in document.prose.splitlines():
                # A table has no other form.
                if not line.startswith("|"):
                    with self.subTest(document.path.name):
                        self.assertLessEqual(len(line), 120, line)

    def test_the_examples_of_layouts_make_up_a_layout(self):
        blocks = [block.text for block in Document(pathlib.Path(PROJECT) / "docs" / "layouts.md").blocks
                  if block.language == "toml"]
        self.assertGreater(len(blocks), 1)
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "all.toml"
            path.write_text("\n".join(blocks), encoding="utf-8")
            done = subprocess.run([PROGRAM, "layouts", path], capture_output=True, text=True, check=False)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertIn("icons/face.png", done.stdout)


if __name__ == "__main__":
    PROGRAM, PROJECT, TRIED = sys.argv[1:4]
    unittest.main(argv=sys.argv[:1] + sys.argv[4:])
