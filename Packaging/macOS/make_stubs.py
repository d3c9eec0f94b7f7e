#!/usr/bin/env python3
"""Makes the text stubs that the Mac app is linked against where there is no Mac.

    make_stubs.py symbols.txt FOLDER

symbols.txt says what each library exports. A stub says the same in the linker's own form. A name
that our headers declare for another framework, or not at all, ends the build here: the linker
would take it, and a Mac would not.
"""

import pathlib
import re
import sys


class Library:
    def __init__(self, name, install_name, current_version, compatibility_version):
        self.name = name
        self.install_name = install_name
        self.current_version = current_version
        self.compatibility_version = compatibility_version
        self.symbols = []
        self.classes = []

    def stub(self):
        lines = [
            "--- !tapi-tbd",
            "tbd-version: 4",
            "targets: [ arm64-macos ]",
            f"install-name: '{self.install_name}'",
            f"current-version: {self.current_version}",
            f"compatibility-version: {self.compatibility_version}",
            "exports:",
            "  - targets: [ arm64-macos ]",
        ]
        if self.symbols:
            lines.append(f"    symbols: [ {', '.join(self.symbols)} ]")
        if self.classes:
            lines.append(f"    objc-classes: [ {', '.join(self.classes)} ]")
        return "\n".join(lines + ["...", ""])

    def stub_path(self, folder):
        if self.name.startswith("lib"):
            return folder / f"{self.name}.tbd"
        return folder / f"{self.name}.framework" / f"{self.name}.tbd"


def read_libraries(path):
    """The libraries of symbols.txt; ends the program at a line that makes no sense."""
    libraries, owners = [], {}
    for number, line in enumerate(path.read_text().splitlines(), 1):
        words = line.split("#")[0].split()
        if words and words[0].startswith("["):
            libraries.append(Library(*" ".join(words).strip("[]").split()))
            continue
        for word in words:
            if not libraries or word in owners:
                sys.exit(f"{path}:{number}: {word} stands outside of a library, or twice")
            owners[word] = libraries[-1]
            if word.startswith("@"):
                libraries[-1].classes.append(word[1:])
            else:
                libraries[-1].symbols.append("_" + word)
    return libraries


def undeclared(library, headers):
    """What the framework's own headers don't name. The compiler itself uses what begins with an
    underscore, and libobjc."""
    if library.name == "libobjc":
        return []
    texts = [path.read_text() for path in sorted((headers / library.name).rglob("*.h"))]
    words = set(re.findall(r"\w+", "\n".join(texts)))
    names = [symbol[1:] for symbol in library.symbols] + library.classes
    return [name for name in names if not name.startswith("_") and name not in words]


def main():
    symbols, folder = map(pathlib.Path, sys.argv[1:])
    for library in read_libraries(symbols):
        for name in undeclared(library, symbols.parent / "include"):
            sys.exit(f"{symbols}: {name}: no header in include/{library.name} has it")
        path = library.stub_path(folder)
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(library.stub())


if __name__ == "__main__":
    main()
