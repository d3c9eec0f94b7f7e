#!/usr/bin/env python3
"""Damages copies of the built app, and sees that verify_app.py notices each damage; and makes
mistakes in the list of symbols, which end the build.

    fault_tests.py FOLDER   with Brivane.app and its archive in it; run at the root of the tree

Prints "ok NAME" or "FAILED NAME"; ends with status 1 if any damage passed.
"""

import pathlib
import plistlib
import shutil
import struct
import subprocess
import sys
import tempfile

import mach_o
import verify_app as verify

EXECUTABLE = "MacOS/Brivane"
TEXTS = "Resources/Brivane_BrivaneApp.bundle/de.lproj/Localizable.strings"
ICON = "Resources/Brivane.icns"


def contents(folder):
    return folder / "Brivane.app" / "Contents"


def change(folder, name, edit):
    path = contents(folder) / name
    data = bytearray(path.read_bytes())
    edit(data)
    path.write_bytes(data)


def change_field(folder, command, offset, form, *values):
    """Overwrites a field of the first load command of that kind."""

    def edit(data):
        start = mach_o.MachO(bytes(data)).all(command)[0]
        struct.pack_into(form, data, start + offset, *values)

    change(folder, EXECUTABLE, edit)


def replace(folder, name, old, new, find=bytearray.rindex):
    """In the last place where it stands, or the one that is found otherwise."""

    def edit(data):
        start = find(data, old)
        assert len(old) == len(new)
        data[start : start + len(old)] = new

    change(folder, name, edit)


def change_information(folder, key, value):
    path = contents(folder) / "Info.plist"
    path.write_bytes(plistlib.dumps(plistlib.loads(path.read_bytes()) | {key: value}))


def set_flag(folder, bit):
    def edit(data):
        (flags,) = struct.unpack_from("<I", data, 24)
        struct.pack_into("<I", data, 24, flags | bit)

    change(folder, EXECUTABLE, edit)


def shorten_strings(data):
    """By eight bytes, and the bytes stay."""
    command = mach_o.MachO(bytes(data)).all(mach_o.SYMBOL_TABLE)[0]
    (size,) = struct.unpack_from("<I", data, command + 20)
    struct.pack_into("<I", data, command + 20, size - 8)


def sign_with_flags(folder, flags):
    """The flags in the code directory right behind the signature's index."""

    def edit(data):
        offset, _ = mach_o.MachO(bytes(data)).fields(mach_o.SIGNATURE, "<2I")
        struct.pack_into(">I", data, offset + 12 + 3 * 8 + 12, flags)

    change(folder, EXECUTABLE, edit)


def first_archive(folder):
    return next(folder.glob("*.zip"))


def flip(data, index):
    data[index] ^= 1


