#!/usr/bin/env python3
"""Checks the built Brivane.app, as far as that can be done without a Mac.

    verify_app.py FOLDER    with Brivane.app and its archive in it; run at the root of the tree

Prints "ok NAME" or "FAILED NAME" and what it found; ends with status 1 if anything failed.
"""

import hashlib
import pathlib
import plistlib
import re
import struct
import subprocess
import sys
import zipfile

import mach_o

LARGEST_EXECUTABLE = 1_500_000
LARGEST_APP = 3_000_000
PAGE = 1 << 14
LANGUAGES = ["de", "en", "es", "fr", "ja", "zh-Hans"]

PLAIN_LIBRARIES = {"libobjc": "/usr/lib/libobjc.A.dylib", "libSystem": "/usr/lib/libSystem.B.dylib"}
NEWER_FRAMEWORKS = ["AppKit", "Foundation"]

# Which library a name belongs to, by how the libraries name things. It is written down a second
# time, apart from the list that the stubs are made of. The first match counts.
FOUNDATION = (
    "AffineTransform|AttributedString|Array|Autorelease|Bundle|Data|Date|Dictionary|Error|IndexSet"
    "|Mutable(Array|AttributedString|Data|Dictionary|Set|String)|Notification(Center)?|Number|OperationQueue"
    "|ProcessInfo|RunLoop(CommonModes)?|Set|String|Thread|Timer|URL|UserDefaults|Value|Log"
    "|KeyValueChange[A-Za-z]*Key"
)
FAMILIES = [
    (r"__?objc_\w+|_sel_registerName|_OBJC_(META)?CLASS_\$_NSObject", "libobjc"),
    (r"_k?CF[A-Z]\w+|___CFConstantStringClassReference|___NS(Array|Dictionary)0__", "CoreFoundation"),
    (r"_k?CG[A-Z]\w+", "CoreGraphics"),
    (r"_k?IO[A-Z]\w+", "IOKit"),
    (r"_k?AX[A-Z]\w+", "ApplicationServices"),
    (r"_UCKey[A-Z]\w+", "CoreServices"),
    (r"_k?(TIS|LMGet)[A-Z]\w+", "Carbon"),
    (r"_(Get|Install|Register|Remove|Unregister)\w*(Event|HotKey)\w*", "Carbon"),
    (r"_(OBJC_(META)?CLASS_\$_|k)CA[A-Z]\w+", "QuartzCore"),
    (rf"_(OBJC_(META)?CLASS_\$_)?NS({FOUNDATION})", "Foundation"),
    (r"_(OBJC_(META)?CLASS_\$_)?NS[A-Z]\w+", "AppKit"),
    # C, threads, dispatch, blocks, the log, and the loader's own.
    (r"_(dispatch|os|_os)_\w+|__(Block|NSConcrete|dispatch)\w*|__?[a-z_]\w*|dyld_stub_binder", "libSystem"),
    (r"__D\w+Rune\w*|___\w+|__Unwind_\w+", "libSystem"),
]
# Pictures of an icon by their names: how many pixels wide each is. These are all sizes that are kept
# as PNG files; the two smallest for screens of simple resolution the system makes of the next ones.
ICON_PICTURES = {
    "ic11": 32, "ic12": 64, "ic07": 128, "ic13": 256, "ic08": 256, "ic14": 512, "ic09": 512, "ic10": 1024,
}
# Not in the system's headers: asked for by name at run time, and missing on some system.
PRIVATE = r"_(IOAVService|DisplayServices|CoreDisplay|(CGS|SLS)[A-Z])\w*"


def install_name(library):
    version = "C" if library in NEWER_FRAMEWORKS else "A"
    framework = f"/System/Library/Frameworks/{library}.framework/Versions/{version}/{library}"
    return PLAIN_LIBRARIES.get(library, framework)


def owner(symbol):
    for pattern, library in FAMILIES:
        if re.fullmatch(pattern, symbol):
            return library
    return "no library that is known here"


def sha256(data):
    return hashlib.sha256(data).digest()


