"""Files that other programs write, as the control shows them and as another decoder does."""

from dataclasses import dataclass

from pixels import Failure, read_bmp, read_pnm, run

# What lies under transparent pixels is black; the first frame of many; the orientation is not applied.
IMAGEMAGICK = "convert {}[0] -background black -alpha remove -alpha off -colorspace sRGB -depth 8 ppm:-"
OPAQUE = "convert {}[0] -alpha off -depth 8 ppm:-"
COALESCED = "convert {}[0] -alpha set -background black -layers flatten -alpha off -depth 8 ppm:-"
RGBA = "tiff2rgba -c none {0} {0}.rgba && convert {0}.rgba -alpha off -depth 8 ppm:-"
DJPEG = "djpeg -pnm {}"

INCH = 11811  # 300 dots an inch, per metre


@dataclass
class Case:
    name: str
    make: str  # {} is the file to be made
    reference: str = IMAGEMAGICK
    tolerance: int = 0
    dots: int = INCH  # 0: the file does not say
    depth: int = 0  # 0: any


def tiff_by_imagemagick():
    kinds = [  # name, options, tolerance
        ("bilevel", "bilevel.miff -type Bilevel", 0),
        ("gray", "gray.miff -type Grayscale", 0),
        ("gray, 16 bits", "gray.miff -type Grayscale -depth 16 -define quantum:format=unsigned", 0),
        ("palette", "p200.miff -type Palette", 0),
        ("palette of 13", "p13.miff -type Palette", 0),
        ("RGB", "rgb.miff -type TrueColor", 0),
        ("RGB, 16 bits", "wide.miff -type TrueColor -depth 16", 1),
        ("RGB with alpha", "rgba.miff -type TrueColorAlpha", 1),
        ("RGB with associated alpha", "rgba.miff -type TrueColorAlpha -define tiff:alpha=associated", 1),
        ("gray with alpha", "rgba.miff -colorspace Gray -type GrayscaleAlpha", 1),
        ("RGB with alpha, 16 bits", "rgba.miff -type TrueColorAlpha -depth 16", 1),
        ("CMYK", "cmyk.miff", 1),
        ("CMYK, 16 bits", "cmyk.miff -depth 16", 1),
    ]
    for kind, options, tolerance in kinds:
        for compression in ("none", "LZW", "Zip", "RLE"):
            yield Case(f"tiff, {kind}, {compression}",
                       f"convert {options} -compress {compression} TIFF:{{}}",
                       tolerance=tolerance)
    for bits in (2, 4, 6, 10, 12, 14):
        yield Case(f"tiff, gray, {bits} bits",
                   f"convert gray.miff -type Grayscale -depth {bits} -compress none TIFF:{{}}", tolerance=1)
        yield Case(f"tiff, RGB, {bits} bits",
                   f"convert rgb.miff -type TrueColor -depth {bits} -compress LZW TIFF:{{}}", tolerance=1)
    for compression in ("Fax", "Group4"):
        for order in ("msb", "lsb"):
            for polarity in ("white", "black"):
                yield Case(f"tiff, {compression}, {order} first, 0 is {polarity}",
                           f"convert bilevel.miff -type Bilevel -define tiff:fill-order={order} -define "
                           f"quantum:polarity=min-is-{polarity} -compress {compression} TIFF:{{}}", depth=1)
    for endian in ("msb", "lsb"):
        for kind in ("rgb.miff", "wide.miff -depth 16", "p200.miff -type Palette"):
            yield Case(f"tiff, {kind}, {endian} first",
                       f"convert {kind} -compress none -define tiff:endian={endian} TIFF:{{}}", tolerance=1)
    for name in ("rgb", "gray"):
        yield Case(f"tiff, {name}, JPEG", f"convert {name}.miff -compress JPEG -quality 80 TIFF:{{}}",
                   tolerance=1)
        yield Case(f"tiff, {name}, tiles",
                   f"convert {name}.miff -compress LZW -define tiff:tile-geometry=32x16 TIFF:{{}}")
    yield Case("tiff, 64-bit", "convert rgb.miff -compress none TIFF64:{}")
    yield Case("tiff, several pages", "convert p200.miff rgb.miff bilevel.miff -compress none TIFF:{}")
    for orientation in ("TopRight", "BottomLeft", "LeftTop"):
        yield Case(f"tiff, orientation {orientation}",
                   f"convert rgb.miff -compress none -orient {orientation} TIFF:{{}}")
    yield Case("tiff, CIE L*a*b*", "convert rgb.miff -colorspace Lab TIFF:{}", RGBA)
    yield Case("tiff, dots per centimetre", "convert rgb.miff -units PixelsPerCentimeter -density 118 TIFF:{}",
               dots=11800)
    yield Case("tiff, units unknown", "cp rgb.tif {0} && tiffset -s 296 1 {0}", dots=0)


