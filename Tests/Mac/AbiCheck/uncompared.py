#!/usr/bin/env python3
"""Names every declaration written by hand for the Mac that the files beside this one don't compare
with the system's; and what of our headers it can't read.

    uncompared.py           prints a line for each; run at the root of the tree
    uncompared.py --prove   prints a line for each kind of declaration that it would overlook
"""

import pathlib
import re
import sys

CHECKS = pathlib.Path("Tests/Mac/AbiCheck")
HEADERS = [
    *sorted(pathlib.Path("Packaging/macOS/include").rglob("*.h")),
    pathlib.Path("Tests/Mac/Machine/include/dispatch/dispatch.h"),
    pathlib.Path("Tests/Mac/Machine/include/crt_externs.h"),
]
# What the headers are written with, and no part of an interface.
LANGUAGE = r"(BRIVANE|brivane)_\w+|CF_RETURNS_RETAINED|NS_ENUM|NS_OPTIONS|NS_DESIGNATED_INITIALIZER"


def without_comments(text):
    return re.sub(r"//[^\n]*|/\*.*?\*/", "", text, flags=re.DOTALL)


def without_attributes(text):
    text = re.sub(r"\b_?N(ullable|onnull)\b|\b_?n(ullable|onnull)\b|\b__kindof\b", "", text)
    text = re.sub(r"__attribute__\(\(\w+(\([^()]*\))?\)\)|BRIVANE_BRIDGED\(\w+\)", "", text)
    return re.sub(r"\b(NS_DESIGNATED_INITIALIZER|CF_RETURNS_RETAINED)\b", "", text)


def last_word(text):
    return re.findall(r"\w+", re.sub(r"\[[^\]]*\]", "", text))[-1]


def name(word):
    """A plain name is compared where a check begins with it, or where an assertion is about it."""
    subject = rf"([\w:]+(<[^<>]*>)?[(<])*{word}\b"
    check = rf"\b(IS_\w+|GIVES\w*)\(&?{word}\b|static_assert\({subject}|^{word}\("
    return word, [check]


def field(owner, word):
    return f"{owner}.{word}", [rf"\b(HAS_FIELD|offsetof)\({owner}, {word}\b"]


def method(owner, mark, words, is_protocol):
    of_class = rf"\[{owner}(<[^()]*>)? "
    of_object = rf"\[(abi::)?any<{owner}(<[^()]*>)?>\(\) |\[\[{owner} alloc\] "
    receiver = rf"valueOf<id<{owner}>>\(\) " if is_protocol else of_class if mark == "+" else of_object
    arguments = r" ?.*\b".join(words) if words[0].endswith(":") else rf"{words[0]}\]"
    return f"{mark}[{owner} {''.join(words)}]", [f"({receiver}){arguments}"]


def properties(owner, attributes, word):
    if re.search(r"\bclass\b", attributes):
        yield f"{owner}.{word}", [rf"\b{owner}\.{word}\b"]
        return
    setter = f"set{word[0].upper()}{word[1:]}"
    reads, writes = rf"CAN_READ\w*\({owner}, {word}, ", rf"CAN_WRITE\w*\({owner}, {word}, {setter}, "
    yield f"{owner}.{word}", [f"{reads}|{writes}"]
    if "readonly" not in attributes:
        yield f"{owner}.{setter}", [writes]
    for getter in re.findall(r"getter=(\w+)", attributes):
        yield f"{owner}.{getter}", [rf"any<{owner}>\(\) {getter}\]"]