def differences(found, expected):
    """One line for each way in which a mapping isn't as it should be."""
    for key in sorted(found.keys() | expected.keys(), key=str):
        if key not in expected:
            yield f"{key}: not expected"
        elif key not in found:
            yield f"{key}: missing"
        elif found[key] != expected[key]:
            yield f"{key}: {found[key]!r:.120} instead of {expected[key]!r:.120}"


class App:
    def __init__(self, folder):
        self.folder = folder
        self.contents = folder / "Brivane.app" / "Contents"
        self.files = {
            path.relative_to(self.contents).as_posix(): path.read_bytes()
            for path in sorted(self.contents.rglob("*"))
            if path.is_file() and not path.is_symlink()
        }
        self.info = plistlib.loads(self.files["Info.plist"])
        self.executable = mach_o.MachO(self.files["MacOS/Brivane"])


def source_resources():
    """What the bundles must hold: the tree's own texts, byte for byte."""
    for room in ("App", "UI"):
        bundle = f"Resources/Brivane_Brivane{room}.bundle"
        for path in pathlib.Path(f"Brivane{room}/Resources").glob("*.lproj/*"):
            yield f"{bundle}/{path.parent.name}/{path.name}", path.read_bytes()
    yield "Resources/Brivane.icns", pathlib.Path("Packaging/macOS/Brivane.icns").read_bytes()


def files_are_those_of_the_tree(app):
    expected = dict(source_resources())
    others = ["Info.plist", "MacOS/Brivane", "_CodeSignature/CodeResources"]
    others.append("Resources/Brivane_BrivaneUI.bundle/Colors.catalogue")
    expected |= {name: app.files.get(name, b"") for name in others}
    yield from differences(app.files, expected)
    yield from (f"{name}: empty" for name, data in app.files.items() if not data)
    yield from (f"{path}: a link" for path in app.contents.rglob("*") if path.is_symlink())
    for language in LANGUAGES:
        if f"Resources/Brivane_BrivaneApp.bundle/{language}.lproj/Localizable.strings" not in app.files:
            yield f"{language}: no texts"


def information_is_complete(app):
    (version,) = re.findall(r"project\(Brivane VERSION ([0-9.]+)", pathlib.Path("CMakeLists.txt").read_text())
    (copyright_line,) = re.findall("^Copyright.*$", pathlib.Path("LICENSE").read_text(), re.MULTILINE)
    expected = {
        "CFBundleDevelopmentRegion": "en",
        "CFBundleDisplayName": "Brivane",
        "CFBundleExecutable": "Brivane",
        "CFBundleIconFile": "Brivane",
        "CFBundleIdentifier": "com.quorrel.brivane",
        "CFBundleInfoDictionaryVersion": "6.0",
        "CFBundleLocalizations": LANGUAGES,
        "CFBundleName": "Brivane",
        "CFBundlePackageType": "APPL",
        "CFBundleShortVersionString": version,
        "CFBundleSupportedPlatforms": ["MacOSX"],
        "CFBundleVersion": version,
        "LSApplicationCategoryType": "public.app-category.utilities",
        "LSMinimumSystemVersion": "13.0",
        "LSUIElement": True,
        "NSHighResolutionCapable": True,
        "NSHumanReadableCopyright": copyright_line,
        "NSPrincipalClass": "NSApplication",
        "NSSupportsAutomaticTermination": False,
        "NSSupportsSuddenTermination": False,
    }
    found = app.info | {"CFBundleLocalizations": sorted(app.info.get("CFBundleLocalizations", []))}
    yield from differences(found, expected)


def executable_is_for_apple_silicon(app):
    program = app.executable
    yield from differences(
        {"processor": program.processor, "kind": program.kind},
        {"processor": mach_o.CPU_ARM64, "kind": mach_o.EXECUTE},
    )
    # No undefined symbols, dynamic, two-level names, anywhere in memory; never an executable heap
    # or stack, and nothing that another library could be put in place of.
    for name, bit, expected in (
        ("no undefined symbols", 0x1, True),
        ("dynamically linked", 0x4, True),
        ("libraries by name", 0x80, True),
        ("defines what others may replace", 0x8000, False),
        ("uses what others may replace", 0x10000, False),
        ("executable stack", 0x20000, False),
        ("loads anywhere", 0x200000, True),
    ):
        if bool(program.flags & bit) != expected:
            yield f"the flag for '{name}' is {'missing' if expected else 'set'}"
    mode = (app.contents / "MacOS/Brivane").stat().st_mode & 0o777
    if mode != 0o755:
        yield f"its mode is {mode:o}"


