"""The pictures that everything is made from, by ImageMagick: odd sizes, edges and smooth parts. Its own
format keeps the resolution of 300 dots an inch as it is."""

from pixels import run

SOURCES = [
    "convert -seed 7 -size 61x43 plasma:tomato-steelblue -fill white -draw 'rectangle 5,5 20,12' "
    "-fill black -draw 'line 0,40 60,30' -depth 8 -alpha off +set date:create +set date:modify "
    "-units PixelsPerInch -density 300 rgb.miff",
    "convert rgb.miff -colorspace Gray -type Grayscale gray.miff",
    "convert gray.miff -threshold 45% -type Bilevel bilevel.miff",
    "convert rgb.miff +dither -colors 200 -type Palette p200.miff",
    "convert rgb.miff +dither -colors 13 -type Palette p13.miff",
    "convert bilevel.miff -colorspace sRGB -type TrueColor -fill navy -opaque black -fill gold "
    "-opaque white p2.miff",
    "convert rgb.miff '(' -size 61x43 gradient:black-white ')' -alpha off -compose CopyOpacity "
    "-composite rgba.miff",
    "convert rgba.miff -channel A -threshold 50% +channel keyed.miff",
    "convert rgb.miff -depth 16 -evaluate multiply 0.937 wide.miff",
    "convert rgb.miff -colorspace CMYK cmyk.miff",
    "convert rgb.miff rgb.ppm",
    "convert gray.miff gray.pgm",
    "cjpeg -quality 90 rgb.ppm >rgb.jpg",
    "convert rgb.miff -compress none -type TrueColor rgb.tif",
    "convert gray.miff -compress none -type Grayscale gray.tif",
    "convert bilevel.miff -compress none -type Bilevel -depth 1 bilevel.tif",
    "convert p200.miff -compress none -type Palette p200.tif",
    "convert cmyk.miff -compress none cmyk.tif",
    "for name in rgb gray bilevel p200 p13; do convert $name.miff $name.png; done",
    "convert p2.miff -background gold -define png:color-type=3 -define png:bit-depth=1 p2.png",
]


def make_sources(folder):
    for command in SOURCES:
        run(command, folder, silent=True)
