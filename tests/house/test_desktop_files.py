"""What desktops, software centres and distributions read of us, by their own validators, and that
all of it tells the same story."""
import configparser
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml
import zipfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
DESKTOP = ROOT / "resources/desktop"
ENTRY = DESKTOP / "com.tarnworks.Orlop.desktop"
METAINFO = DESKTOP / "com.tarnworks.Orlop.metainfo.xml"
MIME = DESKTOP / "com.tarnworks.Orlop.mime.xml"
# The vocabulary of MIME packages stands in the one that all others add to.
CATALOGUE = """<catalog xmlns="urn:oasis:names:tc:entity:xmlns:xml:catalog"><system
systemId="http://www.freedesktop.org/standards/dbus/1.0/introspect.dtd" uri="{}"/></catalog>"""
SHARED_MIME_INFO = Path("/usr/share/mime/packages/freedesktop.org.xml")


def read(path):
    return (ROOT / path).read_text(encoding="utf-8")


class ValidatorsTest(unittest.TestCase):
    def accept(self, *command, **options):
        """The tool has nothing to say, not even a hint."""
        result = subprocess.run([str(part) for part in command], capture_output=True, text=True,
                                check=False, **options)
        self.assertEqual((result.returncode, result.stdout + result.stderr), (0, ""))

    def test_desktop_entry(self):
        self.accept("desktop-file-validate", "--warn-kde", ENTRY)

    def test_metainfo(self):
        result = subprocess.run(["appstreamcli", "validate", "--no-net", "--no-color", METAINFO],
                                capture_output=True, text=True, check=False)
        self.assertEqual(result.returncode, 0, result.stdout)
        # Newer releases want another tag for the developer, of which older ones know nothing.
        self.assertNotRegex(result.stdout, r"(?m)^[EWI]:(?!.*: developer-).*$")

    def test_mime_package(self):
        vocabulary = re.search(r"<!DOCTYPE mime-info \[(.*?)\]>",
                               SHARED_MIME_INFO.read_text(encoding="utf-8"), re.S)[1]
        with tempfile.TemporaryDirectory() as folder:
            (Path(folder) / "mime-info.dtd").write_text(vocabulary, encoding="utf-8")
            self.accept("xmllint", "--noout", "--nonet", "--dtdvalid",
                        Path(folder) / "mime-info.dtd", MIME)
            packages = Path(folder) / "mime/packages"
            packages.mkdir(parents=True)
            (packages / "com.tarnworks.Orlop.xml").write_bytes(MIME.read_bytes())
            self.accept("update-mime-database", Path(folder) / "mime",
                        env=os.environ | {"XDG_DATA_HOME": folder})
            (Path(folder) / "some.obp").write_text("<plist/>", encoding="utf-8")
            told = subprocess.run(
                ["gio", "info", "-a", "standard::content-type", Path(folder) / "some.obp"],
                env=os.environ | {"XDG_DATA_HOME": folder, "GIO_USE_VFS": "local"},
                capture_output=True, text=True, check=True).stdout
            self.assertIn("application/x-orlop-request", told)

    def test_descriptions_for_the_bus(self):
        for description in (ROOT / "resources/dbus").glob("*.xml"):
            with self.subTest(description.name), tempfile.TemporaryDirectory() as folder:
                catalogue = Path(folder) / "catalogue.xml"
                catalogue.write_text(CATALOGUE.format(ROOT / "tests/house/introspect.dtd"),
                                     encoding="utf-8")
                self.accept("xmllint", "--noout", "--nonet", "--valid", description,
                            env=os.environ | {"XML_CATALOG_FILES": str(catalogue)})
                # It checks the signatures, too.
                self.accept("gdbus-codegen", "--interface-info-header", "--output",
                            Path(folder) / "header.h", description)

    @unittest.skipUnless(shutil.which("flatpak-builder"), "scripts/setup package installs it")
    def test_flatpak_manifest(self):
        with tempfile.TemporaryDirectory() as folder:
            result = subprocess.run(
                ["flatpak-builder", "--show-manifest",
                 ROOT / "packaging/flatpak/com.tarnworks.Orlop.yml"],
                cwd=folder, capture_output=True, text=True, check=True)
        manifest = json.loads(result.stdout)
        self.assertEqual(manifest["id"], "com.tarnworks.Orlop")
        self.assertFalse([argument for argument in manifest["finish-args"]
                          if re.match("--filesystem=(host|home)", argument)])
        for source in (source for module in manifest["modules"] for source in module["sources"]):
            self.assertTrue(source["type"] == "dir" or len(source["sha256"]) == 64, source)


