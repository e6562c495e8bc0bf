"""Prints the library's containers in gdb, and adds a command that writes an image into a file.

gdb loads this file automatically, under the name <library file>-gdb.py, see docs/debugger.md. It needs gdb with Python 3, and a program with debug information.
"""

import array
import re
import struct
import zlib

import gdb
import gdb.printing
import gdb.types

# Python's codes for array elements, and the library's short names, by C++ type.
ELEMENTS = {
    "unsigned char": ("B", "u8"),
    "unsigned short": ("H", "u16"),
    "short": ("h", "s16"),
    "int": ("i", "int"),
    "float": ("f", "float"),
    "unsigned int": ("I", "unsigned int"),
    "double": ("d", "double"),
    "long": ("q", "std::int64_t"),
    "unsigned long": ("Q", "std::uint64_t"),
}

ROWS_SHOWN = 4
ELEMENTS_SHOWN = 8
# The summary has no extremes of larger blocks: a variable that has not been constructed can look like an image of
# any size, and a line of "info locals" should not take seconds.
MOST_ELEMENTS_SEARCHED = 1 << 24


def number(value):
    return format(value, ".6g") if isinstance(value, float) else str(value)


def read_memory(address, count):
    return gdb.selected_inferior().read_memory(address, count).tobytes()


class Block:
    """The elements of a container: their type, their address, the number of containers that share them."""

    def __init__(self, container):
        pointer = container["buffer_"]
        element_type = gdb.types.get_basic_type(container.type).template_argument(0)
        self.address = int(pointer["_M_ptr"])
        self.code, self.element_name = ELEMENTS[str(gdb.types.get_basic_type(element_type))]
        # Reads the count at its address: to read it by name, gdb would search for the dynamic type of its record, and
        # warn if the library has no debug information.
        control = pointer["_M_refcount"]["_M_pi"]
        count = next(field for field in control.type.target().fields() if field.name == "_M_use_count")
        self.count_address = int(control) + count.bitpos // 8

    def sharers(self):
        """The reference count of the block."""
        return struct.unpack("i", read_memory(self.count_address, 4))[0]

    def read(self, first, count):
        """An array of `count` elements, from the element `first` on."""
        elements = array.array(self.code)
        where = self.address + first * elements.itemsize
        elements.frombytes(read_memory(where, count * elements.itemsize))
        return elements

    def ownership(self):
        return f"shared by {self.sharers()}" if self.address else "no block"

    def extremes(self, count):
        """A text: the smallest and the largest of the first `count` elements except NaN."""
        if count > MOST_ELEMENTS_SEARCHED:
            return "extremes not searched"
        elements = self.read(0, count)
        numbers = [e for e in elements if e == e] if self.code in "fd" else elements
        nans = len(elements) - len(numbers)
        texts = [f"values {number(min(numbers))} to {number(max(numbers))}"] if len(numbers) else []
        return ", ".join(texts + ([f"{nans} NaN"] if nans else []))

    def line(self, first, count):
        """A text: `count` elements from `first` on, ELEMENTS_SHOWN at most."""
        shown = [number(e) for e in self.read(first, min(count, ELEMENTS_SHOWN))]
        return " ".join(shown + ["..."] * (count > ELEMENTS_SHOWN))


class Image:
    """An IppIMemory<T> of the program."""

    def __init__(self, value):
        self.width = int(value["size_"]["width"])
        self.height = int(value["size_"]["height"])
        self.step = int(value["step_"])
        self.image_step = int(value["imageStep_"])
        self.block = Block(value)

    def has_pixels(self):
        return self.block.address != 0 and self.width > 0 and self.height > 0

    def pixels(self):
        return self.block.read(0, self.width * self.height)


class ImagePrinter:
    """IppIMemory<T>: its size, the number of its sharers and its extremes in one line, then the beginnings of its rows."""

    def __init__(self, value):
        self.image = Image(value)

    def to_string(self):
        image = self.image
        texts = [
            f"{image.block.element_name} image {image.width} x {image.height}",
            f"imageStep {image.image_step}",
            f"step {image.step}",
        ]
        try:
            texts.append(image.block.ownership())
            if image.has_pixels():
                texts.append(image.block.extremes(image.width * image.height))
        except gdb.MemoryError:
            texts.append("its pixels cannot be read")
        return ", ".join(texts)

    def children(self):
        image = self.image
        if not image.has_pixels():
            return
        try:
            for row in range(min(image.height, ROWS_SHOWN)):
                yield f"row {row}", image.block.line(row * image.width, image.width)
        except gdb.MemoryError:
            return


class BufferPrinter:
    """IppSMemory<T>: its length, the number of its sharers, its extremes and its first elements in one line."""

    def __init__(self, value):
        self.length = int(value["length_"])
        self.block = Block(value)

    def to_string(self):
        texts = [f"{self.block.element_name} buffer of {self.length}"]
        try:
            texts.append(self.block.ownership())
            if self.block.address and self.length > 0:
                texts.append(self.block.extremes(self.length))
                texts.append("from " + self.block.line(0, self.length))
        except gdb.MemoryError:
            texts.append("its elements cannot be read")
        return ", ".join(texts)


