#!/usr/bin/env python3
"""Writes the seed corpora of the fuzz targets into fuzz/corpus/NAME.

Seeds are small valid files of each kind, so the fuzzers start from inputs
that reach deep into the readers:
  drawing  the hand-built drawings of every version from tests/data/drawings
  library  libraries made from those drawings by the lumatrex tool
  bmp      BMP files of every bit depth and compression the decoder reads
Usage: fuzz/make_corpus.py BUILD_DIR   (BUILD_DIR holds apps/cli/lumatrex)
"""
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
CORPUS = ROOT / "fuzz" / "corpus"


def reset(name):
    folder = CORPUS / name
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    return folder


def bmp(width, height, bpp, rows, palette=(), compression=0, masks=()):
    """A BMP with a 40-byte header (plus masks) and the given row bytes."""
    pixels = b"".join(rows)
    colours = b"".join(struct.pack("<BBBB", b, g, r, 0) for r, g, b in palette)
    extra = b"".join(struct.pack("<I", m) for m in masks)
    offset = 14 + 40 + len(extra) + len(colours)
    info = struct.pack("<IiiHHIIiiII", 40, width, height, 1, bpp, compression, len(pixels), 0, 0,
                       len(palette), 0)
    head = b"BM" + struct.pack("<IHHI", offset + len(pixels), 0, 0, offset)
    return head + info + extra + colours + pixels


def bmp_seeds(folder):
    grey = [(i * 17, i * 17, i * 17) for i in range(16)]
    seeds = {
        "1bit": bmp(3, 2, 1, [b"\xa0\0\0\0", b"\x40\0\0\0"], [(0, 0, 0), (255, 255, 255)]),
        "4bit": bmp(3, 2, 4, [b"\x01\x20\0\0", b"\xf0\x30\0\0"], grey),
        "8bit": bmp(2, 2, 8, [b"\x00\x05\0\0", b"\x0a\x0f\0\0"], grey),
        "rle8": bmp(4, 2, 8, [b"\x04\x03\x00\x00\x02\x01\x00\x02\x00\x00\x00\x01"], grey, compression=1),
        "rle4": bmp(4, 1, 4, [b"\x04\x12\x00\x01"], grey, compression=2),
        "16bit": bmp(2, 1, 16, [b"\x1f\x00\xe0\x03"]),
        "24bit": bmp(2, 1, 24, [b"\x00\x00\xff\xff\x00\x00\0\0"]),
        "32bit": bmp(2, 1, 32, [b"\x00\x00\xff\x80\xff\x00\x00\xff"]),
        "bitfields": bmp(2, 1, 32, [b"\x00\x00\xff\x80\xff\x00\x00\xff"], compression=3,
                         masks=(0xFF0000, 0xFF00, 0xFF)),
        "topdown": bmp(2, -2, 24, [b"\x00\x00\xff\x00\xff\x00\0\0", b"\xff\x00\x00\xff\xff\xff\0\0"]),
    }
    for name, data in seeds.items():
        (folder / f"{name}.bmp").write_bytes(data)


# A small R12 file with a block, an insert array and a bulged polyline, so
# that the DXF fuzzer starts from the reader's less common paths.
R12_SEED = "\n".join([
    "0", "SECTION", "2", "HEADER", "9", "$INSUNITS", "70", "4", "0", "ENDSEC",
    "0", "SECTION", "2", "BLOCKS", "0", "BLOCK", "8", "0", "2", "B", "10", "0", "20", "0",
    "0", "CIRCLE", "8", "0", "10", "1", "20", "1", "40", "2", "0", "ENDBLK", "0", "ENDSEC",
    "0", "SECTION", "2", "ENTITIES",
    "0", "LINE", "8", "Walls", "10", "0", "20", "0", "11", "10", "21", "0",
    "0", "ARC", "8", "0", "10", "40", "20", "0", "40", "5", "50", "0", "51", "90",
    "0", "INSERT", "8", "0", "2", "B", "10", "5", "20", "5", "41", "2", "50", "30", "70", "2", "71", "2", "44", "3", "45", "4",
    "0", "POLYLINE", "8", "0", "66", "1", "70", "1",
    "0", "VERTEX", "8", "0", "10", "0", "20", "0", "42", "1",
    "0", "VERTEX", "8", "0", "10", "10", "20", "0", "0", "SEQEND",
    "0", "TEXT", "8", "0", "10", "0", "20", "60", "40", "5", "1", "Hello",
    "0", "ENDSEC", "0", "EOF", ""])


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    tool = pathlib.Path(sys.argv[1]).resolve() / "apps" / "cli" / "lumatrex"
    drawings = sorted((ROOT / "tests" / "data" / "drawings").glob("*.zlt"))

    folder = reset("drawing")
    for drawing in drawings:
        shutil.copy(drawing, folder / drawing.name)

    folder = reset("library")
    with tempfile.TemporaryDirectory() as scratch:
        library = pathlib.Path(scratch) / "shapes.lml"
        for drawing in drawings[-3:]:
            subprocess.run([tool, "lib", library, "add", drawing.stem, drawing], check=True)
            shutil.copy(library, folder / f"library-{drawing.stem}.lml")

    bmp_seeds(reset("bmp"))

    folder = reset("dxf")
    (folder / "r12-entities.dxf").write_text(R12_SEED)
    for drawing in drawings[-2:]:
        subprocess.run([tool, "dxf", "export", drawing, folder / f"{drawing.stem}.dxf"], check=True)
        subprocess.run([tool, "dxf", "export", "--exact", drawing, folder / f"{drawing.stem}-exact.dxf"], check=True)


if __name__ == "__main__":
    main()
