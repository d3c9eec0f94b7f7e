"""Reads the parts of a Mac's executable that the checks of the app look at.

It shares no code with what builds and seals the app: two readings of the format that agree are less
likely to be wrong than one.
"""

import struct

CPU_ARM64 = 0x0100000C
EXECUTE = 2

SYMBOL_TABLE = 0x2
DYNAMIC_SYMBOLS = 0xB
LOAD_LIBRARY = 0xC
LOAD_LINKER = 0xE
SEGMENT = 0x19
UUID = 0x1B
SIGNATURE = 0x1D
FUNCTION_STARTS = 0x26
DATA_IN_CODE = 0x29
SOURCE_VERSION = 0x2A
BUILD_VERSION = 0x32
MAIN = 0x80000028
FIX_UPS = 0x80000022
NAMES = {
    SYMBOL_TABLE: "symbol table",
    DYNAMIC_SYMBOLS: "dynamic symbols",
    LOAD_LIBRARY: "library",
    LOAD_LINKER: "dynamic linker",
    SEGMENT: "segment",
    UUID: "UUID",
    SIGNATURE: "signature",
    FUNCTION_STARTS: "function starts",
    DATA_IN_CODE: "data in code",
    SOURCE_VERSION: "source version",
    BUILD_VERSION: "build version",
    MAIN: "main",
    FIX_UPS: "fix-ups",
}


def text_at(data, offset):
    return data[offset : data.index(b"\0", offset)].decode()


class Segment:
    def __init__(self, data, offset):
        self.name = data[offset + 8 : offset + 24].rstrip(b"\0").decode()
        self.address, self.size, self.file_offset, self.file_size = struct.unpack_from(
            "<4Q", data, offset + 24
        )
        self.most_protection, self.protection = struct.unpack_from("<2I", data, offset + 56)


class MachO:
    def __init__(self, data):
        self.data = data
        magic, self.processor, _, self.kind = struct.unpack_from("<4I", data)
        count, size_of_commands, self.flags = struct.unpack_from("<3I", data, 16)
        self.headers_size = 32 + size_of_commands
        if magic != 0xFEEDFACF:
            raise ValueError("not a Mach-O file for one 64-bit processor")
        self.commands = []
        offset = 32
        for _ in range(count):
            command, size = struct.unpack_from("<2I", data, offset)
            self.commands.append((command, offset))
            offset += size

    def all(self, command):
        return [offset for kind, offset in self.commands if kind == command]

    def fields(self, command, form):
        """The fields behind the header of the one command of that kind."""
        (offset,) = self.all(command)
        return struct.unpack_from(form, self.data, offset + 8)

    def segments(self):
        return [Segment(self.data, offset) for offset in self.all(SEGMENT)]

    def sections(self):
        """The name of each section with its place and size in the file."""
        for segment in self.all(SEGMENT):
            (count,) = struct.unpack_from("<I", self.data, segment + 64)
            for section in range(segment + 72, segment + 72 + 80 * count, 80):
                name = self.data[section : section + 16].rstrip(b"\0").decode()
                size, offset = struct.unpack_from("<QI", self.data, section + 40)
                yield name, (offset, size)

    def libraries(self):
        """The paths of the libraries, in the order of their numbers (from 1)."""
        offsets = self.all(LOAD_LIBRARY)
        return [
            text_at(self.data, at + struct.unpack_from("<I", self.data, at + 8)[0]) for at in offsets
        ]

    def symbols(self):
        """Name, type and description of each symbol in the table."""
        start, count, strings, _ = self.fields(SYMBOL_TABLE, "<4I")
        for index in range(count):
            name, kind, _, description, _ = struct.unpack_from(
                "<IBBHQ", self.data, start + 16 * index
            )
            yield text_at(self.data, strings + name), kind, description

    def undefined_symbols(self):
        """What the symbol table takes from elsewhere: (name, number of the library)."""
        return {
            (name, description >> 8)
            for name, kind, description in self.symbols()
            if kind & 0xE0 == 0 and kind & 0x0F == 0x01
        }

    def exported_symbols(self):
        return {
            name for name, kind, _ in self.symbols() if kind & 0xE0 == 0 and kind & 0x0F not in (0, 1)
        }

    def segment_address(self, number, offset):
        return self.segments()[number].address + offset

    def bindings(self):
        """What the dynamic linker looks up at launch or at a first call: (name, number of the
        library, address of the pointer)."""
        _, _, bind, bind_size, weak, weak_size, lazy, lazy_size, _, _ = self.fields(FIX_UPS, "<10I")
        for offset, size in ((weak, weak_size), (bind, bind_size), (lazy, lazy_size)):
            yield from self.read_bindings(Instructions(self.data, offset, size))

    def read_bindings(self, instructions):
        library = name = None
        address = 0
        for operation, small in instructions:
            if operation == 0x10:
                library = small
            elif operation == 0x20:
                library = instructions.number()
            elif operation == 0x30:
                library = small - 16 if small else 0
            elif operation == 0x40:
                name = instructions.text()
            elif operation == 0x60:
                instructions.number()
            elif operation == 0x70:
                address = self.segment_address(small, instructions.number())
            elif operation == 0x80:
                address = wrapped(address + instructions.number())
            elif operation in (0x90, 0xA0, 0xB0):
                yield name, library, address
                address += 8
                if operation == 0xA0:
                    address = wrapped(address + instructions.number())
                if operation == 0xB0:
                    address += 8 * small
            elif operation == 0xC0:
                count, skip = instructions.number(), instructions.number()
                for _ in range(count):
                    yield name, library, address
                    address += 8 + skip

    def moved_addresses(self):
        """The addresses of the pointers that the dynamic linker moves with the program."""
        offset, size = self.fields(FIX_UPS, "<2I")
        instructions = Instructions(self.data, offset, size)
        address = 0
        for operation, small in instructions:
            count, skip = 0, 0
            if operation == 0x20:
                address = self.segment_address(small, instructions.number())
            elif operation == 0x30:
                address = wrapped(address + instructions.number())
            elif operation == 0x40:
                address += 8 * small
            elif operation == 0x50:
                count = small
            elif operation == 0x60:
                count = instructions.number()
            elif operation == 0x70:
                count, skip = 1, instructions.number()
            elif operation == 0x80:
                count, skip = instructions.number(), instructions.number()
            for _ in range(count):
                yield address
                address = wrapped(address + 8 + skip)