FAULTS = [
    ("a bit of the code is another", "every_page_has_its_hash",
     lambda folder: change(folder, EXECUTABLE, lambda data: flip(data, 0x8000))),
    ("a bit of the last hash is another", "every_page_has_its_hash",
     lambda folder: change(folder, EXECUTABLE, lambda data: data.__setitem__(
         slice(len(data) - 64, len(data) - 32), bytes(32)))),
    ("it wants a newer system", "it_runs_from_macos_13_on",
     lambda folder: change_field(folder, mach_o.BUILD_VERSION, 12, "<I", 14 << 16)),
    ("it claims the newest kit", "it_runs_from_macos_13_on",
     lambda folder: change_field(folder, mach_o.BUILD_VERSION, 16, "<I", 26 << 16)),
    ("a load command is unknown", "load_commands_are_known_and_whole",
     lambda folder: change_field(folder, mach_o.UUID, 0, "<I", 0x1F)),
    ("code can be written", "segments_lie_well",
     lambda folder: change_field(folder, mach_o.SEGMENT, 60, "<I", 7)),
    ("the system may replace parts of its C++ library", "executable_is_for_apple_silicon",
     lambda folder: set_flag(folder, 0x8000)),
    ("it can't be executed", "executable_is_for_apple_silicon",
     lambda folder: (contents(folder) / EXECUTABLE).chmod(0o644)),
    ("pointers stay where they were linked", "pointers_follow_the_program",
     lambda folder: change_field(folder, mach_o.FIX_UPS, 12, "<I", 0)),
    ("a symbol comes from another library", "symbols_come_from_their_libraries",
     lambda folder: replace(folder, EXECUTABLE, b"/A/CoreGraphics\0", b"/A/CoreGraphicz\0")),
    ("a framework's version folder is wrong", "symbols_come_from_their_libraries",
     lambda folder: replace(folder, EXECUTABLE, b"Versions/A/IOKit\0", b"Versions/C/IOKit\0")),
    ("a name is spelt wrong", "symbols_come_from_their_libraries",
     lambda folder: replace(folder, EXECUTABLE, b"_CFRelease\0", b"_XFRelease\0")),
    ("it asks for a system without one of its symbols", "the_oldest_system_has_all_it_takes",
     lambda folder: change_field(folder, mach_o.BUILD_VERSION, 12, "<I", 11 << 16)),
    ("nobody knows which system has a symbol", "the_oldest_system_has_all_it_takes",
     lambda folder: replace(folder, EXECUTABLE, b"_CFRelease\0", b"_CFSeventh\0", bytearray.index)),
    ("it looks for a desk", "it_knows_no_desk",
     lambda folder: change(folder, EXECUTABLE, lambda data: data.extend(b"BRIVANE_DESK\0"))),
    ("a picture of the icon is missing", "icon_has_every_size",
     lambda folder: replace(folder, ICON, b"ic13", b"ic14")),
    ("a picture of the icon is of another size", "icon_has_every_size",
     lambda folder: replace(folder, ICON, struct.pack(">2I", 1024, 1024), struct.pack(">2I", 512, 512))),
    ("the list of classes is lost", "objective_c_finds_its_lists",
     lambda folder: replace(folder, EXECUTABLE, b"__objc_classlist", b"__objc_classlisp")),
    ("the log's formats lie among other texts", "the_log_finds_its_formats",
     lambda folder: replace(folder, EXECUTABLE, b"__oslogstring", b"__oslogstrinG")),
    ("the log hides what it is given", "the_log_finds_its_formats",
     lambda folder: replace(folder, EXECUTABLE, b"%{public}s\0", b"%{secret}s\0")),
    ("a list of bindings is dropped, but its bytes are not", "link_edit_has_no_hole",
     lambda folder: change_field(folder, mach_o.FIX_UPS, 20, "<I", 64)),
    ("bytes that no list owns are not zero", "link_edit_has_no_hole",
     lambda folder: change(folder, EXECUTABLE, shorten_strings)),
    ("other programs may load their code into it", "signature_is_that_of_the_app",
     lambda folder: sign_with_flags(folder, 0x2)),
    ("it exports a function", "nothing_of_it_is_offered_to_others",
     lambda folder: replace(folder, EXECUTABLE, b"\0__Znwm\0", b"\0_letme\0")),
    ("only the linker signed it", "signature_is_that_of_the_app",
     lambda folder: sign_with_flags(folder, 0x30002)),
    ("the signature is for another app", "signature_is_that_of_the_app",
     lambda folder: replace(folder, EXECUTABLE, b"com.quorrel.brivane\0", b"com.quorrel.brivana\0")),
    ("the signature is cut off", "signature_is_that_of_the_app",
     lambda folder: change(folder, EXECUTABLE, lambda data: data.__delitem__(slice(-64, None)))),
    ("the information changed after sealing", "signature_covers_the_other_files",
     lambda folder: change_information(folder, "LSUIElement", True)),
    ("it would show in the Dock", "information_is_complete",
     lambda folder: change_information(folder, "LSUIElement", False)),
    ("a language is missing in the information", "information_is_complete",
     lambda folder: change_information(folder, "CFBundleLocalizations", ["en"])),
    ("a text changed after sealing", "resources_are_sealed",
     lambda folder: change(folder, TEXTS, lambda data: flip(data, 10))),
    ("a text isn't the tree's", "files_are_those_of_the_tree",
     lambda folder: change(folder, TEXTS, lambda data: flip(data, 10))),
    ("a language is missing", "files_are_those_of_the_tree",
     lambda folder: shutil.rmtree((contents(folder) / TEXTS).parent)),
    ("a file was added after sealing", "resources_are_sealed",
     lambda folder: (contents(folder) / "Resources/more").write_text("more")),
    ("a link leads out", "files_are_those_of_the_tree",
     lambda folder: (contents(folder) / "Resources/link").symlink_to("/tmp")),
    ("it is too large", "it_is_small",
     lambda folder: change(folder, ICON, lambda data: data.extend(bytes(3_000_000)))),
    ("it tells where it was built", "it_names_no_path_of_the_builder",
     lambda folder: change(folder, ICON, lambda data: data.extend(f"{pathlib.Path.cwd()}/x".encode()))),
    ("the archive holds another build", "archive_holds_the_app",
     lambda folder: change(folder, ICON, lambda data: flip(data, 100))),
    ("the archive arrived damaged", "archive_holds_the_app",
     lambda folder: first_archive(folder).write_bytes(first_archive(folder).read_bytes() + b"x")),
]