class Reader:
    """Reads a header declaration by declaration; `found` has each with what compares it."""

    def __init__(self, text):
        self.found, self.unread = [], []
        text = without_comments(text).replace("\\\n", " ")
        for word in re.findall(r"^ *# *define (\w+)", text, re.MULTILINE):
            self.add(word)
        text = re.sub(r"^ *#.*", "", text, flags=re.MULTILINE)
        text = re.sub(r'extern "C" \{|@class [^;]*;', "", text).replace("BRIVANE_EXPORT", "extern")
        self.text = " ".join(without_attributes(text).split())
        while self.text:
            if not any(self.take(pattern, read) for pattern, read in self.forms()):
                self.take(r"[^;]*(;|$)", lambda match: self.unread.append(match[0]))

    def take(self, pattern, read):
        match = re.match(pattern, self.text)
        if match:
            self.text = self.text[match.end() :].lstrip()
            read(match)
        return bool(match)

    def forms(self):
        yield r"\}|OS_OBJECT_DECL\(\w+\);", lambda match: None
        yield r"@interface (\w+)(<[^>]*>)? ?(.*?)@end", self.read_class
        yield r"@protocol (\w+)( ?<[^>]*>)? (.*?)@end", self.read_protocol
        yield r"(?:typedef NS_\w+\([\w ]+, (\w+)\)|enum (\w+)?)[^;{]*\{([^}]*)\} ?;", self.read_values
        yield r"typedef struct (?:\w+ )?(?:: public \w+ ?)?\{([^}]*)\}[ *]*(\w+) ?;", self.read_structure
        yield r"typedef [^;(]*\(\*(\w+)\)[^;]*;", self.read_name
        yield r"typedef [^;(]*?(\w+)(?:\[\d+\])? ?;", self.read_name
        yield r"static inline [^;({]*?(\w+)\([^)]*\) \{[^}]*\}", self.read_name
        yield r"(?:extern|static const) [^;(]*?(\w+)(?: = [^;]*)?;", self.read_name
        yield r"\w[^;({]*?(\w+)\((?:[^;{]*)\) ?;", self.read_name

    def read_name(self, match):
        self.add(match[1])

    def add(self, word):
        if not re.fullmatch(LANGUAGE, word):
            self.found.append(name(word))

    def read_values(self, match):
        words = [value.split()[0] for value in match[3].split(",") if value.strip()]
        self.found += [name(word) for word in [match[1] or match[2], *words] if word]

    def read_structure(self, match):
        self.found.append(name(match[2]))
        for text in filter(None, map(str.strip, match[1].split(";"))):
            pointer = re.search(r"\(\*(\w+)\)", text)
            self.found.append(field(match[2], pointer[1] if pointer else last_word(text)))

    def read_class(self, match):
        owner, _, rest = match.groups()
        head = re.match(r"(?:: ?(\w+)(?: ?<\w+>)??)? ?(?:\((\w+)\)|<([\w, ]+)>)? ?(?=[-+@]|$)", rest)
        superclass, category, protocols = head.groups()
        if not category:
            self.found.append((owner, [rf"IS_SUBCLASS\({owner}, {superclass}\)"]))
            generic = match[2] and protocols and protocols in match[2]
            for protocol in [] if generic else (protocols or "").replace(",", " ").split():
                self.found.append((f"{owner}<{protocol}>", [rf"CONFORMS\({owner}, {protocol}\)"]))
        self.read_members(owner, rest[head.end() :], is_protocol=False)

    def read_protocol(self, match):
        self.found.append((match[1], [rf"id<{match[1]}>"]))
        self.read_members(match[1], match[3].replace("@optional", ""), is_protocol=True)

    def read_members(self, owner, text, is_protocol):
        for member in filter(None, map(str.strip, text.split(";"))):
            is_property = re.match(r"@property ?(?:\(([^)]*)\))? ?(.+)", member)
            is_method = re.match(r"([-+]) ?\((?:[^()]|\([^)]*\))*\) ?(.+)", member)
            if is_property:
                self.found += properties(owner, is_property[1] or "", last_word(is_property[2]))
            elif is_method:
                words = re.findall(r"\b\w+:", re.sub(r"\((?:[^()]|\([^)]*\))*\)", "", is_method[2]))
                words = words or [last_word(is_method[2])]
                self.found.append(method(owner, is_method[1], words, is_protocol))
            else:
                self.unread.append(member)


def statements(paths):
    for path in paths:
        text = re.sub(r"^ *#.*", "", without_comments(path.read_text()), flags=re.MULTILINE)
        yield from (" ".join(one.split()) for one in re.split(r"[;{]", text))


