#!/usr/bin/env python3
"""Proves what compare.py writes: prints a line for each declaration that isn't compared, and for each
comparison that would not notice another declaration. Run at the root of the tree.
"""

import collections
import json
import pathlib
import re
import subprocess
import tempfile

import compare

CHECKS = pathlib.Path("Tests/Mac/AbiCheck")
# Of the compiler's kinds of declaration those that are compared.
DECLARATIONS = """FunctionDecl VarDecl TypedefDecl FieldDecl EnumDecl EnumConstantDecl ObjCInterfaceDecl
    ObjCMethodDecl ObjCPropertyDecl""".split()
# How the compiler says that a comparison found a difference.
NOTICED = "static assertion failed|invokes a deleted function"


def clang(*arguments, text=""):
    command = ["clang++-16", "-std=c++20", "-fobjc-runtime=macosx-13.0", "-fobjc-arc", "-fblocks", "-fsyntax-only"]
    folders = ["-I.", "-isystem", compare.TESTS, "-isystem", compare.OURS]
    return subprocess.run([*command, *folders, *arguments], input=text, capture_output=True, text=True)


def declared():
    """The name of each declaration of the headers, as the compiler reads them."""
    imports = "".join(f'#import "{path}"\n' for path in compare.HEADERS)
    dumped = clang("-Xclang", "-ast-dump=json", "-x", "objective-c++", "-", text=imports).stdout
    file = ""

    def with_file(place):
        """A place names its file only where the one before it was in another."""
        nonlocal file
        if "offset" in place:
            file = place["file"] = place.get("file", file)
        return place

    nodes, types = [json.loads(dumped, object_hook=with_file)], set()
    while nodes:
        node = nodes.pop()
        kind, name, place = node.get("kind"), node.get("name", ""), node.get("loc", {})
        nodes += node.get("inner", []) if kind != "FunctionDecl" else []
        path = pathlib.Path(place.get("expansionLoc", place).get("file", ""))
        if path not in compare.HEADERS or kind not in DECLARATIONS or re.fullmatch(compare.LANGUAGE, name):
            continue
        # Of a property's methods the getter mostly has its name.
        is_same = node.get("isImplicit") and not re.match("(set|is)[A-Z]", name)
        # A class that is only named ends with its name; an enumeration can have a name for its type, too.
        is_only_named = kind == "ObjCInterfaceDecl" and node["range"]["end"]["offset"] == place["offset"]
        is_known = kind in ("EnumDecl", "TypedefDecl") and name in types
        if name and not is_same and not is_only_named and not is_known:
            types.add(name)
            yield name.split(":")[0]
            yield from (protocol["name"] for protocol in node.get("protocols", []))


def uncompared():
    """What compare.py didn't read, or leaves to files that don't compare it."""
    found = collections.Counter()
    for program, path, reader in [(each, *one) for each in compare.PROGRAMS for one in compare.readers(each)]:
        yield from (f"{path}: can't be read: {one}" for one in reader.unread)
        found.update(name for name, _ in reader.found)
    names = collections.Counter(declared())
    if sum(names.values()) < 500:
        yield "the compiler read few of the headers"
    yield from (f"{name}: overlooked" for name in names - found)
    by_hand = compare.without_comments("".join((CHECKS / file).read_text() for file in compare.PROGRAMS.values()))
    for name in compare.BY_HAND:
        if not found[name] or not re.search(rf"\b{name}\b", by_hand):
            yield f"{name}: not declared, or not compared by hand"


def altered(lines):
    """Each line about a declaration that differs in one thing."""
    fields = ""
    for number, line in enumerate(lines):
        word, name, rest = re.match(r"(\w+)[( ](\(.*\)(?=, )|\w+)(?:, )?(.*)", line).groups()
        if word == "struct":
            fields = rest.strip("{}; ") + ";"
        elif word in ("IS_STRUCT", "HAS_FIELD"):
            yield f"namespace n{number} {{ struct Our{name} {{ char first; {fields} }}; {line} }}"
            if word == "HAS_FIELD":
                retyped = re.sub(compare.FIELD, rf" Wrapped<decltype({name}::\1\2)> \1\2;", fields)
                yield f"namespace m{number} {{ struct Our{name} {{ {retyped} }}; {line} }}"
        elif word in ("IS_REFERENCE", "IS_CONSTANT_REFERENCE"):
            yield line.replace("IS_", "IS_CONSTANT_").replace("CONSTANT_CONSTANT_", "")
        else:
            others = {"IS_VALUE": f"({rest[:-2]}) + 1", "CONFORMS": "NSMenuDelegate", "IS_SUBCLASS": "NSMenuItem"}
            yield f"{word}({name}, {others.get(word, 'Another')});"
            if re.match(r"NS\w+[^ ]*\*", rest):
                yield f"{word}({name}, NSCoder*);"
            for argument in re.finditer(r"argument<.*?>\(\)", line):
                yield f"{line[: argument.start()]}argument<Another>(){line[argument.end() :]}"


def errors(program, lines):
    """The numbers of lines that the compiler takes for wrong, each with what it says of them."""
    with tempfile.TemporaryDirectory() as folder:
        (pathlib.Path(folder) / f"{program}.inc").write_text("\n".join(lines) + "\n")
        said = clang("-ferror-limit=0", f"-I{folder}", CHECKS / compare.PROGRAMS[program]).stderr
    return re.findall(rf"{program}\.inc:(\d+):\d+: error: (.*)", said)


def unnoticed():
    """The comparisons that are wrong, and those that are right of a declaration that differs."""
    for program in compare.PROGRAMS:
        lines = compare.lines_of(program)
        yield from (f"{program}.inc:{number}: {error}" for number, error in errors(program, lines))
        others = ["struct Another {}; template <typename Type> struct Wrapped { Type value; };", *altered(lines)]
        noticed = {int(number) for number, error in errors(program, others) if re.search(NOTICED, error)}
        yield from (line for number, line in enumerate(others[1:], 2) if number not in noticed)


if __name__ == "__main__":
    print("\n".join([*uncompared(), *unnoticed()]), end="")