def wrapped(address):
    return address & 0xFFFFFFFFFFFFFFFF


class Instructions:
    """One of the dynamic linker's lists: each byte an operation with a small number, some of them
    followed by numbers of seven bits per byte."""

    def __init__(self, data, offset, size):
        self.data = data
        self.position, self.end = offset, offset + size

    def __iter__(self):
        while self.position < self.end:
            byte = self.data[self.position]
            self.position += 1
            yield byte & 0xF0, byte & 0x0F

    def number(self):
        value = shift = 0
        while True:
            byte = self.data[self.position]
            self.position += 1
            value |= (byte & 0x7F) << shift
            shift += 7
            if byte < 0x80:
                return value

    def text(self):
        found = text_at(self.data, self.position)
        self.position += len(found) + 1
        return found


class CodeDirectory:
    def __init__(self, blob):
        self.blob = blob
        self.version, self.flags, self.hash_offset, name_offset = struct.unpack_from(">4I", blob, 8)
        self.special_count, self.page_count, self.code_size = struct.unpack_from(">3I", blob, 24)
        self.hash_size, self.hash_kind, self.platform, self.page_shift = blob[36:40]
        self.identifier = text_at(blob, name_offset)
        self.executable_start, self.executable_size, self.executable_flags = struct.unpack_from(
            ">3Q", blob, 64
        )
        (self.runtime,) = struct.unpack_from(">I", blob, 88)

    def hash_at(self, index):
        """A page's hash; that of a special slot for the slot's number below zero."""
        start = self.hash_offset + index * self.hash_size
        return self.blob[start : start + self.hash_size]


def signature_blobs(signature):
    """The blobs of a signature by their slots; raises ValueError when they don't lie well."""
    magic, size, count = struct.unpack_from(">3I", signature)
    if magic != 0xFADE0CC0 or size > len(signature):
        raise ValueError("no signature where one should be")
    blobs, expected = {}, 12 + 8 * count
    for index in range(count):
        slot, offset = struct.unpack_from(">2I", signature, 12 + 8 * index)
        kind, length = struct.unpack_from(">2I", signature, offset)
        if offset != expected or offset + length > size:
            raise ValueError(f"the blob in slot {slot:#x} doesn't lie where it should")
        expected = offset + length
        blobs[slot] = (kind, signature[offset : offset + length])
    return blobs
