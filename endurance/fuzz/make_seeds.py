#!/usr/bin/env python3
"""Writes the inputs that each fuzz target begins with: make_seeds.py FOLDER, one folder a target below it."""
import collections
import struct
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
MEDIA = HERE.parents[1] / "tests/platform/media"

# Number, format, count, bytes: an entry for each way that a value becomes a text.
EXIF_ENTRIES = [
    (270, 2, 3, b"R98\0"), (272, 2, 9, b"Acme Snap"), (274, 3, 1, 6), (282, 5, 1, (72, 1)), (318, 5, 2, (313, 1000, 2, 3)),
    (37122, 5, 1, (6, 4)), (33434, 5, 1, (1, 250)), (33437, 5, 1, (28, 10)), (37378, 5, 1, (3, 1)),
    (36864, 7, 4, b"0210"), (37121, 7, 4, b"\1\2\3\0"), (37500, 7, 6, b"a\x1f\x80 b\x7f"), (41728, 7, 1, b"\3\0\0\0"),
    (37510, 7, 10, b"ASCII\0\0\0hi"), (37377, 10, 1, (7, 1)), (37380, 10, 1, (2**32 - 1, 3)), (37379, 10, 1, (1, 2)),
    (5001, 6, 1, b"\x80\0\0\0"), (5002, 9, 1, 2**31), (5003, 1, 1, b"\7\0\0\0"), (5004, 99, 1, 7), (5005, 12, 1, (0, 0))]


def exif_directory(order, offset, entries):
    head, values = struct.pack(order + "H", len(entries)), b""
    behind = offset + 2 + 12 * len(entries)
    for tag, kind, count, value in entries:
        if isinstance(value, int):
            value = struct.pack(order + ("H2x" if kind == 3 else "I"), value)
        elif isinstance(value, tuple):
            value = struct.pack(order + "%dI" % len(value), *value)
        if len(value) > 4:
            value, values = struct.pack(order + "I", behind + len(values)), values + value
        head += struct.pack(order + "HHI", tag, kind, count) + value
    return head + values


def exif_block(order, entries, camera):
    start = b"II*\0\10\0\0\0" if order == "<" else b"MM\0*\0\0\0\10"
    second = 8 + len(exif_directory(order, 8, entries + [(34665, 4, 1, 0)]))
    first = exif_directory(order, 8, entries + [(34665, 4, 1, second)])
    return b"Exif\0\0" + start + first + exif_directory(order, second, camera)


def exif_seeds():
    for order in "<>":
        yield b"\xff\xd8\xff\xe1\1\0" + exif_block(order, EXIF_ENTRIES[:5], EXIF_ENTRIES[5:])
        for entry in EXIF_ENTRIES:
            yield exif_block(order, [entry], [entry])
    yield b"no such mark"


def bitmap(width, height, pixels, bits=24):
    info = struct.pack("<IiiHHIIiiII", 40, width, height, 1, bits, 0, len(pixels), 0, 0, 0, 0)
    return b"BM" + struct.pack("<IHHI", 54 + len(pixels), 0, 0, 54) + info + pixels


ORIENTATION = exif_block(">", [(274, 3, 1, 6)], [])


def picture_seeds():
    yield bitmap(8, 4, bytes(96))
    yield bitmap(8, -4, bytes(96))
    yield bitmap(30000, 20000, b"")
    plain = (MEDIA / "printers_red.jpg").read_bytes()
    yield plain
    yield plain.replace(b"\xff\xc0", b"\xff\xc2", 1)
    yield plain[:2] + b"\xff\xe1" + struct.pack(">H", 2 + len(ORIENTATION)) + ORIENTATION + plain[2:]
    yield from media_seeds("gif", "webp", "png")


def media_seeds(*endings):
    for path in sorted(MEDIA.iterdir()):
        if path.suffix[1:] in endings:
            yield path.read_bytes()


def main(folder):
    seeds = collections.defaultdict(list)
    for line in (HERE / "seeds.tsv").read_text("ascii").splitlines()[1:]:
        name, text = line.split("\t")
        seeds[name].append(text.encode().decode("unicode_escape").encode("utf-8"))
    seeds.update(Exif=list(exif_seeds()), Pictures=list(picture_seeds()), Movies=list(media_seeds("avi", "mov", "mpg", "mpeg")),
                 Heif=list(media_seeds("heic", "avif")))
    for name, inputs in seeds.items():
        Path(folder, name).mkdir(parents=True, exist_ok=True)
        for number, data in enumerate(inputs):
            Path(folder, name, "seed_%02d" % number).write_bytes(data)


if __name__ == "__main__":
    main(sys.argv[1])
