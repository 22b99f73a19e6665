#!/usr/bin/env python3
"""Writes down what the packages consist of, as SPDX 2.3: sbom.py BUNDLE PACKAGES

The sources with their checksums, the libraries that the program links and the modules that it loads with the Debian
packages that they came from, what it was built with, and the packages in the folder PACKAGES, where the list is left.
Its date is that of SOURCE_DATE_EPOCH, so that the same things give the same file.
"""

import hashlib
import json
import os
import re
import subprocess
import sys
from datetime import datetime, timezone
from pathlib import Path

_CHECKOUT = Path(__file__).resolve().parents[2]
_PROGRAM = "SPDXRef-Zentrill"
#: What the program is made of.
_SOURCES = ("CMakeLists.txt", "CMakePresets.json", "CHANGELOG.md", "LICENSE", "NOTICES", "cmake", "docs/images",
            "packaging/bundle", "packaging/desktop", "packaging/icon", "packaging/package", "src")
#: Header files alone: they become a part of the program.
_CONTAINED = ("nlohmann-json3-dev",)
_TOOLS = ("cmake", "g++", "ninja-build", "qt6-base-dev-tools", "qt6-declarative-dev-tools")


def _output(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def _owner(path):
    """The Debian package that the file came with."""
    # Debian's list knows a library by the name from before /lib became a link.
    for name in (os.path.realpath(path), os.path.realpath(path).removeprefix("/usr")):
        try:
            return _output("dpkg-query", "--search", name).split(":")[0]
        except (OSError, subprocess.CalledProcessError):
            continue
    return None


def _linked(program):
    """Of each library that the program itself links: its name and where it is."""
    needed = re.findall(r"^\s+NEEDED\s+(\S+)", _output("objdump", "--private-headers", str(program)), re.MULTILINE)
    found = dict(re.findall(r"^\s*(\S+) => (/\S+)", _output("ldd", str(program)), re.MULTILINE))
    return {name: found[name] for name in needed if name in found}


def _checksums(path, *kinds):
    content = path.read_bytes()
    return [{"algorithm": kind.upper(), "checksumValue": hashlib.new(kind, content).hexdigest()} for kind in kinds]


class Document:
    def __init__(self, version):
        self.version = version
        self.packages = []
        self.files = []
        self.relationships = []

    def relate(self, one, kind, other):
        self.relationships.append({"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other})

    def add_program(self):
        self.packages.append(self._package(
            _PROGRAM, "Zentrill", self.version, supplier="Organization: The Zentrill developers",
            licenseConcluded="MIT", licenseDeclared="MIT", copyrightText="2026 The Zentrill developers",
            filesAnalyzed=False, primaryPackagePurpose="APPLICATION"))
        self.relate("SPDXRef-DOCUMENT", "DESCRIBES", _PROGRAM)

    def add_debian(self, name, kind):
        """A package as it is installed here; `kind` says what it is to the program."""
        try:
            version, architecture = _output("dpkg-query", "--show", "--showformat=${Version} ${Architecture}", name).split()
        except (OSError, ValueError, subprocess.CalledProcessError):
            # Named by hand, and not needed for building: any version will do.
            version, architecture = None, None
        identifier = "SPDXRef-deb-" + re.sub(r"[^A-Za-z0-9.-]", "-", name)
        if identifier not in (package["SPDXID"] for package in self.packages):
            locator = f"pkg:deb/debian/{name.replace('+', '%2B')}"
            if version:
                locator += f"@{version.replace('+', '%2B').replace(':', '%3A')}?arch={architecture}"
            self.packages.append(self._package(
                identifier, name, version, supplier="Organization: Debian", filesAnalyzed=False,
                externalRefs=[{"referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl",
                               "referenceLocator": locator}]))
        if kind.endswith("_OF"):
            self.relate(identifier, kind, _PROGRAM)
        else:
            self.relate(_PROGRAM, kind, identifier)

    def add_library(self, name):
        """One that no package is known for."""
        identifier = "SPDXRef-lib-" + re.sub(r"[^A-Za-z0-9.-]", "-", name)
        self.packages.append(self._package(identifier, name, None, filesAnalyzed=False))
        self.relate(_PROGRAM, "DYNAMIC_LINK", identifier)

    def add_source(self, path):
        name = "./" + path.relative_to(_CHECKOUT).as_posix()
        identifier = "SPDXRef-file-" + hashlib.sha256(name.encode()).hexdigest()[:16]
        self.files.append({"SPDXID": identifier, "fileName": name, "fileTypes": ["SOURCE"],
                           "checksums": _checksums(path, "sha1", "sha256"), "licenseConcluded": "MIT",
                           "copyrightText": "2026 The Zentrill developers"})
        self.relate(_PROGRAM, "GENERATED_FROM", identifier)

    def add_result(self, path):
        identifier = "SPDXRef-" + re.sub(r"[^A-Za-z0-9.-]", "-", path.name)
        self.packages.append(self._package(identifier, path.name, self.version, packageFileName=path.name,
                                           checksums=_checksums(path, "sha256"), filesAnalyzed=False))
        self.relate(identifier, "CONTAINS", _PROGRAM)

    def text(self):
        created = datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), timezone.utc)
        content = {"packages": self.packages, "files": self.files, "relationships": self.relationships}
        digest = hashlib.sha256(json.dumps(content, sort_keys=True).encode()).hexdigest()
        return json.dumps({
            "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
            "name": f"zentrill-{self.version}",
            # Any unique name will do; nothing need be found there.
            "documentNamespace": f"https://spdx.org/spdxdocs/zentrill-{self.version}-{digest}",
            "creationInfo": {"created": created.strftime("%Y-%m-%dT%H:%M:%SZ"),
                             "creators": ["Organization: The Zentrill developers", "Tool: zentrill-sbom"]},
            **content}, indent=2) + "\n"

    @staticmethod
    def _package(identifier, name, version, **more):
        package = {"SPDXID": identifier, "name": name, "downloadLocation": "NOASSERTION",
                   "licenseConcluded": "NOASSERTION", "licenseDeclared": "NOASSERTION", "copyrightText": "NOASSERTION"}
        if version:
            package["versionInfo"] = version
        return package | more


def _sources():
    for name in _SOURCES:
        path = _CHECKOUT / name
        yield from (path,) if path.is_file() else sorted(found for found in path.rglob("*") if found.is_file())


def main():
    if len(sys.argv) != 3 or "SOURCE_DATE_EPOCH" not in os.environ:
        sys.exit(__doc__)
    program = Path(sys.argv[1]) / "Contents/MacOS/Zentrill"
    folder = Path(sys.argv[2])
    version = re.search(r"^project\(Zentrill VERSION (\S+)", (_CHECKOUT / "CMakeLists.txt").read_text(), re.MULTILINE)[1]
    document = Document(version)
    document.add_program()
    for name, path in sorted(_linked(program).items()):
        if owner := _owner(path):
            document.add_debian(owner, "DYNAMIC_LINK")
        else:
            document.add_library(name)
    for name in (_CHECKOUT / "packaging/package/runtime-dependencies.txt").read_text().split():
        document.add_debian(name, "RUNTIME_DEPENDENCY_OF")
    for name in _CONTAINED:
        document.add_debian(name, "STATIC_LINK")
    for name in _TOOLS:
        document.add_debian(name, "BUILD_TOOL_OF")
    for path in _sources():
        document.add_source(path)
    for path in sorted((*folder.glob("zentrill_*.deb"), *folder.glob("zentrill-*.tar.gz"))):
        document.add_result(path)
    (folder / f"zentrill-{version}.spdx.json").write_text(document.text())


main()