class AgreementTest(unittest.TestCase):
    def setUp(self):
        self.entry = configparser.ConfigParser(interpolation=None)
        self.entry.optionxform = str
        self.entry.read_string(ENTRY.read_text(encoding="utf-8"))
        self.metainfo = xml.parse(METAINFO).getroot()

    def list_of(self, key):
        return [value for value in self.entry["Desktop Entry"][key].split(";") if value]

    def test_actions_are_known_to_the_program_and_translated(self):
        known = re.findall(r'QStringLiteral\("([a-z-]+)"\)', re.search(
            r"namespace actions \{(.*?)\}", read("src/app/lifecycle/command_line.h"), re.S)[1])
        self.assertEqual(sorted(self.list_of("Actions")), sorted(known))
        for action in known:
            group = self.entry[f"Desktop Action {action}"]
            self.assertEqual(group["Exec"], f"orlop --{action}")
            self.assertTrue(group["Name[de]"])

    def test_types_are_defined_where_they_are_claimed(self):
        name = "{http://www.freedesktop.org/standards/shared-mime-info}mime-type"
        defined = {element.get("type") for element in xml.parse(MIME).getroot().iter(name)}
        claimed = {kind for kind in self.list_of("MimeType")
                   if not kind.startswith("x-scheme-handler/")}
        self.assertEqual(claimed, defined)
        self.assertEqual(claimed, {element.text for element in self.metainfo.iter("mediatype")})

    def test_icons_are_ours_to_hand_out(self):
        icon = "{http://www.freedesktop.org/standards/shared-mime-info}icon"
        named = {element.get("name") for element in xml.parse(MIME).getroot().iter(icon)}
        named.add(self.entry["Desktop Entry"]["Icon"])
        installed = set(re.findall(r"install_icon\(\S+ \w+\s+([\w.-]+)\)",
                                   read("cmake/InstallIcons.cmake")))
        self.assertEqual(named, installed)
        for name in named:
            self.assertRegex(name, r"^com\.tarnworks\.Orlop(\.|$)", "sandboxes allow no other")

    def test_the_version_is_the_same_everywhere(self):
        version = re.search(r"project\(Orlop VERSION ([\d.]+)", read("CMakeLists.txt"))[1]
        for place, found in (
                ("metainfo", self.metainfo.find("releases/release").get("version")),
                ("extension", json.loads(read("extension/manifest.json"))["version"]),
                ("Debian", re.match(r"orlop \(([\d.]+)\)", read("packaging/debian/changelog"))[1])):
            self.assertEqual(found, version, place)
        headings = re.findall(r"(?m)^## \[(.*?)\]", read("CHANGELOG.md"))
        self.assertIn(headings[0], (version, "Unreleased"))

    def test_stores_take_the_extension_without_a_key(self):
        with tempfile.TemporaryDirectory() as folder:
            for options in [], ["--unpacked"]:
                subprocess.run([sys.executable, ROOT / "scripts/extension", *options, folder],
                               check=True)
            packed = {}
            for name in "orlop-chromium.zip", "orlop-firefox.xpi":
                with zipfile.ZipFile(Path(folder) / name) as archive:
                    packed[name] = json.loads(archive.read("manifest.json"))
            loaded = json.loads((Path(folder) / "chromium/manifest.json").read_text())
        self.assertFalse([name for name, manifest in packed.items() if "key" in manifest])
        self.assertEqual(packed["orlop-chromium.zip"] | {"key": loaded["key"]}, loaded)

    def test_pictures_of_the_metainfo_are_ours(self):
        for image in self.metainfo.iter("image"):
            self.assertTrue((ROOT / "docs/screenshots" / image.text.rsplit("/", 1)[1]).is_file())


if __name__ == "__main__":
    unittest.main()
