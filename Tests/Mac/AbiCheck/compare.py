#!/usr/bin/env python3
"""Writes the comparison of the declarations made by hand for the Mac with the system's: a line in the words
of AbiCheck.h for each declaration, which the files beside this one include. Compiled with a Mac's kit, a
line that isn't true there is an error; compiled elsewhere, a declaration that was misread is one.

    compare.py FOLDER    writes CInterfaces.inc and AppKit.inc there; run at the root of the tree
"""

import pathlib
import re
import sys

OURS, TESTS = pathlib.Path("Packaging/macOS/include"), pathlib.Path("Tests/Mac/Machine/include")
HEADERS = [*sorted(OURS.rglob("*.h")), TESTS / "dispatch/dispatch.h", TESTS / "crt_externs.h"]
OBJECTIVE_C = ("AppKit", "Foundation", "QuartzCore")
PROGRAMS = {"CInterfaces": "CInterfaces.cpp", "AppKit": "AppKit.mm"}

# What the headers are written with, and no part of an interface.
LANGUAGE = r"(BRIVANE|brivane)_\w+|CF_RETURNS_RETAINED|NS_ENUM|NS_OPTIONS|NS_DESIGNATED_INITIALIZER"
# What no such line can say: macros that are no number, what only a Mac declares, what kits declare in different
# ways, what processors number differently, arrays of objects. The files beside this one compare it.
BY_HAND = """CFSTR DISPATCH_QUEUE_SERIAL DISPATCH_SOURCE_TYPE_SIGNAL OS_LOG_DEFAULT os_log os_log_with_type
    kIOServicePlane UCKeyboardLayout _dispatch_source_type_signal dispatch_get_main_queue _os_log_default
    _os_log_impl __dso_handle NSTextAlignmentRight NSTextAlignmentCenter
    arrayWithObjects dictionaryWithObjects""".split()
# Numbers whose values some kits name.
NUMBERS = ["dispatch_qos_class_t", "os_log_type_t"]

# With the field's name, of a pointer to a function the first.
FIELD = r"[^;{]*?(?:\(\*(\w+)\)\([^;]*|(\w+)(?:\[\d+\])?);"
# Of an argument or a result; blocks have parentheses of their own.
TYPE = r"\((?:[^()]|\([^)]*\))*\)"


def without_comments(text):
    return re.sub(r"//[^\n]*|/\*.*?\*/", "", text, flags=re.DOTALL)


def without_attributes(text):
    text = re.sub(r"\b_?N(ullable|onnull)\b|\b_?n(ullable|onnull)\b|\b__(kindof|covariant)\b ?", "", text)
    text = re.sub(r"__attribute__\(\(\w+(\([^()]*\))?\)\)|BRIVANE_BRIDGED\(\w+\)", "", text)
    return re.sub(r"\b(NS_DESIGNATED_INITIALIZER|CF_RETURNS_RETAINED)\b", "", text)