def load_commands_are_known_and_whole(app):
    program = app.executable
    counts = {name: len(program.all(command)) for command, name in mach_o.NAMES.items()}
    for command, _ in program.commands:
        if command not in mach_o.NAMES:
            yield f"load command {command:#x}"
    expected = dict.fromkeys(mach_o.NAMES.values(), 1)
    free = {"library": counts["library"], "segment": counts["segment"]}
    yield from differences(counts, expected | free)
    (linker,) = program.all(mach_o.LOAD_LINKER)
    if mach_o.text_at(program.data, linker + 12) != "/usr/lib/dyld":
        yield "another dynamic linker"
    (start, _) = program.fields(mach_o.MAIN, "<2Q")
    text = next(segment for segment in program.segments() if segment.name == "__TEXT")
    if not 0 < start < text.file_size:
        yield f"it starts at {start:#x}, outside of its code"


def it_runs_from_macos_13_on(app):
    platform, minimum, kit, _ = app.executable.fields(mach_o.BUILD_VERSION, "<4I")
    found = {"platform": platform, "minimum": minimum, "kit": kit}
    yield from differences(found, {"platform": 1, "minimum": 13 << 16, "kit": 14 << 16})


def segments_lie_well(app):
    end_in_file, end_in_memory = 0, 0
    for segment in app.executable.segments():
        name = segment.name
        if segment.address % PAGE or segment.size % PAGE or segment.file_offset % PAGE:
            yield f"{name} isn't aligned to pages"
        if segment.address < end_in_memory or (segment.file_size and segment.file_offset < end_in_file):
            yield f"{name} overlaps the one before"
        if segment.protection & 0x2 and segment.protection & 0x4:
            yield f"{name} can be written and executed"
        if segment.file_size > segment.size:
            yield f"{name} is larger in the file than in memory"
        end_in_memory = segment.address + segment.size
        end_in_file = max(end_in_file, segment.file_offset + segment.file_size)
    if end_in_file != len(app.executable.data):
        yield f"the segments end at {end_in_file}, the file at {len(app.executable.data)}"


def pointers_follow_the_program(app):
    """Every pointer to the program's own parts is moved when the program lies elsewhere."""
    program = app.executable
    # Pairs of small numbers look like places in the headers, to which no pointer goes.
    start = program.headers_size + min(
        segment.address for segment in program.segments() if segment.file_size
    )
    end = max(segment.address + segment.size for segment in program.segments())
    known = set(program.moved_addresses()) | {address for _, _, address in program.bindings()}
    for segment in program.segments():
        if not segment.name.startswith("__DATA"):
            continue
        values = struct.iter_unpack("<Q", program.data[segment.file_offset :][: segment.file_size])
        for index, (value,) in enumerate(values):
            address = segment.address + 8 * index
            if start <= value < end and address not in known:
                yield f"{segment.name} at {address:#x}: {value:#x} stays where it was linked"


def symbols_come_from_their_libraries(app):
    program = app.executable
    libraries = program.libraries()
    taken = {(name, number) for name, number, _ in program.bindings()}
    for name, number in sorted(taken - program.undefined_symbols()):
        yield f"{name} from library {number}: not in the symbol table"
    for name, number in sorted(taken):
        library = libraries[number - 1] if 0 < number <= len(libraries) else f"library {number}"
        if library != install_name(owner(name)):
            yield f"{name} is looked for in {library}, but belongs to {owner(name)}"
        if re.fullmatch(PRIVATE, name):
            yield f"{name} is private: the program must not need it"
    used = {number for _, number in taken}
    for number, library in enumerate(libraries, 1):
        if number not in used:
            yield f"{library} is loaded for nothing"