def uncompared(headers, checks):
    for path, text in headers:
        reader = Reader(text)
        yield from (f"{path}: can't be read: {one}" for one in reader.unread)
        for declared, patterns in reader.found:
            for pattern in patterns:
                if not any(re.search(pattern, one) for one in checks):
                    yield f"{path}: {declared}"


# A declaration of each kind, and the names under which it is missed.
SAMPLES = {
    "int added(void);": ["added"],
    # Named in what is said of others.
    "typedef long long string_view;": ["string_view"],
    "CFTypeRef added(CFTypeRef one, io_name_t other) CF_RETURNS_RETAINED;": ["added"],
    "static inline int added(int one) { return one; }": ["added"],
    "extern const CFStringRef added;": ["added"],
    "static const CGFloat added = -2.0;": ["added"],
    "#define ADDED 1": ["ADDED"],
    "typedef const struct BRIVANE_BRIDGED(NSData) __Added* AddedRef;": ["AddedRef"],
    "typedef char Added[128];": ["Added"],
    "typedef void (*Added)(void* info);": ["Added"],
    "typedef struct Added { int one; void (*other)(int); int more[5]; } Added;":
        ["Added", "Added.one", "Added.other", "Added.more"],
    "enum { added = 1, more };": ["added", "more"],
    "enum Added : int32_t { added = 0 };": ["Added", "added"],
    "typedef NS_ENUM(NSUInteger, Added) { added = 1 << 2, };": ["Added", "added"],
    "@interface Added : NSObject\n@end": ["Added"],
    "@interface Added<__covariant Kind> : NSObject <NSCopying, Other>\n@end":
        ["Added", "Added<NSCopying>", "Added<Other>"],
    "@interface Added<Kind> : NSArray <Kind>\n@end": ["Added"],
    "@interface NSView (More)\n- (void)added;\n@end": ["-[NSView added]"],
    "@interface NSView (More)\n- (nullable NSArray<NSView*>*)added:(void (^)(id one))a more:(int)b;\n@end":
        ["-[NSView added:more:]"],
    "@interface NSView (More)\n+ (NSView*)viewWithFrame:(NSRect)frame;\n@end":
        ["+[NSView viewWithFrame:]"],
    # Of another class, or another kind, it is compared.
    "@interface NSView (More)\n- (void)orderFrontRegardless;\n@end": ["-[NSView orderFrontRegardless]"],
    "@interface NSMenuItem (More)\n- (NSMenuItem*)separatorItem;\n@end": ["-[NSMenuItem separatorItem]"],
    "@interface NSView (More)\n@property(getter=isAdded) BOOL added;\n@end":
        ["NSView.added", "NSView.setAdded", "NSView.isAdded"],
    "@interface NSView (More)\n@property(readonly, copy) NSArray<NSView*>* added;\n@end":
        ["NSView.added"],
    "@interface NSView (More)\n@property NSRect bounds;\n@end": ["NSView.setBounds"],
    "@interface NSView (More)\n@property(class, readonly) NSView* added;\n@end": ["NSView.added"],
    "@protocol Added <NSObject>\n@optional\n- (void)added:(int)one;\n@end":
        ["Added", "-[Added added:]"],
    "int bitfield : 3;": ["can't be read: int bitfield : 3;"],
}


def overlooked(checks):
    for text, expected in SAMPLES.items():
        if list(uncompared([("added", text)], checks)) != [f"added: {one}" for one in expected]:
            yield text
    # Files that compare nothing miss all there is, and that is a lot.
    if len(list(uncompared([(path, path.read_text()) for path in HEADERS], []))) < 500:
        yield "most of the headers"


def main():
    checks = list(statements(sorted(path for path in CHECKS.iterdir() if path.suffix in (".cpp", ".mm"))))
    if sys.argv[1:] == ["--prove"]:
        lines = overlooked(checks)
    else:
        lines = uncompared([(path, path.read_text()) for path in HEADERS], checks)
    print("\n".join(lines), end="")


if __name__ == "__main__":
    main()