class Reader:
    """Reads a header declaration by declaration: `found` has the name of each with the lines that compare it."""

    def __init__(self, text):
        self.found, self.unread = [], []
        text = without_comments(text).replace("\\\n", " ")
        for word, rest in re.findall(r"^ *# *define (\w+)(.*)", text, re.MULTILINE):
            self.add(word, f"IS_VALUE({word},{rest});")
        text = re.sub(r"^ *#.*", "", text, flags=re.MULTILINE)
        text = re.sub(r'extern "C" \{|@class [^;]*;', "", text).replace("BRIVANE_EXPORT", "extern")
        self.text = " ".join(without_attributes(text).split())
        while self.text:
            if not any(self.take(pattern, read) for pattern, read in self.forms()):
                self.take(r"[^;]*(;|$)", lambda *_: self.unread.append(self.text.split(";")[0]))

    def take(self, pattern, read):
        match = re.match(pattern, self.text)
        if match:
            read(*match.groups())
            self.text = self.text[match.end() :].lstrip()
        return bool(match)

    def add(self, word, *lines):
        if not re.fullmatch(LANGUAGE, word):
            self.found.append((word, [] if word in BY_HAND else list(lines)))

    def forms(self):
        yield r"\}|OS_OBJECT_DECL\(\w+\);", lambda: None
        yield r"@interface (\w+)(<[^>]*>)? ?(.*?)@end", self.read_class
        yield r"@protocol (\w+)(?: ?<[^>]*>)? (.*?)@end", self.read_protocol
        yield r"(?:typedef NS_\w+\(([\w ]+), (\w+)\)|enum (\w+)?(?: ?: (\w+))?) ?\{([^}]*)\} ?;", self.read_values
        yield r"typedef struct (?:\w+ )?\{([^}]*)\} (\w+) ?;", self.read_structure
        yield r"typedef (const )?struct [^;*()]*\* ?(\w+) ?;", self.read_reference
        yield r"typedef ([^;(]*\(\*)(\w+)(\)[^;]*);", self.read_type
        yield r"typedef ([^;(]*?) ?(\w+)(\[\d+\])? ?;", self.read_type
        yield r"(?:extern|static) (?:const )?([^;({]*?) ?(\w+)(?: = ([^;]*))?;", self.read_object
        yield r"(?:extern |static inline )?(\w[\w* ]*[* ])(\w+)(\([^;{}]*\)) ?(?:;|\{[^}]*\})", self.read_function

    def read_values(self, type_in_macro, name_in_macro, name, type, values):
        if name or name_in_macro:
            self.add(name or name_in_macro, f"IS_NUMBER({name or name_in_macro}, {type or type_in_macro});")
        for value in filter(None, map(str.strip, values.split(","))):
            word, _, number = value.partition(" = ")
            self.add(word, f"IS_VALUE({word}, {number});")

    def read_structure(self, fields, name):
        self.add(name, f"struct Our{name} {{ {fields}}};", f"IS_STRUCT({name});")
        for field in re.findall(FIELD, fields):
            self.add("".join(field), f"HAS_FIELD({name}, {''.join(field)});")

    def read_reference(self, constant, name):
        self.add(name, f"{'IS_CONSTANT_REFERENCE' if constant else 'IS_REFERENCE'}({name});")

    def read_type(self, before, name, after):
        self.add(name, f"{'IS_NUMBER' if name in NUMBERS else 'IS_TYPE'}({name}, {before}{after or ''});")

    def read_object(self, type, name, value):
        values = [f"IS_VALUE({name}, {value});"] if value else []
        self.add(name, f"GIVES(({name}), {type});", *values)

    def read_function(self, result, name, arguments):
        self.add(name, f"IS_FUNCTION({name}, {result}(*){arguments});")

    def read_class(self, name, parameters, rest):
        head = re.match(r"(?:: ?(\w+)(?: ?<\w+>)??)? ?(?:\((\w+)\)|<([\w, ]+)>)? ?(?=[-+@]|$)", rest)
        superclass, category, protocols = head.groups()
        if not category:
            self.add(name, f"IS_SUBCLASS({name}, {superclass});")
            generic = parameters and protocols and protocols in parameters
            for protocol in [] if generic else re.findall(r"\w+", protocols or ""):
                self.add(protocol, f"CONFORMS({name}, {protocol});")
        full_name = name + (parameters or "")
        self.read_members(rest[head.end() :], full_name, f"{full_name}*", f"any<{full_name}>()")

    def read_protocol(self, name, rest):
        self.read_members(rest.replace("@optional", ""), "", "id", f"valueOf<id<{name}>>()")

    def read_members(self, text, of_class, own_type, of_object):
        for member in filter(None, map(str.strip, text.split(";"))):
            is_property = re.match(r"@property ?(?:\(([^)]*)\))? ?(.+?) ?(\w+)$", member)
            is_method = re.match(rf"([-+]) ?({TYPE}) ?(.+)", member)
            if is_property:
                self.read_property(of_class, of_object, *is_property.groups(""))
            elif is_method:
                mark, result, rest = is_method.groups()
                allocated = f"[{of_class} alloc]" if re.match("init[A-Z]", rest) else of_object
                result = result[1:-1].replace("instancetype", own_type)
                self.read_method(of_class if mark == "+" else allocated, result, rest)
            else:
                self.unread.append(member)

    def read_property(self, of_class, of_object, attributes, type, name):
        is_of_class = re.search(r"\bclass\b", attributes)
        self.add(name, f"GIVES(({of_class if is_of_class else of_object}.{name}), {type});")
        if "readonly" not in attributes:
            setter = f"set{name[0].upper()}{name[1:]}"
            self.add(setter, f"GIVES(([{of_object} {setter}:argument<{type}>()]), void);")
        for getter in re.findall(r"getter=(\w+)", attributes):
            self.add(getter, f"GIVES(([{of_object} {getter}]), {type});")

    def read_method(self, receiver, result, rest):
        parts = re.findall(rf"(\w+:) ?({TYPE})", rest) or [(rest, "")]
        message = " ".join(part + (f"argument<{type[1:-1].strip()}>()" if type else "") for part, type in parts)
        self.add(parts[0][0].rstrip(":"), f"GIVES(([{receiver} {message}]), {result.strip()});")


def readers(program):
    for path in HEADERS:
        if any(folder in path.parts for folder in OBJECTIVE_C) == (program == "AppKit"):
            yield path, Reader(path.read_text())


def lines_of(program):
    return [line for _, reader in readers(program) for _, lines in reader.found for line in lines]


def write(folder):
    folder.mkdir(parents=True, exist_ok=True)
    for program in PROGRAMS:
        (folder / f"{program}.inc").write_text("\n".join(lines_of(program)) + "\n")


if __name__ == "__main__":
    write(pathlib.Path(sys.argv[1]))