def first_systems():
    """The first system with each name, from the list beside this file."""
    version = None
    for line in pathlib.Path(__file__).with_name("since.txt").read_text().splitlines():
        for word in line.split("#")[0].split():
            if word.startswith("["):
                version = tuple(map(int, word.strip("[]").split(".")))
            else:
                yield word, version


def the_oldest_system_has_all_it_takes(app):
    since = dict(first_systems())
    _, minimum, _, _ = app.executable.fields(mach_o.BUILD_VERSION, "<4I")
    oldest = (minimum >> 16, minimum >> 8 & 0xFF)
    names = {name for name, _, _ in app.executable.bindings()}
    for name in sorted({re.sub(r"^_OBJC_(META)?CLASS_\$_", "_@", name) for name in names}):
        first = since.get(name.removeprefix("_") if name.startswith("_") else name)
        if first is None:
            yield f"{name}: since.txt doesn't say since when"
        elif first > oldest:
            yield f"{name}: since {first[0]}.{first[1]}, and the app asks for {oldest[0]}.{oldest[1]}"


def it_knows_no_desk(app):
    """Who wants to try something out must not meet real displays for a desk; on a Mac there is none,
    and nothing that could look like one."""
    for name, data in app.files.items():
        if b"BRIVANE_DESK" in data:
            yield name


def icon_has_every_size(app):
    icon = app.files["Resources/Brivane.icns"]
    found, offset = {}, 8
    while offset < len(icon):
        name, size = icon[offset : offset + 4].decode(), struct.unpack_from(">I", icon, offset + 4)[0]
        picture = icon[offset + 8 : offset + max(size, 8)]
        start, width, height = struct.unpack_from(">8s8x2I", picture)
        found[name] = width if start == b"\x89PNG\r\n\x1a\n" and width == height else None
        offset += size
    yield from differences(found, ICON_PICTURES)
    if icon[:8] != struct.pack(">4sI", b"icns", len(icon)):
        yield "its header"


def objective_c_finds_its_lists(app):
    """The run time looks for these by name; a linker that drops one makes classes unknown."""
    sections = dict(app.executable.sections())
    for name in ("classlist", "imageinfo", "classrefs", "selrefs", "const", "data"):
        if not sections.get(f"__objc_{name}"):
            yield f"no __objc_{name}"
    # From each source one pair: version 0, and the flags of a program for this system.
    offset, size = sections.get("__objc_imageinfo") or (0, 0)
    pairs = set(struct.iter_unpack("<2I", app.executable.data[offset : offset + size]))
    if pairs != {(0, 0x40)}:
        yield f"image information {pairs}"


def log_formats():
    """The format of each line that the Mac's machine writes to the log."""
    for path in pathlib.Path("Machines/Mac").rglob("*.*"):
        yield from re.findall(r'\bos_log\(OS_LOG_DEFAULT, "([^"]+)"', path.read_text())


def the_log_finds_its_formats(app):
    """The log stores where a format lies, and reads it later from that one section of the file."""
    expected = {text.encode() for text in log_formats()}
    offset, size = dict(app.executable.sections()).get("__oslogstring") or (0, 0)
    found = set(app.executable.data[offset : offset + size].split(b"\0")) - {b""}
    yield from (f"{text}: not in its section" for text in sorted(expected - found))
    yield from (f"{text}: in the section, but no line of the log has it" for text in sorted(found - expected))
    rest = app.executable.data[:offset] + app.executable.data[offset + size :]
    yield from (f"{text}: elsewhere, too" for text in sorted(expected) if b"\0" + text + b"\0" in rest)
    if not expected:
        yield "no line is written to the log"


