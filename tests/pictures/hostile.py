"""Hostile pictures, each with its expected result.

GROUPS maps a name to a function that yields Case objects. As a program this makes all their files in a folder, among
them FIFOs and other special files. A JSON file there, expected.json, tells for each file whether it is shown;
null where both are right."""

import json
import pathlib
import sys

import hostile_bitmaps
import hostile_files
import hostile_ico
import hostile_jpeg
import hostile_png
import hostile_svg

GROUPS = {"png": hostile_png.cases, "jpeg": hostile_jpeg.cases, "bitmaps": hostile_bitmaps.cases,
          "ico": hostile_ico.cases, "svg": hostile_svg.cases, "files": hostile_files.cases}


def make(case, folder):
    path = pathlib.Path(folder) / case.name
    if callable(case.data):
        case.data(path)
    else:
        path.write_bytes(case.data)
    return path


def main():
    folder = pathlib.Path(sys.argv[1])
    expected = {}
    for name, cases in GROUPS.items():
        (folder / name).mkdir()
        for case in cases():
            key = f"{name}/{case.name}"
            assert key not in expected, key
            make(case, folder / name)
            expected[key] = None if case.may_be_shown else bool(case.colors)
    (folder / "expected.json").write_text(json.dumps(expected, indent=1))


if __name__ == "__main__":
    main()
