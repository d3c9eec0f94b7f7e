#!/usr/bin/env python3
"""Seals an app as `codesign --sign - --options runtime` does on a Mac: without a certificate, but whole.

    seal.py APP --sdk VERSION

The linker signs the executable alone, and an app with resources whose executable says nothing of
them counts as damaged. So the hash of every file goes into Contents/_CodeSignature/CodeResources,
and the hashes of that file, of Info.plist and of every page of the executable into a new signature
at the executable's end. VERSION is the development kit that the executable claims to be built with,
by which the system chooses the looks of windows and menus and the rules of the hardened runtime.
"""

import argparse
import hashlib
import os
import pathlib
import plistlib
import struct
import sys

PAGE_SHIFT = 12
HASH_SIZE = 32

# Load commands, and where in them the fields that are read or changed lie.
SEGMENT, CODE_SIGNATURE, BUILD_VERSION, FIX_UPS = 0x19, 0x1D, 0x32, 0x80000022
SEGMENT_VM_SIZE, SEGMENT_FILE_OFFSET, SEGMENT_FILE_SIZE = 32, 40, 48
LINK_EDIT_PAGE = 0x4000
FLAGS = 24
HAS_WEAK_SYMBOLS = 0x8000 | 0x10000
BINDINGS, WEAK_BINDINGS = 16, 24

# Blobs of a signature, all of them big-endian, and the numbers of their slots.
SUPER_BLOB, CODE_DIRECTORY, REQUIREMENTS, WRAPPER = 0xFADE0CC0, 0xFADE0C02, 0xFADE0C01, 0xFADE0B01
CODE_DIRECTORY_SLOT, REQUIREMENTS_SLOT, WRAPPER_SLOT = 0, 2, 0x10000
INFO_SLOT, RESOURCES_SLOT = 1, 3

CODE_DIRECTORY_VERSION = 0x20500
AD_HOC = 0x2
HARDENED_RUNTIME = 0x10000
SHA256 = 2
MAIN_BINARY = 1

# What the system should expect of files that are added, changed or missing; the same for every app.
RULES = {
    "^Resources/": True,
    r"^Resources/.*\.lproj/": {"optional": True, "weight": 1000.0},
    r"^Resources/.*\.lproj/locversion.plist$": {"omit": True, "weight": 1100.0},
    r"^Resources/Base\.lproj/": {"weight": 1010.0},
    "^version.plist$": True,
}
RULES2 = {
    r".*\.dSYM($|/)": {"weight": 11.0},
    r"^(.*/)?\.DS_Store$": {"omit": True, "weight": 2000.0},
    "^(Frameworks|SharedFrameworks|PlugIns|Plug-ins|XPCServices|Helpers|MacOS"
    "|Library/(Automator|Spotlight|LoginItems))/": {"nested": True, "weight": 10.0},
    "^.*": True,
    r"^Info\.plist$": {"omit": True, "weight": 20.0},
    r"^PkgInfo$": {"omit": True, "weight": 20.0},
    "^Resources/": {"weight": 20.0},
    r"^Resources/.*\.lproj/": {"optional": True, "weight": 1000.0},
    r"^Resources/.*\.lproj/locversion.plist$": {"omit": True, "weight": 1100.0},
    r"^Resources/Base\.lproj/": {"weight": 1010.0},
    "^[^/]+$": {"nested": True, "weight": 10.0},
    r"^embedded\.provisionprofile$": {"weight": 20.0},
    r"^version\.plist$": {"weight": 20.0},
}


def sha256(data):
    return hashlib.sha256(data).digest()


def blob(magic, content):
    return struct.pack(">II", magic, 8 + len(content)) + content


