"""Makes the packages and checks them: test_packages.py PREFIX CPACK CONFIGURATION VERSION TESTS…"""

import pathlib
import re
import subprocess
import sys
import tarfile
import tempfile
import unittest

PREFIX = CPACK = CONFIGURATION = VERSION = ""


def run(*command):
    done = subprocess.run(command, capture_output=True, text=True)
    if done.returncode != 0:
        raise AssertionError(f"{command}: {done.stdout}{done.stderr}")
    return done.stdout


def names_of_files(folder):
    return {str(path.relative_to(folder)) for path in pathlib.Path(folder).rglob("*") if not path.is_dir()}


class Packages(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)

    def package(self, kind, pattern):
        run(CPACK, "--config", CONFIGURATION, "-G", kind, "-B", self.folder)
        (package,) = self.folder.glob(pattern)
        return package

    def test_the_tar_archive_is_an_installation_in_one_folder(self):
        package = self.package("TGZ", "*.tar.gz")
        self.assertRegex(package.name, rf"^tobrimax-{re.escape(VERSION)}-\w+-\w+\.tar\.gz$")
        with tarfile.open(package) as archive:
            archive.extractall(self.folder / "unpacked")
        folder = self.folder / "unpacked" / package.name.removesuffix(".tar.gz")
        self.assertEqual(names_of_files(folder), names_of_files(PREFIX))
        self.assertEqual(run(folder / "bin/tobrimax-cli", "--version"), f"tobrimax-cli {VERSION}\n")

    def test_the_debian_package_is_an_installation_below_usr(self):
        package = self.package("DEB", "*.deb")
        architecture = run("dpkg", "--print-architecture").strip()
        self.assertEqual(package.name, f"tobrimax_{VERSION}_{architecture}.deb")
        fields = dict(re.findall(r"^([\w-]+): (.*)$", run("dpkg-deb", "--field", package), re.MULTILINE))
        self.assertEqual((fields["Package"], fields["Version"], fields["Section"], fields["Priority"]),
                         ("tobrimax", VERSION, "graphics", "optional"))
        needed = {re.sub(r" .*", "", each) for each in fields["Depends"].split(", ")}
        # The programs load the first one while they run. They are linked with the others.
        self.assertLessEqual({"qt6-image-formats-plugins", "librsvg2-2", "libseccomp2", "libqt6widgets6"}, needed)

        unpacked = self.folder / "unpacked"
        run("dpkg-deb", "--extract", package, unpacked)
        documents = "usr/share/doc/tobrimax"
        installed = {f"usr/{name}" for name in names_of_files(PREFIX)}
        # Below /usr these two have other names on Debian.
        installed ^= {"usr/share/man/man1/tobrimax-cli.1", "usr/share/man/man1/tobrimax-cli.1.gz",
                      "usr/share/zsh/site-functions/_tobrimax-cli", "usr/share/zsh/vendor-completions/_tobrimax-cli"}
        self.assertEqual(names_of_files(unpacked), installed | {f"{documents}/changelog.gz"})
        for line in run("dpkg-deb", "--contents", package).splitlines():
            mode, owner = line.split()[:2]
            self.assertEqual(owner, "root/root", line)
            self.assertIn(mode, ("drwxr-xr-x", "-rwxr-xr-x", "-rw-r--r--"), line)

        changes = run("gzip", "-dc", unpacked / documents / "changelog.gz")
        (self.folder / "changelog").write_text(changes)
        said = run("dpkg-parsechangelog", "--all", "-l", self.folder / "changelog")
        self.assertEqual(re.findall(r"^ tobrimax \((.*)\)", said, re.MULTILINE),
                         re.findall(r"^## \[(.*)\]", (unpacked / documents / "CHANGELOG.md").read_text(), re.MULTILINE))
        self.assertEqual(changes.count("\n  * "), (unpacked / documents / "CHANGELOG.md").read_text().count("\n- "))
        self.assertEqual(run("dpkg-parsechangelog", "-S", "Version", "-l", self.folder / "changelog").strip(), VERSION)


if __name__ == "__main__":
    PREFIX, CPACK, CONFIGURATION, VERSION = sys.argv[1:5]
    del sys.argv[1:5]
    unittest.main()