def failing_checks(app):
    return {check.__name__ for check in verify.CHECKS if verify.findings(check, app)}


def notices(built, damage, expected):
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        shutil.copytree(built / "Brivane.app", folder / "Brivane.app")
        for archive in built.glob("Brivane-*.zip*"):
            shutil.copy(archive, folder)
        damage(folder)
        return expected in failing_checks(verify.App(folder))


def two_readers_are_compared(built):
    """The name is changed for one of them only."""
    app = verify.App(built)
    data = app.executable.data.replace(b"_CFRelease\0", b"_XFRelease\0")
    app.executable = mach_o.MachO(data)
    return "another_reader_agrees" in failing_checks(app)


CARBON = "[Carbon /System/Carbon 1 1]\n"
LISTS = [
    ("a list without mistakes makes stubs", CARBON + "GetEventKind # a remark\n", 0),
    ("a symbol of another framework is refused", CARBON + "CFRelease\n", 1),
    ("a symbol that no header declares is refused", CARBON + "GetEventKinds\n", 1),
    ("a symbol that stands twice is refused", CARBON + "GetEventKind GetEventKind\n", 1),
    ("a symbol without a library is refused", "GetEventKind\n", 1),
]


def stubs_end_with(text, status):
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        (folder / "include").symlink_to(pathlib.Path("Packaging/macOS/include").resolve())
        (folder / "symbols.txt").write_text(text)
        command = ["Packaging/macOS/make_stubs.py", folder / "symbols.txt", folder / "stubs"]
        ended = subprocess.run([sys.executable, *command], capture_output=True, check=False)
        made = (folder / "stubs/Carbon.framework/Carbon.tbd").exists()
        return ended.returncode == status and made == (status == 0)


def main():
    built = pathlib.Path(sys.argv[1])
    results = {name: notices(built, damage, expected) for name, expected, damage in FAULTS}
    results |= {name: stubs_end_with(text, status) for name, text, status in LISTS}
    results["a reader makes a mistake"] = two_readers_are_compared(built)
    tried = {expected for _, expected, _ in FAULTS} | {"another_reader_agrees"}
    results["every check has its damage"] = tried == {check.__name__ for check in verify.CHECKS}
    for name, noticed in results.items():
        print("ok" if noticed else "FAILED", name)
    sys.exit(not all(results.values()))


if __name__ == "__main__":
    main()
