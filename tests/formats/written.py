"""Files that the control writes, before the eyes of other programs."""

import re

from pixels import Failure, read_bmp, read_pnm, run

# Name, source, and bits a pixel of the picture that is saved.
PICTURES = [
    ("bilevel", "bilevel", 1),
    ("two colours", "p2", 1),
    ("thirteen colours", "p13", 4),
    ("gray", "gray", 8),
    ("200 colours", "p200", 8),
    ("colour", "rgb", 24),
]

FORMATS = [
    ("twBITMAP", "bmp"),
    ("twJPEG", "jpg"),
    ("twGIF", "gif"),
    ("twTIFF", "tif"),
    ("twPNG", "png"),
]


def save(quillet, folder, source, file_type, target, more=""):
    return run(f"{quillet} filename={source} Load FileType={file_type} Quality=90 filename={target} "
               f"Save {more}", folder, silent=True)


def require_text(text, pattern):
    if not re.search(pattern, text):
        raise Failure(f"'{pattern}' is not in: {' / '.join(text.split(chr(10)))[:300]}")


def check_jpeg(folder, file, depth, gray):
    shown = read_pnm(run(f"djpeg -pnm {file}", folder, silent=True))
    run(f"jpegtran -copy all {file}", folder, silent=True)
    text = run(f"djpeg -verbose -fast {file} 2>&1 >/dev/null", folder).decode()
    require_text(text, r"density 300x300  1")
    require_text(text, r"components=%d" % (1 if gray else 3))
    return shown


def check_gif(folder, file, depth, gray):
    run(f"giftext {file}", folder, silent=True)
    data = run(f"gif2rgb -1 {file}", folder, silent=True)
    return read_pnm(b"P6 61 43 255\n" + data)


def check_tiff(folder, file, depth, gray):
    text = run(f"tiffinfo -D {file}", folder, silent=True).decode()
    require_text(text, r"Bits/Sample: %d\b" % min(depth, 8))
    require_text(text, r"Samples/Pixel: %d" % (3 if depth == 24 else 1))
    require_text(text, r"Resolution: 300, 300 pixels/inch")
    g4 = depth == 1 and gray
    require_text(text, r"Compression Scheme: " + ("CCITT Group 4" if g4 else "LZW"))
    run(f"tiffcp -c none {file} {file}.copy && tiffcmp {file} {file}.copy", folder, silent=True)
    return read_pnm(run(f"tiff2rgba -c none {file} {file}.rgba && convert {file}.rgba -alpha off "
                        "-depth 8 ppm:-", folder, silent=True))


def check_png(folder, file, depth, gray):
    text = run(f"pngcheck -v {file}", folder, silent=True).decode()
    require_text(text, "No errors detected")
    require_text(text, "%d-bit %s" % (depth, "RGB" if depth == 24 else
                                      "grayscale" if gray else "palette"))
    require_text(text, r"11811x11811 pixels/meter")


def check_bmp(folder, file, depth, gray):
    shown = read_bmp(f"{folder}/{file}")
    if shown.depth != depth or shown.dots_per_meter != (11811, 11811):
        raise Failure(f"{shown.depth} bits, {shown.dots_per_meter} dots per metre")
    return shown


CHECKS = {"twBITMAP": check_bmp, "twJPEG": check_jpeg, "twGIF": check_gif, "twTIFF": check_tiff,
          "twPNG": check_png}


def single(quillet, folder, name, source, depth, file_type, ending):
    stem = f"w-{source}-{ending}"
    original = read_pnm(run(f"convert {source}.miff -depth 8 ppm:-", folder))
    file = f"{stem}.{ending}"
    if save(quillet, folder, f"{source}.png", file_type, file) != b"0\n":
        raise Failure("not saved")
    gray = source in ("bilevel", "gray")
    views = [CHECKS[file_type](folder, file, depth, gray),
             read_pnm(run(f"convert -regard-warnings {file} -depth 8 ppm:-", folder, silent=True))]
    if file_type == "twJPEG":
        # The pixels that the library's own program makes of them.
        form = "pgm" if gray else "ppm"
        original = read_pnm(run(f"convert {source}.miff -depth 8 {form}:- | cjpeg -quality 90 | "
                                "djpeg -pnm", folder))
    for shown in filter(None, views):
        if file_type == "twGIF" and depth == 24:
            shown.require_alike(original, 9)
        else:
            shown.require(original, 0)