def tiff_by_its_tools():
    every = ["rgb", "gray", "p200", "bilevel"]
    layouts = [
        ("strips", ""), ("one row a strip", "-r 1"), ("strips of 7 rows", "-r 7"),
        ("tiles", "-t -w 16 -l 16"), ("wide tiles", "-t -w 128 -l 16"), ("big-endian", "-B"),
        ("64-bit", "-8"), ("64-bit big-endian tiles", "-8 -B -t -w 32 -l 48"), ("bits reversed", "-f lsb2msb"),
    ]
    codecs = ["none", "packbits", "lzw", "zip", "zstd", "lzma"]
    for layout, options in layouts:
        for codec in codecs:
            for source in every:
                yield Case(f"tiff, {source}, {codec}, {layout}",
                           f"tiffcp {options} -c {codec} {source}.tif {{}}")
        for codec in ("lzw:2", "zip:2"):
            for source in ("rgb", "gray", "p200"):
                yield Case(f"tiff, {source}, {codec}, {layout}",
                           f"tiffcp {options} -c {codec} {source}.tif {{}}")
        for codec in ("g3", "g3:1d", "g3:2d", "g3:fill", "g3:2d:fill", "g4"):
            yield Case(f"tiff, {codec}, {layout}", f"tiffcp {options} -c {codec} bilevel.tif {{}}")
    for layout in ("-r 16", "-r 32", "-t -w 16 -l 16", "-t -w 128 -l 16", "-8 -B -t -w 32 -l 48"):
        for codec, source in (("jpeg", "rgb"), ("jpeg:r", "rgb"), ("jpeg", "gray")):
            yield Case(f"tiff, {source}, {codec}, {layout}",
                       f"tiffcp {layout} -c {codec} {source}.tif {{}}", tolerance=1)
    for codec in ("none", "lzw", "lzw:2", "packbits", "zip"):
        for tiles in ("", "-t -w 16 -l 32"):
            yield Case(f"tiff, planes, {codec} {tiles}",
                       f"tiffcp -p separate {tiles} -c {codec} rgb.tif {{}}")
            yield Case(f"tiff, CMYK planes, {codec} {tiles}",
                       f"tiffcp -p separate {tiles} -c {codec} cmyk.tif {{}}",
                       "tiffcp -s -c none {0} {0}.in && tiffcp -s -p contig {0}.in {0}.tif && "
                       + IMAGEMAGICK.format("{0}.tif"),
                       tolerance=1)
    yield Case("tiff, dithered", "tiffdither -c g4 gray.tif {}", depth=1)
    yield Case("tiff, median cut", "tiffmedian -C 50 rgb.tif {}", depth=8)
    yield Case("tiff, facsimile",
               "tiffcp -c g3 bilevel.tif {0}.in && tiffcp -c g3:1d {0}.in {0}", depth=1)
    yield Case("tiff, gray made of colour", "tiff2bw -c lzw rgb.tif {}")
    yield Case("tiff, of a PPM file", "ppm2tiff -c lzw:2 -R 300 rgb.ppm {}")
    yield Case("tiff, palette made colour", "pal2rgb p200.tif {}")