def round_up(number, step):
    return -(-number // step) * step


def sealed_files(contents):
    """The files that CodeResources lists, by their paths in Contents."""
    for path in sorted(contents.rglob("*")):
        name = path.relative_to(contents).as_posix()
        if path.is_symlink() or not (path.is_dir() or name.startswith(("Resources/", "MacOS/"))):
            if name not in ("Info.plist", "_CodeSignature/CodeResources"):
                sys.exit(f"{path}: the seal knows only files in Resources")
        elif path.is_file() and name.startswith("Resources/"):
            yield name, path.read_bytes()


def code_resources(contents):
    """The bytes of CodeResources, in the older form and the one that counts."""
    files, files2 = {}, {}
    for name, data in sealed_files(contents):
        optional = {"optional": True} if ".lproj/" in name else {}
        old_hash = hashlib.sha1(data).digest()
        files[name] = {"hash": old_hash, **optional} if optional else old_hash
        files2[name] = {"hash2": sha256(data), **optional}
    resources = {"files": files, "files2": files2, "rules": RULES, "rules2": RULES2}
    return plistlib.dumps(resources, sort_keys=True)


class Executable:
    """A program for one 64-bit processor, with a signature at its end that is to be replaced."""

    def __init__(self, data):
        self.data = bytearray(data)
        magic, count = self.read("<I12xI", 0)
        if magic != 0xFEEDFACF:
            sys.exit("The executable isn't one for a single 64-bit processor.")
        self.commands = {}
        offset = 32
        for _ in range(count):
            command, size = self.read("<II", offset)
            name = bytes(self.data[offset + 8 : offset + 24]).rstrip(b"\0")
            name = name if command == SEGMENT else b""
            self.commands[command, name] = offset
            offset += size
        self.signature_command = self.commands[CODE_SIGNATURE, b""]
        (self.code_size,) = self.read("<I", self.signature_command + 8)

    def read(self, form, offset):
        return struct.unpack_from(form, self.data, offset)

    def write(self, form, offset, *values):
        struct.pack_into(form, self.data, offset, *values)

    def claim_kit(self, version):
        major, minor = map(int, version.split("."))
        self.kit = major << 16 | minor << 8
        self.write("<I", self.commands[BUILD_VERSION, b""] + 16, self.kit)

    def keep_own_library(self):
        """Keeps the system from putting parts of its own C++ library in the place of those that are
        linked in, of which it may have another version; without these lists each stays as linked.
        A Mac's tools refuse a __LINKEDIT with bytes that no list owns, so the list of bindings before the
        removed one becomes longer by as many zeros, each of which is an end of a list."""
        (flags,) = self.read("<I", FLAGS)
        self.write("<I", FLAGS, flags & ~HAS_WEAK_SYMBOLS)
        fix_ups = self.commands[FIX_UPS, b""]
        (start, size), (weak, weak_size) = (
            self.read("<II", fix_ups + field) for field in (BINDINGS, WEAK_BINDINGS)
        )
        if weak_size == 0:
            return
        if weak != start + size:
            sys.exit("The executable's weak bindings don't follow its other bindings.")
        self.data[weak : weak + weak_size] = bytes(weak_size)
        self.write("<4I", fix_ups + BINDINGS, start, size + weak_size, 0, 0)

    def make_room(self, size):
        """Drops the old signature, and says in the headers that one of that size follows."""
        del self.data[self.code_size :]
        self.write("<II", self.signature_command + 8, self.code_size, size)
        link_edit = self.commands[SEGMENT, b"__LINKEDIT"]
        (start,) = self.read("<Q", link_edit + SEGMENT_FILE_OFFSET)
        file_size = self.code_size + size - start
        self.write("<Q", link_edit + SEGMENT_FILE_SIZE, file_size)
        self.write("<Q", link_edit + SEGMENT_VM_SIZE, round_up(file_size, LINK_EDIT_PAGE))

    def page_hashes(self):
        pages = range(0, self.code_size, 1 << PAGE_SHIFT)
        ends = (min(start + (1 << PAGE_SHIFT), self.code_size) for start in pages)
        return [sha256(self.data[start:end]) for start, end in zip(pages, ends)]

    def code_directory(self, identifier, special_hashes):
        name = identifier.encode() + b"\0"
        name_offset = 96
        hash_offset = name_offset + len(name) + len(special_hashes) * HASH_SIZE
        hashes = self.page_hashes()
        text = self.commands[SEGMENT, b"__TEXT"]
        (text_size,) = self.read("<Q", text + SEGMENT_FILE_SIZE)
        header = struct.pack(
            ">7I4B4I4Q2I",
            *(CODE_DIRECTORY_VERSION, AD_HOC | HARDENED_RUNTIME, hash_offset, name_offset),
            *(len(special_hashes), len(hashes), self.code_size),
            *(HASH_SIZE, SHA256, 0, PAGE_SHIFT),
            *(0, 0, 0, 0),
            *(0, 0, text_size, MAIN_BINARY),
            *(self.kit, 0),
        )
        special = b"".join(reversed(special_hashes))
        return blob(CODE_DIRECTORY, header + name + special + b"".join(hashes))

    def sign(self, identifier, info, resources):
        requirements = blob(REQUIREMENTS, struct.pack(">I", 0))
        special_hashes = [sha256(info), sha256(requirements), sha256(resources)]
        # The headers say how long the signature is, and it holds their hash; its length doesn't
        # depend on that.
        size = len(self.signature(identifier, special_hashes, requirements))
        self.make_room(round_up(size, 16))
        signature = self.signature(identifier, special_hashes, requirements)
        self.data += signature.ljust(round_up(size, 16), b"\0")

    def signature(self, identifier, special_hashes, requirements):
        blobs = {
            CODE_DIRECTORY_SLOT: self.code_directory(identifier, special_hashes),
            REQUIREMENTS_SLOT: requirements,
            WRAPPER_SLOT: blob(WRAPPER, b""),
        }
        index, content = struct.pack(">I", len(blobs)), b""
        for slot, one in blobs.items():
            index += struct.pack(">II", slot, 12 + 8 * len(blobs) + len(content))
            content += one
        return blob(SUPER_BLOB, index + content)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("app", type=pathlib.Path)
    parser.add_argument("--sdk", required=True)
    arguments = parser.parse_args()

    contents = arguments.app / "Contents"
    info_bytes = (contents / "Info.plist").read_bytes()
    info = plistlib.loads(info_bytes)
    path = contents / "MacOS" / info["CFBundleExecutable"]
    resources = code_resources(contents)
    (contents / "_CodeSignature").mkdir(exist_ok=True)
    (contents / "_CodeSignature" / "CodeResources").write_bytes(resources)

    executable = Executable(path.read_bytes())
    executable.claim_kit(arguments.sdk)
    executable.keep_own_library()
    executable.sign(info["CFBundleIdentifier"], info_bytes, resources)
    # A new file, because a Mac remembers the signature of the one that it has seen.
    fresh = path.with_name(path.name + ".sealed")
    fresh.write_bytes(executable.data)
    fresh.chmod(0o755)
    os.replace(fresh, path)


if __name__ == "__main__":
    main()