def grey_levels(image):
    """Rows of grey levels in the format of a file, the highest level, and a text about the conversion.

    Unsigned pixels are not converted. The other types have no natural level for white: their lowest value becomes
    black and their highest white.
    """
    pixels = image.pixels()
    code = image.block.code
    if code in "BH":
        if code == "H":
            pixels.byteswap()  # the files have the high byte first, the processor the low one
        bytes_per_row = image.width * pixels.itemsize
        levels, highest, remark = pixels.tobytes(), 255 if code == "B" else 65535, "values as they are"
    else:
        finite = [p for p in pixels if p - p == 0] or [0]
        low, high = min(finite), max(finite)
        span = (high - low) or 1

        def level(p):
            if p - p == 0:
                return round((p - low) * 255 / span)
            return 255 if p > 0 else 0  # an infinity; a NaN becomes black

        bytes_per_row = image.width
        levels, highest = bytes(map(level, pixels)), 255
        remark = f"{number(low)} is black, {number(high)} is white"
    rows = [levels[r * bytes_per_row:(r + 1) * bytes_per_row] for r in range(image.height)]
    return rows, highest, remark


def write_pgm(file, image, rows, highest):
    file.write(f"P5\n{image.width} {image.height}\n{highest}\n".encode())
    file.writelines(rows)


def write_png(file, image, rows, highest):
    def chunk(name, content):
        checksum = zlib.crc32(name + content)
        file.write(struct.pack(">I", len(content)) + name + content + struct.pack(">I", checksum))

    file.write(b"\x89PNG\r\n\x1a\n")
    chunk(b"IHDR", struct.pack(">IIBBBBB", image.width, image.height, 8 if highest == 255 else 16, 0, 0, 0, 0))
    chunk(b"IDAT", zlib.compress(b"".join(b"\0" + row for row in rows)))
    chunk(b"IEND", b"")


class WriteImage(gdb.Command):
    """Write an image of the program into a picture file.

Usage: zorvan-write IMAGE FILE.pgm|FILE.png

IMAGE is an expression of type IppIMemory<T>, without blanks or in quotes. 8-bit and 16-bit unsigned pixels are
written as they are; of other types the lowest value becomes black and the highest white."""

    def __init__(self):
        super().__init__("zorvan-write", gdb.COMMAND_DATA, gdb.COMPLETE_EXPRESSION)

    def invoke(self, argument, from_tty):
        words = gdb.string_to_argv(argument)
        if len(words) != 2:
            raise gdb.GdbError("Use: zorvan-write IMAGE FILE.pgm|FILE.png")
        expression, path = words
        write = {".pgm": write_pgm, ".png": write_png}.get(path[-4:].lower())
        if not write:
            raise gdb.GdbError(f"{path}: neither .pgm nor .png")
        try:
            image = self.image_of(expression)
            rows, highest, remark = grey_levels(image)
            with open(path, "wb") as file:
                write(file, image, rows, highest)
        except gdb.error as error:
            raise gdb.GdbError(f"{expression}: {error}") from error
        except OSError as error:
            raise gdb.GdbError(f"{path}: {error.strerror}") from error
        print(f"{path}: {image.width} x {image.height}, {remark}")

    @staticmethod
    def image_of(expression):
        value = gdb.parse_and_eval(expression)
        if value.type.strip_typedefs().code in (gdb.TYPE_CODE_PTR, gdb.TYPE_CODE_REF):
            value = value.referenced_value()
        basic_type = gdb.types.get_basic_type(value.type)
        if not IMAGE_TYPE.match(str(basic_type)):
            raise gdb.GdbError(f"{expression} is no image but {value.type}")
        if not basic_type.fields():
            raise gdb.GdbError(f"{expression} has an incomplete type: compile the program with "
                               "-fstandalone-debug")
        image = Image(value)
        if not image.has_pixels():
            raise gdb.GdbError(f"{expression} has no pixels")
        return image


IMAGE_TYPE = re.compile(r"^Zorvan::Ipp::Image::IppIMemory<.*>$")
BUFFER_TYPE = re.compile(r"^Zorvan::IppS::IppSMemory<.*>$")


def of_complete_type(printer):
    """`printer` for values whose fields are known. Clang describes the containers in the library only, which may have
    no debug information."""

    def choose(value):
        return printer(value) if gdb.types.get_basic_type(value.type).fields() else None

    return choose


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter("zorvan_ipp")
    collection.add_printer("IppIMemory", IMAGE_TYPE.pattern, of_complete_type(ImagePrinter))
    collection.add_printer("IppSMemory", BUFFER_TYPE.pattern, of_complete_type(BufferPrinter))
    return collection


# The library may be loaded several times in a session: the newest file replaces the others.
gdb.printing.register_pretty_printer(gdb.current_objfile(), printers(), replace=True)
WriteImage()