def png():
    depths = {0: (1, 2, 4, 8, 16), 2: (8, 16), 3: (1, 2, 4, 8), 4: (8, 16), 6: (8, 16)}
    names = {0: "gray", 2: "RGB", 3: "palette", 4: "gray with alpha", 6: "RGB with alpha"}
    for color, bits in ((color, bits) for color in depths for bits in depths[color]):
        for interlace in ("none", "PNG"):
            for clear in (False, True) if color in (0, 2, 3) else (True,):
                if color in (0, 4):
                    source = "keyed.miff" if clear and color == 0 else "rgba.miff" if clear else "gray.miff"
                    options = "-colorspace Gray"
                elif color == 3:
                    source = "keyed.miff" if clear else "rgb.miff"
                    options = f"+dither -colors {max(2, min(2 ** bits, 200))}"
                else:
                    source = ("wide.miff" if bits == 16 else "rgb.miff") if not clear else \
                        "rgba.miff" if color == 6 else "keyed.miff"
                    options = ""
                if color == 0 and bits < 8:
                    options += f" -depth {bits}"
                yield Case(f"png, {names[color]}, {bits} bits, interlace {interlace}"
                           + (", clear" if clear else ""),
                           f"convert {source} {options} -interlace {interlace} -define "
                           f"png:color-type={color} -define png:bit-depth={bits} PNG:{{}}",
                           tolerance=1 if clear or bits == 16 else 0)
    for size in ("1x1", "2x3", "7x1", "1x9", "5x5"):
        yield Case(f"png, {size} interlaced",
                   f"convert -size {size} plasma:red-blue -units PixelsPerInch -density 300 -interlace PNG PNG24:{{}}")
    yield Case("png, without resolution", "convert rgb.miff -strip -define png:exclude-chunks=all PNG:{}",
               dots=0)


def jpeg():
    switches = [
        "", "-progressive", "-arithmetic", "-optimize", "-rgb", "-grayscale", "-restart 1",
        "-progressive -arithmetic", "-quality 5", "-quality 100", "-sample 1x1", "-sample 2x1",
        "-sample 1x2", "-sample 2x2", "-sample 4x1", "-sample 1x4", "-sample 4x2",
        "-sample 2x2,1x2,2x1", "-progressive -sample 1x1", "-dct float", "-quality 90,10", "-smooth 20",
    ]
    for switch in switches:
        yield Case(f"jpeg, {switch or 'plain'}", f"cjpeg {switch} rgb.ppm >{{}}", DJPEG, dots=0)
    yield Case("jpeg, of a gray file", "cjpeg gray.pgm >{}", DJPEG, dots=0, depth=8)
    for change in ("-rotate 90", "-flip horizontal", "-crop 33x20+8+8", "-grayscale", "-progressive",
                   "-arithmetic", "-restart 2B", "-copy all"):
        yield Case(f"jpeg, jpegtran {change}", f"jpegtran {change} rgb.jpg >{{}}", DJPEG, dots=0)
    # The inks are mixed as 8-bit numbers here, as 16-bit ones there.
    for quality in (50, 95):
        for interlace in ("none", "JPEG"):
            yield Case(f"jpeg, CMYK, quality {quality}, interlace {interlace}",
                       f"convert cmyk.miff -quality {quality} -interlace {interlace} JPEG:{{}}",
                       tolerance=1, depth=24)
            for sampling in ("4:4:4", "4:2:0"):
                yield Case(f"jpeg, {sampling}, quality {quality}, interlace {interlace}",
                           f"convert rgb.miff -quality {quality} -interlace {interlace} "
                           f"-sampling-factor {sampling} JPEG:{{}}", DJPEG)
    for orientation in ("TopRight", "RightTop"):
        yield Case(f"jpeg, orientation {orientation}",
                   f"convert rgb.miff -orient {orientation} JPEG:{{}}", DJPEG)
    yield Case("jpeg, dots per centimetre",
               "convert rgb.miff -units PixelsPerCentimeter -density 118 JPEG:{}", DJPEG, dots=11800)
    yield Case("jpeg, RGB with Adobe's marker", "convert rgb.miff -colorspace RGB -set colorspace sRGB "
               "-sampling-factor 1x1 -define jpeg:colorspace=RGB JPEG:{}", DJPEG)