def link_edit_has_no_hole(app):
    """Every byte of __LINKEDIT belongs to a list, in the order that a Mac's tools expect; between two
    lists are at most the zeros of an alignment."""
    program = app.executable
    (segment,) = (segment for segment in program.segments() if segment.name == "__LINKEDIT")
    symbols, count, strings, strings_size = program.fields(mach_o.SYMBOL_TABLE, "<4I")
    fix_ups = program.fields(mach_o.FIX_UPS, "<10I")
    lists = {
        "rebases": fix_ups[0:2], "bindings": fix_ups[2:4], "weak bindings": fix_ups[4:6],
        "lazy bindings": fix_ups[6:8], "exports": fix_ups[8:10],
        "function starts": program.fields(mach_o.FUNCTION_STARTS, "<2I"),
        "data in code": program.fields(mach_o.DATA_IN_CODE, "<2I"),
        "symbols": (symbols, 16 * count),
        "indirect symbols": indirect_symbols(program),
        "strings": (strings, strings_size),
        "signature": program.fields(mach_o.SIGNATURE, "<2I"),
    }
    end = segment.file_offset
    for name, (start, size) in lists.items():
        if size == 0:
            continue
        most = 15 if name == "signature" else 7
        if not 0 <= start - end <= most or any(program.data[end:start]):
            yield f"{name} begin at {start:#x}, and the list before ends at {end:#x}"
        end = start + size
    if end != segment.file_offset + segment.file_size:
        yield f"the lists end at {end:#x}"


def indirect_symbols(program):
    start, count = program.fields(mach_o.DYNAMIC_SYMBOLS, "<48x2I")
    return start, 4 * count


def nothing_of_it_is_offered_to_others(app):
    # The linked-in library's own, which nobody looks for here.
    free = {"__mh_execute_header", "___dso_handle", "__Znwm", "__ZdaPv", "__ZdlPv", "__ZdlPvm"}
    yield from sorted(app.executable.exported_symbols() - free)


def code_directory(app):
    offset, size = app.executable.fields(mach_o.SIGNATURE, "<2I")
    blobs = mach_o.signature_blobs(app.executable.data[offset : offset + size])
    return blobs, mach_o.CodeDirectory(blobs[0][1])


