"""Running programs, and pictures as they come out of them."""

import re
import struct
import subprocess
from dataclasses import dataclass


class Failure(Exception):
    """What was wrong, for the line of the case."""


def run(command, folder, silent=False):
    """Runs a shell command; its output. With `silent`, a word on standard error is a failure too."""
    done = subprocess.run(command, shell=True, cwd=folder, capture_output=True, timeout=120)
    said = done.stderr.decode(errors="replace").strip().splitlines()
    if done.returncode != 0 or (silent and said):
        raise Failure(f"{command}: {said[0] if said else f'exit status {done.returncode}'}")
    return done.stdout


@dataclass
class Picture:
    width: int
    height: int
    rgb: bytes
    depth: int = 24
    dots_per_meter: tuple = (0, 0)

    def require(self, other, tolerance):
        """Fails where a channel differs by more than the tolerance."""
        if (self.width, self.height) != (other.width, other.height):
            raise Failure(f"{self.width}x{self.height} pixels instead of {other.width}x{other.height}")
        differences = [abs(a - b) for a, b in zip(self.rgb, other.rgb)]
        worst = max(differences)
        if worst > tolerance:
            at = differences.index(next(d for d in differences if d > tolerance)) // 3
            count = sum(d > tolerance for d in differences)
            raise Failure(f"{count} of {len(self.rgb)} samples differ, by up to {worst}; first at "
                          f"({at % self.width}, {at // self.width}): {tuple(self.pixel(at))} instead "
                          f"of {tuple(other.pixel(at))}")

    def require_alike(self, other, mean):
        """Fails where the mean difference of the channels is more than that."""
        if (self.width, self.height) != (other.width, other.height):
            raise Failure(f"{self.width}x{self.height} pixels instead of {other.width}x{other.height}")
        found = sum(abs(a - b) for a, b in zip(self.rgb, other.rgb)) / len(self.rgb)
        if found > mean:
            raise Failure(f"samples differ by {found:.1f} in the mean")

    def pixel(self, index):
        return self.rgb[index * 3:index * 3 + 3]


def read_pnm(data):
    """A binary PPM or PGM file of 8 bits."""
    header = re.match(rb"P([56])\s(?:#.*\n)*(\d+)\s(\d+)\s255\s", data)
    if not header:
        raise Failure(f"no PPM file of 8 bits: {data[:20]}")
    width, height = int(header[2]), int(header[3])
    size = width * height * (3 if header[1] == b"6" else 1)
    samples = data[-size:]
    if header[1] == b"5":
        samples = bytes(value for gray in samples for value in (gray, gray, gray))
    return Picture(width, height, samples)


def read_bmp(name):
    """An uncompressed bottom-up BMP file, as it stands in memory."""
    with open(name, "rb") as file:
        data = file.read()
    magic, start, header, width, height, depth, compression, x, y, colors = struct.unpack_from(
        "<2s8xIIiixxHI4xiiI", data)
    masks = (0x7C00, 0x3E0, 0x1F) if depth == 16 else (0xFF0000, 0xFF00, 0xFF)
    if compression == 3:
        masks = struct.unpack_from("<III", data, 54)
    elif compression != 0 or magic != b"BM" or header != 40:
        raise Failure("an unexpected kind of BMP file")
    palette = [data[at:at + 3][::-1] for at in range(54, 54 + 4 * colors, 4)]

    def channel(pixel, mask):
        lowest = mask & -mask
        largest = mask // lowest
        return ((pixel & mask) // lowest * 255 * 2 + largest) // (largest * 2)

    stride = (width * depth + 31) // 32 * 4
    rgb = bytearray()
    for row in range(height - 1, -1, -1):
        line = data[start + row * stride:start + (row + 1) * stride]
        for column in range(width):
            if depth <= 8:
                bit = column * depth
                rgb += palette[line[bit // 8] >> (8 - depth - bit % 8) & (1 << depth) - 1]
            elif depth == 24:
                rgb += line[column * 3:column * 3 + 3][::-1]
            else:
                at = column * depth // 8
                pixel = int.from_bytes(line[at:at + depth // 8], "little")
                rgb += bytes(channel(pixel, mask) for mask in masks)
    return Picture(width, height, bytes(rgb), depth, (x, y))