def gif():
    for colors in (2, 3, 4, 7, 16, 17, 100, 256):
        for interlace in ("none", "GIF"):
            yield Case(f"gif, {colors} colours, interlace {interlace}",
                       f"convert rgb.miff -colors {colors} -interlace {interlace} GIF:{{}}", dots=0)
    yield Case("gif, version 87a", "convert rgb.miff -colors 50 GIF87:{}", dots=0)
    for interlace in ("none", "GIF"):
        yield Case(f"gif, transparent, interlace {interlace}",
                   f"convert keyed.miff -interlace {interlace} GIF:{{}}", dots=0)
        for place in ("90x70+11+7", "61x43+20+20", "61x43+0+0", "100x43+39+0"):
            yield Case(f"gif, frame at {place}, interlace {interlace}",
                       f"convert p200.miff -repage {place} -interlace {interlace} GIF:{{}}", COALESCED,
                       dots=0)
        yield Case(f"gif, transparent frame at 90x70+11+7, interlace {interlace}",
                   f"convert keyed.miff -repage 90x70+11+7 -interlace {interlace} GIF:{{}}", COALESCED,
                   dots=0)
    yield Case("gif, animation", "convert -delay 10 p200.miff rgb.miff bilevel.miff -loop 0 GIF:{}", dots=0)
    yield Case("gif, frame's own palette",
               "convert p13.miff p200.miff GIF:{0}.in && gifbuild -d {0}.in | gifbuild >{0}", dots=0)
    yield Case("gif, comment", "convert p200.miff -set comment 'a comment' GIF:{}", dots=0)
    yield Case("gif, written anew", "convert p200.miff GIF:{0}.in && giffix <{0}.in >{0}",
               dots=0)


def bmp():
    for source in ("bilevel", "p2", "p13", "gray", "p200", "rgb"):
        for version in ("BMP2", "BMP3", "BMP"):
            for compression in ("none", "RLE") if source in ("gray", "p200") else ("none",):
                yield Case(f"bmp, {version}, {source}, {compression}",
                           f"convert {source}.miff +dither -compress {compression} {version}:{{}}",
                           dots=0 if version == "BMP2" else INCH)
    # Of 4 bits ImageMagick makes 0 to 240 instead of 0 to 255.
    for subtype, tolerance in (("RGB565", 1), ("RGB555", 1), ("ARGB1555", 1), ("ARGB4444", 15)):
        yield Case(f"bmp, {subtype}", f"convert rgba.miff -define bmp:subtype={subtype} BMP:{{}}", OPAQUE,
                   tolerance)
    # As the platform's loader, which knows no opacity in BMP files.
    for version in ("BMP3", "BMP"):
        yield Case(f"bmp, {version} of 32 bits", f"convert rgba.miff -type TrueColorAlpha {version}:{{}}",
                   OPAQUE)


def check(quillet, folder, index, case):
    file = f"r{index}"
    run(case.make.replace("{0}", "{}").replace("{}", file), folder)
    reference = read_pnm(run(case.reference.replace("{0}", "{}").replace("{}", file), folder))
    if run(f"{quillet} filename={file} Load FileType=twBITMAP filename={file}.bmp Save", folder) != b"0\n":
        raise Failure("not loaded")
    shown = read_bmp(f"{folder}/{file}.bmp")
    shown.require(reference, case.tolerance)
    if case.depth and shown.depth != case.depth:
        raise Failure(f"{shown.depth} bits a pixel instead of {case.depth}")
    if shown.dots_per_meter != (case.dots, case.dots):
        raise Failure(f"{shown.dots_per_meter} dots per metre instead of {case.dots}")


def cases(quillet, folder):
    groups = (tiff_by_imagemagick, tiff_by_its_tools, png, jpeg, gif, bmp)
    for index, case in enumerate(case for group in groups for case in group()):
        yield f"read: {case.name}", lambda i=index, c=case: check(quillet, folder, i, c)