def signature_is_that_of_the_app(app):
    offset, size = app.executable.fields(mach_o.SIGNATURE, "<2I")
    if offset % 16 or offset + size != len(app.executable.data):
        yield f"{size} bytes at {offset} aren't the end of {len(app.executable.data)}"
    blobs, directory = code_directory(app)
    text = next(segment for segment in app.executable.segments() if segment.name == "__TEXT")
    yield from differences(
        {slot: kind for slot, (kind, _) in blobs.items()},
        {0: 0xFADE0C02, 2: 0xFADE0C01, 0x10000: 0xFADE0B01},
    )
    found = {name: value for name, value in vars(directory).items() if name not in ("blob", "hash_offset")}
    yield from differences(
        found,
        {
            "version": 0x20500,
            "flags": 0x10002,  # ad hoc, not by the linker, with the hardened runtime
            "special_count": 3,
            "page_count": -(-offset // 4096),
            "code_size": offset,
            "hash_size": 32,
            "hash_kind": 2,
            "platform": 0,
            "page_shift": 12,
            "identifier": "com.quorrel.brivane",
            "executable_start": text.file_offset,
            "executable_size": text.file_size,
            "executable_flags": 1,
            "runtime": 14 << 16,
        },
    )


def every_page_has_its_hash(app):
    _, directory = code_directory(app)
    code = app.executable.data[: directory.code_size]
    pages = [code[start : start + 4096] for start in range(0, len(code), 4096)]
    if len(pages) != directory.page_count:
        yield f"{directory.page_count} hashes for {len(pages)} pages"
    for number, page in enumerate(pages):
        if sha256(page) != directory.hash_at(number):
            yield f"page {number}"


def signature_covers_the_other_files(app):
    blobs, directory = code_directory(app)
    sealed = {
        "Info.plist": (-1, app.files["Info.plist"]),
        "the requirements": (-2, blobs[2][1]),
        "CodeResources": (-3, app.files["_CodeSignature/CodeResources"]),
    }
    for name, (slot, data) in sealed.items():
        if directory.hash_at(slot) != sha256(data):
            yield name


def resources_are_sealed(app):
    sealed = plistlib.loads(app.files["_CodeSignature/CodeResources"])
    old, new = {}, {}
    for name, data in app.files.items():
        if name.startswith("Resources/"):
            optional = {"optional": True} if ".lproj/" in name else {}
            sha1 = hashlib.sha1(data).digest()
            old[name] = {"hash": sha1, **optional} if optional else sha1
            new[name] = {"hash2": sha256(data), **optional}
    yield from differences(sealed["files"], old)
    yield from differences(sealed["files2"], new)
    for rules in ("rules", "rules2"):
        if sealed[rules].get("^Resources/") is None or "^.*" not in sealed["rules2"]:
            yield f"{rules} don't cover the resources"


def sizes(app):
    return len(app.files["MacOS/Brivane"]), sum(map(len, app.files.values()))


def it_is_small(app):
    executable, whole = sizes(app)
    if executable > LARGEST_EXECUTABLE or whole > LARGEST_APP:
        yield f"at most {LARGEST_EXECUTABLE} and {LARGEST_APP} are wanted"


def it_names_no_path_of_the_builder(app):
    for path in {str(pathlib.Path.cwd()), str(pathlib.Path.home()), str(app.folder.resolve())}:
        for name, data in app.files.items():
            if path != "/" and (path + "/").encode() in data:
                yield f"{name}: {path}"


def archive_holds_the_app(app):
    (archive,) = app.folder.glob("Brivane-*.zip")
    checksum = f"{hashlib.sha256(archive.read_bytes()).hexdigest()}  {archive.name}\n"
    if (app.folder / f"{archive.name}.sha256").read_text() != checksum:
        yield "the checksum isn't that of the archive"
    expected = {f"{archive.stem}/Brivane.app/Contents/{name}": data for name, data in app.files.items()}
    for name in ("install.sh", "uninstall.sh", "LICENSE"):
        expected[f"{archive.stem}/{name}"] = pathlib.Path(name).read_bytes()
    with zipfile.ZipFile(archive) as opened:
        entries = [entry for entry in opened.infolist() if not entry.is_dir()]
        yield from differences({entry.filename: opened.read(entry) for entry in entries}, expected)
        for entry in entries:
            runs = entry.filename.endswith(("MacOS/Brivane", ".sh"))
            if bool(entry.external_attr >> 16 & 0o111) != runs:
                yield f"{entry.filename}: mode {entry.external_attr >> 16:o}"


def another_reader_agrees(app):
    """LLVM's own tool reads the same of it."""
    path = str(app.contents / "MacOS/Brivane")
    output = subprocess.run(
        ["llvm-objdump-16", "--macho", "--bind", "--lazy-bind", path],
        capture_output=True, text=True, check=False,
    ).stdout
    names = {line.split()[-1] for line in output.splitlines() if line.startswith("__DATA")}
    own = {name for name, _, _ in app.executable.bindings()}
    yield from (f"{name}: read by one of two" for name in sorted(names ^ own))


CHECKS = [
    files_are_those_of_the_tree,
    information_is_complete,
    executable_is_for_apple_silicon,
    load_commands_are_known_and_whole,
    it_runs_from_macos_13_on,
    segments_lie_well,
    pointers_follow_the_program,
    symbols_come_from_their_libraries,
    the_oldest_system_has_all_it_takes,
    it_knows_no_desk,
    another_reader_agrees,
    objective_c_finds_its_lists,
    the_log_finds_its_formats,
    link_edit_has_no_hole,
    nothing_of_it_is_offered_to_others,
    signature_is_that_of_the_app,
    every_page_has_its_hash,
    signature_covers_the_other_files,
    resources_are_sealed,
    icon_has_every_size,
    it_is_small,
    it_names_no_path_of_the_builder,
    archive_holds_the_app,
]


def findings(check, app):
    """What a check says against the app; a file that can't even be read is a finding, too."""
    try:
        return list(check(app))
    except (ValueError, KeyError, IndexError, OSError, struct.error, StopIteration) as error:
        return [f"{type(error).__name__}: {error}"]


def main():
    app = App(pathlib.Path(sys.argv[1]))
    failed = False
    for check in CHECKS:
        found = findings(check, app)
        failed = failed or bool(found)
        print("FAILED" if found else "ok", check.__name__.replace("_", " "))
        for line in found[:20]:
            print(f"    {line}")
    executable, whole = sizes(app)
    print(f"Its executable has {executable} bytes, the whole app {whole}.")
    sys.exit(failed)


if __name__ == "__main__":
    main()