def pages(quillet, folder):
    """A file of pages of every depth."""
    run(f"{quillet} filename=rgb.png Load FileType=twTIFF filename=w-pages.tif Save "
        + " ".join(f"filename={source}.png Load SaveAdd:w-pages.tif"
                   for source in ("bilevel", "p13", "gray", "p200")), folder, silent=True)
    text = run("tiffinfo -D w-pages.tif", folder, silent=True).decode()
    if text.count("Image Width") != 5:
        raise Failure(f"{text.count('Image Width')} pages instead of 5")
    run("tiffcp -c none w-pages.tif w-copy.tif && tiffcmp w-pages.tif w-copy.tif", folder, silent=True)
    for page, source in enumerate(("rgb", "bilevel", "p13", "gray", "p200")):
        shown = read_pnm(run(f"convert -regard-warnings w-pages.tif[{page}] -depth 8 ppm:-", folder))
        shown.require(read_pnm(run(f"convert {source}.miff -depth 8 ppm:-", folder)), 0)


# What pages others wrote that a page is added to, and how the tools make them of bilevel, colour and
# gray pages.
APPENDED = [
    ("none", "tiffcp -c none rgb.tif bilevel.tif gray.tif {}"),
    ("LZW with predictor", "tiffcp -c lzw:2 rgb.tif gray.tif {}"),
    ("Deflate", "tiffcp -c zip:2 rgb.tif gray.tif {}"),
    ("PackBits, big-endian", "tiffcp -B -c packbits rgb.tif bilevel.tif {}"),
    ("Group 3", "tiffcp -c g3:2d:fill bilevel.tif bilevel.tif {}"),
    ("Group 4, bits reversed", "tiffcp -f lsb2msb -c g4 bilevel.tif bilevel.tif {}"),
    ("JPEG", "tiffcp -c jpeg:r rgb.tif {0}.rgb && tiffcp -c jpeg gray.tif {0}.gray && "
             "tiffcp {0}.rgb {0}.gray {0}"),
    ("tiles", "tiffcp -t -w 16 -l 32 -c lzw rgb.tif gray.tif {}"),
    ("planes", "tiffcp -p separate -c none rgb.tif rgb.tif {}"),
    ("64-bit", "tiffcp -8 -c lzw rgb.tif gray.tif {}"),
    ("64-bit, big-endian", "tiffcp -8 -B -c zip rgb.tif gray.tif {}"),
    ("a row a strip", "tiffcp -r 1 -c lzw rgb.tif gray.tif {}"),
]


def appended(quillet, folder, index, make):
    old, new = f"a-{index}-old.tif", f"a-{index}-new.tif"
    run(make.format(old), folder)
    run(f"cp {old} {new} && {quillet} filename=p13.png Load SaveAdd:{new}", folder, silent=True)
    count = run(f"tiffinfo {old}", folder).decode().count("Image Width")
    text = run(f"tiffinfo -D {new}", folder, silent=True).decode()
    if text.count("Image Width") != count + 1:
        raise Failure(f"{text.count('Image Width')} pages instead of {count + 1}")
    # Tags and encoded bytes; only where they lie may change.
    before, after = (re.sub(r"TIFF Directory at offset .*", "", run(f"tiffinfo -r -d {name}", folder)
                            .decode()) for name in (old, new))
    if not after.startswith(before):
        raise Failure("the old pages' tags or encoded bytes changed")
    for page in range(count):
        before = read_pnm(run(f"convert {old}[{page}] -depth 8 ppm:-", folder))
        read_pnm(run(f"convert {new}[{page}] -depth 8 ppm:-", folder)).require(before, 0)
    added = read_pnm(run(f"convert -regard-warnings {new}[{count}] -depth 8 ppm:-", folder))
    added.require(read_pnm(run("convert p13.png -depth 8 ppm:-", folder)), 0)


def cases(quillet, folder):
    for name, source, depth in PICTURES:
        for file_type, ending in FORMATS:
            yield (f"written: {ending}, {name}",
                   lambda args=(name, source, depth, file_type, ending):
                   single(quillet, folder, *args))
    yield "written: pages of every depth", lambda: pages(quillet, folder)
    for index, (name, make) in enumerate(APPENDED):
        yield (f"appended to: {name}",
               lambda index=index, make=make: appended(quillet, folder, index, make))
